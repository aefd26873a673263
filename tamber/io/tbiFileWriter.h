#pragma once

#include <tamber/platform/tbiFile.h>

// Writes the file that is to replace another, through one buffer. The first failure makes every later call fail.
class tbiFileWriter
{
public:
    tbiFileWriter() = default;
    tbiFileWriter(const tbiFileWriter&) = delete;
    tbiFileWriter& operator=(const tbiFileWriter&) = delete;
    ~tbiFileWriter() { abandon(); }

    /// Makes the new file beside `target`. False when it cannot be made.
    bool begin(const char* target);
    bool hasBegun() const { return replacement.descriptor > 0; }
    int getDescriptor() const { return replacement.descriptor; }
    /// The file that will be replaced.
    const char* getTarget() const { return replacement.target.c_str(); }

    bool write(const void* bytes, std::size_t size);
    /// Goes on at `position`; what is left out is zero.
    bool seek(std::int64_t position);
    std::int64_t getPosition() const { return position + std::int64_t(held); }

    /// Puts the file of `length` bytes in the target's place. The target is untouched when this fails.
    bool finish(std::int64_t length);
    /// Removes the new file.
    void abandon();

private:
    bool flush();
    void freeBuffer();

    tbiReplacement replacement;
    unsigned char* buffer = nullptr;
    std::size_t held = 0;
    std::int64_t position = 0; // where the buffer begins
    bool good = true;
};
