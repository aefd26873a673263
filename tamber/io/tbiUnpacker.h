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

    /// Passes over the `number` bytes at `place` when they are next and all of one run, which goes on behind them, and
    /// gives their value. False, and nothing done, for all others.
    bool passSame(int place, int number, unsigned char& byte)
    {
        if (place != position || number >= left)
            return false;
        position += number;
        left -= number;
        byte = value;
        return true;
    }

private:
    void takeRun();
    void skipTo(int place);

    unsigned char* pairs;
    const unsigned char* pair; // the run that comes next, or the ending 0
    int position = 0;          // of the next byte
    int left = 0;              // such bytes in the run
    unsigned char value = 0;
};
