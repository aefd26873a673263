#pragma once

#include <cstddef>
#include <cstdint>

// Reads a file ahead, so that a million small entries in a row do not cost a system call each, and no byte is read twice
// by whoever goes through the file in order. Whoever jumps about in it gets just what is wanted, until so many calls of the
// system cost more than the whole file, which is held from then on.
class tbiFileWindow
{
public:
    tbiFileWindow() = default;
    tbiFileWindow(const tbiFileWindow&) = delete;
    tbiFileWindow& operator=(const tbiFileWindow&) = delete;
    ~tbiFileWindow() { detach(); }

    void attach(int fileDescriptor, std::int64_t fileLength);
    void detach();
    std::int64_t getLength() const { return length; }
    /// Exactly `size` bytes from `position`; false when they are not there.
    bool read(void* bytes, std::size_t size, std::int64_t position);

private:
    bool fill(std::size_t wanted, std::int64_t position);
    bool reserve(std::size_t size);
    bool holdAll();

    int descriptor = -1;
    std::int64_t length = 0;
    std::int64_t start = 0;
    std::size_t held = 0;
    std::int64_t next = 0; // where reading goes on if the file is read in order
    std::size_t ahead = 0; // what is read at a time
    std::int64_t jumps = 0;
    unsigned char* buffer = nullptr;
    std::size_t capacity = 0;
};
