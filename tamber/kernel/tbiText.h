#pragma once

#include <tamber/kernel/tbMemory.h>

#include <cstring>

/// Replaces an owned text by a copy of `text`, which may be a part of the owned one; null frees it. Unchanged when
/// memory is out.
inline void tbiSetText(char*& owned, const char* text)
{
    if (text == owned)
        return;
    if (!text)
    {
        tbMemory::free(owned);
        owned = nullptr;
        return;
    }
    const std::size_t bytes = std::strlen(text) + 1;
    // Blocks never shrink, so one that `text` is a part of stays where it is.
    if (char* block = static_cast<char*>(tbMemory::realloc(owned, bytes)))
    {
        owned = block;
        std::memmove(owned, text, bytes);
    }
}

/// A copy of `text` for the caller to free; null for null and when memory is out.
inline char* tbiCopyText(const char* text)
{
    char* copy = nullptr;
    tbiSetText(copy, text);
    return copy;
}
