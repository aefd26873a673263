// A file of the native format taken apart, so that one thing in it can be changed and the rest still be read.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tbfuzz
{
struct NativeFile
{
    static constexpr std::uint32_t MAGIC = 0xBA773265;
    static constexpr std::uint32_t MAGIC_SWAPPED = 0x653277BA;
    static constexpr std::uint32_t RLE = 1;

    struct Entry
    {
        std::uint32_t magic = MAGIC;
        std::uint32_t tag = 0;
        std::uint32_t compression = 0;
        std::uint32_t size = 0;
        std::uint32_t version = 0x01020000;
        std::vector<std::uint8_t> data; // as it lies in the file
    };

    bool swapped = false;
    std::uint32_t version = 0x01020000;
    std::vector<std::string> tags;
    std::vector<Entry> entries;

    /// Nothing when the header or the tables are damaged; what of an entry's data is not there is left out.
    static std::optional<NativeFile> take(std::span<const std::uint8_t> bytes);
    std::vector<std::uint8_t> put() const;

    /// Appends an entry, and its tag when it is new.
    void add(const std::string& tag, Entry entry);
};
} // namespace tbfuzz
