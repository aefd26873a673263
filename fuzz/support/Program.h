// An input read as a program: operations and their operands from the first byte to the last, zeros behind it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tbfuzz
{
class Program
{
public:
    Program(const std::uint8_t* data, std::size_t size) : next(data), end(data + size) {}

    bool hasEnded() const { return next == end; }
    int byte() { return next == end ? 0 : *next++; }
    std::uint32_t word()
    {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i)
            value = (value << 8) | std::uint32_t(byte());
        return value;
    }
    /// From 0 to `count` - 1, which is 255 at most.
    int index(int count) { return byte() % count; }
    /// A size or count: mostly small, sometimes anything.
    int amount()
    {
        const int first = byte();
        return first < 240 ? first : int(word());
    }
    /// Up to `length` bytes, fewer when fewer are left.
    std::string bytes(int length)
    {
        std::string text;
        for (int i = 0; i < length && !hasEnded(); ++i)
            text += char(byte());
        return text;
    }

private:
    const std::uint8_t* next;
    const std::uint8_t* end;
};
} // namespace tbfuzz
