#include <tamber/kernel/tbFilePath.h>

#include <tamber/containers/tbList.h>
#include <tamber/containers/tbiStatic.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/platform/tbiPath.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace
{

constinit tbiStatic<tbTList<char*>> paths;

bool isSeparator(char c)
{
    return c == '/' || c == '\\';
}

void addPath(std::string dir)
{
    if (dir.empty())
        return;
    if (!isSeparator(dir.back()))
        dir += '\\';
    for (const char* path : *paths)
        if (dir == path)
            return;
    char* copy = tbiCopyText(dir.c_str());
    if (copy && paths->add(copy) < 0)
        tbMemory::free(copy);
}

// Returns the candidate's length plus one when it is a file that opens; `found` gets its path, else nothing.
int probe(std::string candidate, int size, char* found)
{
    tbiToNativePath(candidate.data());
    const bool opens = !candidate.empty() && tbiIsReadableFile(candidate.c_str());
    if (found && size > 0)
    {
        const std::size_t n = opens ? std::min(candidate.size(), std::size_t(size) - 1) : 0;
        std::memcpy(found, candidate.data(), n);
        found[n] = 0;
    }
    return opens ? int(candidate.size()) + 1 : 0;
}

// `found` may be the same buffer as `name`.
int findFile(const std::string& wanted, int size, char* found)
{
    const int length = probe(wanted, size, found);
    if (length > 0 || wanted.empty())
        return length;
    for (const char* path : *paths)
    {
        std::string candidate = path;
        if (candidate.back() != '\\' && wanted.front() != '\\')
            candidate += '\\';
        if (const int n = probe(candidate + wanted, size, found))
            return n;
    }
    return 0;
}

} // namespace

void tbAddFilePath(const char* dir)
{
    if (dir)
        tbiWithoutThrow([dir] { addPath(dir); });
}

void tbAddFilePaths(const char* list)
{
    if (!list)
        return;
    while (*list != 0)
    {
        const std::size_t length = std::strcspn(list, ";");
        tbiWithoutThrow([=] { addPath(std::string(list, length)); });
        list += length;
        if (*list == ';')
            ++list;
    }
}

void tbDeleteFilePaths()
{
    for (char* path : *paths)
        tbMemory::free(path);
    paths->setSize(0);
}

int tbGetNumFilePaths()
{
    return paths->getNum();
}

const char* tbGetFilePath(int i)
{
    return paths->indexInRange(i) ? (*paths)[i] : nullptr;
}

int tbFindFile(const char* name, int size, char* found)
{
    return name ? tbiWithoutThrow(0, [=] { return findFile(name, size, found); }) : 0;
}
