#pragma once

#include <tamber/kernel/tbMemory.h>

#include <cstring>

/// Replaces an owned text by a copy of `text`; null frees it. Unchanged when memory is out.
inline void tbiSetText(char*& owned, const char* text)
{
    char* copy = nullptr;
    if (text)
    {
        const std::size_t bytes = std::strlen(text) + 1;
        copy = static_cast<char*>(tbMemory::malloc(bytes));
        if (!copy)
            return;
        std::memcpy(copy, text, bytes);
    }
    tbMemory::free(owned);
    owned = copy;
}
