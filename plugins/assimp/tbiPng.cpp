#include "tbiPng.h"

#include "tbiCheckSums.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace
{
using Bytes = std::vector<unsigned char>;

constexpr std::array<unsigned char, 8> SIGNATURE{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::size_t LARGEST_BLOCK = 65535; // of data that is stored as it is
constexpr std::size_t HEADER_SIZE = 8 + 25;  // signature and image header
constexpr std::size_t CHUNK_FRAME = 12;      // length, kind and check sum

void append32(Bytes& bytes, std::uint32_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<unsigned char>(value >> shift));
}

void appendChunk(Bytes& file, std::string_view kind, const Bytes& data)
{
    append32(file, std::uint32_t(data.size()));
    const std::size_t start = file.size();
    file.insert(file.end(), kind.begin(), kind.end());
    file.insert(file.end(), data.begin(), data.end());
    append32(file, tbiCrc32(&file[start], file.size() - start));
}

/// Rows, each behind a byte that says that it is not filtered.
Bytes rowsOf(int width, int height, const unsigned char* rgba)
{
    const auto rowSize = std::size_t(width) * 4;
    Bytes rows;
    rows.reserve((rowSize + 1) * std::size_t(height));
    for (int y = 0; y < height; ++y, rgba += rowSize)
    {
        rows.push_back(0);
        rows.insert(rows.end(), rgba, rgba + rowSize);
    }
    return rows;
}

/// The stream that holds `data` in stored blocks.
Bytes storedStream(const Bytes& data)
{
    Bytes stream{0x78, 0x01};
    std::size_t at = 0;
    do
    {
        const std::size_t size = std::min(LARGEST_BLOCK, data.size() - at);
        const auto low = static_cast<unsigned char>(size & 0xFF);
        const auto high = static_cast<unsigned char>(size >> 8);
        const bool isLast = at + size == data.size();
        stream.insert(stream.end(), {static_cast<unsigned char>(isLast ? 1 : 0), low, high,
                                     static_cast<unsigned char>(~low), static_cast<unsigned char>(~high)});
        stream.insert(stream.end(), data.begin() + std::ptrdiff_t(at),
                      data.begin() + std::ptrdiff_t(at + size));
        at += size;
    } while (at < data.size());
    append32(stream, tbiAdler32(data.data(), data.size()));
    return stream;
}
} // namespace

std::vector<unsigned char> tbiWritePng(int width, int height, const unsigned char* rgba)
{
    Bytes file(SIGNATURE.begin(), SIGNATURE.end());
    Bytes header;
    append32(header, std::uint32_t(width));
    append32(header, std::uint32_t(height));
    header.insert(header.end(), {8, 6, 0, 0, 0}); // bits, colour with alpha, usual methods
    appendChunk(file, "IHDR", header);
    appendChunk(file, "IDAT", storedStream(rowsOf(width, height, rgba)));
    appendChunk(file, "IEND", {});
    return file;
}

std::vector<unsigned char> tbiReadOwnPng(int width, int height, const unsigned char* file, std::size_t size)
{
    const auto rowSize = std::size_t(width) * 4 + 1;
    const std::size_t dataSize = rowSize * std::size_t(height);
    const std::size_t numBlocks = (dataSize + LARGEST_BLOCK - 1) / LARGEST_BLOCK;
    if (size != HEADER_SIZE + CHUNK_FRAME + 2 + numBlocks * 5 + dataSize + 4 + CHUNK_FRAME)
        return {};
    Bytes pixels;
    pixels.reserve(dataSize);
    const unsigned char* from = file + HEADER_SIZE + 8 + 2;
    for (std::size_t at = 0; at < dataSize; ++at)
    {
        if (at % LARGEST_BLOCK == 0)
            from += 5;
        if (at % rowSize != 0)
            pixels.push_back(*from);
        ++from;
    }
    // Writing it again is the whole check.
    const Bytes again = tbiWritePng(width, height, pixels.data());
    return again.size() == size && std::memcmp(again.data(), file, size) == 0 ? pixels : Bytes();
}
