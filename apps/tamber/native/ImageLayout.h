#pragma once

#include <cstdint>

// Where things lie in a native file. All words are 32 bits wide, in the byte order of the writing machine.
namespace native::layout
{

inline constexpr std::uint32_t MAGIC = 0xBA773265;

inline constexpr unsigned HEADER_SIZE = 96;
inline constexpr unsigned HEADER_VERSION = 4;
inline constexpr unsigned HEADER_RESERVED = 8;
inline constexpr unsigned HEADER_RESERVED_SIZE = 64;
inline constexpr unsigned HEADER_ENTRIES = 72;
inline constexpr unsigned HEADER_TAGS = 76;
inline constexpr unsigned HEADER_RESERVED_END = 80;
inline constexpr unsigned HEADER_RESERVED_END_SIZE = 16;

inline constexpr unsigned TAG_SIZE = 68;
inline constexpr unsigned TAG_NAME = 4;
inline constexpr unsigned TAG_NAME_SIZE = 64;

inline constexpr unsigned RECORD_SIZE = 24;
inline constexpr unsigned RECORD_TAG = 4;
inline constexpr unsigned RECORD_OFFSET = 8;
inline constexpr unsigned RECORD_COMPRESSION = 12;
inline constexpr unsigned RECORD_DATA_SIZE = 16;
inline constexpr unsigned RECORD_VERSION = 20;
inline constexpr unsigned RECORD_GAP = 88; // reserved behind the directory, for each record

inline constexpr std::uint32_t NO_COMPRESSION = 0;
inline constexpr std::uint32_t RLE = 1;
inline constexpr unsigned PACKED_LENGTH_SIZE = 4;
inline constexpr std::uint64_t BEST_PACKING = 128; // bytes that one packed byte can stand for

inline constexpr std::uint32_t LARGEST_COUNT = (1u << 22) - 1; // tags, and entries
inline constexpr std::uint32_t LARGEST_ENTRY = 0x7FFFFFFF;
inline constexpr std::uint64_t LONGEST_FILE = 0x7FFFFFFF;

} // namespace native::layout
