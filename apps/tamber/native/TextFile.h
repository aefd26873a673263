// What the text form takes for granted of a native file: how its tables and pieces follow each other.
#pragma once

#include "Image.h"

#include <string_view>

namespace native
{

/// The words with which the lines of a text begin.
namespace word
{
inline constexpr std::string_view TITLE = "tamber";
inline constexpr std::string_view ORDER = "order";
inline constexpr std::string_view VERSION = "version";
inline constexpr std::string_view TAG = "tag";
inline constexpr std::string_view ENTRY = "entry";
inline constexpr std::string_view DATA = "data";
inline constexpr std::string_view PATCH = "patch";
inline constexpr std::string_view LENGTH = "length";
inline constexpr std::string_view RAW = "raw";
inline constexpr std::string_view FILE = "file";
inline constexpr std::string_view PACKED = "packed";
inline constexpr std::string_view SWAPPED = "swapped";
} // namespace word

inline constexpr unsigned TEXT_VERSION = 1;

struct FileTables
{
    ByteOrder order = OWN_ORDER;
    std::uint32_t version = 0;
    std::vector<std::string> tags;
    std::vector<ImageEntry> entries;

    /// Where data may begin when there are so many entries: behind the directory and the space that is reserved for it.
    std::uint64_t getDataStart(std::uint64_t numEntries) const;
    /// Header, tags and directory.
    std::vector<unsigned char> getBytes() const;
};

/// The mark of a directory record in the other byte order than the file's.
inline constexpr std::uint32_t SWAPPED_MAGIC = 0x653277BA;

} // namespace native
