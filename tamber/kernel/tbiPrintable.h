#pragma once

#include <cstdio>
#include <string>

/// Text from files as it may be printed: what terminals act on becomes \xNN. Names of classes are ASCII, so for them
/// everything else does, too; those of files need not be.
inline std::string tbiPrintable(const char* text, bool ascii)
{
    std::string out;
    for (; *text != 0; ++text)
    {
        const auto c = static_cast<unsigned char>(*text);
        if (c >= 0x20 && c != 0x7F && (c < 0x7F || !ascii))
        {
            out += char(c);
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02X", unsigned(c));
        out += escape;
    }
    return out;
}
