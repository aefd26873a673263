#pragma once

#include <tamber/kernel/tbMemory.h>

// Reads packed data as if it lay there unpacked. Going forward costs what the bytes and pairs passed cost; going back
// begins anew.
class tbiUnpacker : public tbAllocated<tbiUnpacker>
{
public:
    /// Takes over `packed`, of which tbiRle::unpackedSize() knows that it is complete.
    explicit tbiUnpacker(unsigned char* packed);
    tbiUnpacker(const tbiUnpacker&) = delete;
    tbiUnpacker& operator=(const tbiUnpacker&) = delete;
    ~tbiUnpacker() { tbMemory::free(pairs); }

    /// Copies `number` bytes that stand at `place`. What lies behind the last pair is zero.
    void read(int place, void* bytes, int number);

private:
    void takeRun();
    void skipTo(int place);

    unsigned char* pairs;
    const unsigned char* pair; // the run that comes next, or the ending 0
    int position = 0;          // of the next byte
    int left = 0;              // such bytes in the run
    unsigned char value = 0;
};
