#pragma once

#include <cstddef>
#include <cstdint>

/// The check sum that PNG and ZIP files have (CRC-32).
std::uint32_t tbiCrc32(const void* data, std::size_t size);
/// The check sum of packed streams (Adler-32).
std::uint32_t tbiAdler32(const void* data, std::size_t size);
