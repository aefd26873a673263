#include <tamber/kernel/tbString.h>

#include <cctype>
#include <cstring>

unsigned int tbStrToInt(const char* text)
{
    if (!text)
        return 0;
    unsigned int word = 0;
    for (unsigned i = 0; text[i] != 0; ++i)
    {
        word ^= unsigned(static_cast<unsigned char>(text[i])) << (8 * (i % 4));
        ++word; // part of the hash, not only a count
    }
    return word;
}

namespace
{

int compareFolded(const char* a, const char* b)
{
    for (;; ++a, ++b)
    {
        const int x = std::tolower(static_cast<unsigned char>(*a));
        const int y = std::tolower(static_cast<unsigned char>(*b));
        if (x != y || x == 0)
            return x - y;
    }
}

} // namespace

int tbStrcmp(const char* a, const char* b, bool ignoreCase)
{
    if (!a || !b)
        return a == b ? 0 : -1;
    if (ignoreCase)
        return compareFolded(a, b);
    const int order = std::strcmp(a, b);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

const char* tbGetFileName(const char* path)
{
    if (!path)
        return nullptr;
    const char* name = path;
    for (const char* c = path; *c != 0; ++c)
        if (*c == '/' || *c == '\\')
            name = c + 1;
    return *name != 0 ? name : nullptr;
}
