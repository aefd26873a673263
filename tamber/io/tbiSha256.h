#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

// The checksum SHA-256 (FIPS 180-4) of bytes that come in pieces of any size.
class tbiSha256
{
public:
    static constexpr std::size_t HEX_LENGTH = 64;

    void add(std::span<const std::byte> bytes);
    /// Ends the sum; in lower-case hexadecimal digits.
    std::string finish();

private:
    static constexpr std::size_t BLOCK = 64;

    void addBlock(const std::byte* bytes);

    std::array<std::uint32_t, 8> state{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                       0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::array<std::byte, BLOCK> pending{};
    std::uint64_t length = 0; // in bytes
};
