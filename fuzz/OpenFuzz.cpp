// Opens any bytes as a native file and asks for all that its tags and its directory say.
#include <fuzz/support/Check.h>
#include <fuzz/support/InputFile.h>

#include <tamber/io/tbEntry.h>
#include <tamber/io/tbFile.h>

#include <cstring>

using tbfuzz::check;

namespace
{
constexpr int MOST_TAGS = 40; // of which every entry is looked for

void checkTag(const tbFile& file, int tag)
{
    const char* name = file.getTagDesc(tag);
    check((name != nullptr) == (tag >= 0 && tag < file.getNumTags()), "the tags in range have names");
    if (!name)
        return;
    check(std::strlen(name) < 64, "a tag's name ends");
    const int first = file.findTag(name);
    check(first >= 0 && first <= tag, "a tag's name finds the first tag of that name");
    check(std::strcmp(file.getTagDesc(first), name) == 0, "what is found has the name");

    const tbEntry* next = file.findEntry(tag);
    for (int i = 0; i < file.getNumEntries(); ++i)
    {
        if (file.getEntry(i)->getTag() != tag)
            continue;
        check(next == file.getEntry(i), "entries of a tag are found in their order");
        next = file.findNextEntry(tag, next);
    }
    check(next == nullptr, "no more entries of a tag are found than there are");
}

void checkEntry(tbFile& file, int i)
{
    tbEntry* entry = file.getEntry(i);
    check(entry->getDirNum() == i, "an entry knows its place");
    if (file.readEntry(entry))
        check(entry->getData() && entry->getDataSize() > 0, "an entry that was read has data");
    else
        check(file.getLastError() != tbFile::FILE_OK && *file.getErrorText() != 0,
              "a failure has its reason");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const tbfuzz::InputFile input("open.tb");
    input.set({data, size});
    tbFile file;
    const bool opened = file.open(input.path(), "r");
    check(opened == file.isOpen() && opened == (file.getLastError() == tbFile::FILE_OK), "open or failed");
    check(opened || (*file.getErrorText() != 0 && file.getNumEntries() == 0), "a failure has its reason");
    check(!opened || tbFile::isTamberFormat(input.path()), "what opens has the format");
    for (int tag = -1; tag <= std::min(file.getNumTags(), MOST_TAGS); ++tag)
        checkTag(file, tag);
    for (int i = 0; i < file.getNumEntries(); ++i)
        checkEntry(file, i);
    // Removal moves the last entry into the gap.
    for (int i = 0; i < file.getNumEntries(); i += 3)
    {
        const tbEntry* last = file.getEntry(file.getNumEntries() - 1);
        const bool isLast = last == file.getEntry(i);
        check(file.removeEntry(file.getEntry(i)), "an entry can be removed");
        check(isLast || file.getEntry(i) == last, "the last entry fills the gap");
    }
    for (int tag = 0; tag < std::min(file.getNumTags(), MOST_TAGS); ++tag)
        checkTag(file, tag);
    return 0;
}
