// Checks any bytes as a native file, beside the kernel's own reader: what that refuses is an error, entry by entry, and
// what has no error is read without one.
#include <fuzz/support/Check.h>
#include <fuzz/support/InputFile.h>

#include <apps/tamber/native/Check.h>
#include <tamber/io/tbEntry.h>
#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbRef.h>

#include <cstring>

using tbfuzz::check;
using Bytes = std::vector<unsigned char>;

namespace
{
bool hasErrors(const Bytes& bytes)
{
    native::Findings findings;
    native::Image image(native::makeMemorySource(bytes), findings);
    native::checkImage(image, findings);
    for (const native::Finding& finding : findings.getKept())
        check(native::infoOf(finding.kind).kind == finding.kind, "a finding is of a kind that is known");
    return findings.count(native::Severity::ERROR) > 0;
}

void compareEntries(const Bytes& bytes, tbFile& file)
{
    native::Findings findings;
    native::Image image(native::makeMemorySource(bytes), findings);
    check(image.getNumEntries() == file.getNumEntries(), "both find the same entries");
    Bytes data;
    for (int i = 0; i < file.getNumEntries(); ++i)
    {
        tbEntry* entry = file.getEntry(i);
        const bool read = file.readEntry(entry);
        check(image.readData(i, data, findings) == read, "both refuse the same entries");
        check(!read || (data.size() == std::size_t(entry->getDataSize()) &&
                        std::memcmp(data.data(), entry->getData(), data.size()) == 0),
              "both unpack the same data");
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const tbfuzz::InputFile input("check.tb");
    input.set({data, size});
    const Bytes bytes(data, data + size);
    const bool sound = !hasErrors(bytes);
    tbFile file;
    const bool opened = file.open(input.path(), "r");
    check(opened || !sound, "what cannot be opened has an error");
    if (!opened)
        return 0;
    compareEntries(bytes, file);
    file.open(input.path(), "r");
    const tbRef<tbBase> root = file.readObject(0);
    check(!sound || file.getLastError() == tbFile::FILE_OK, "what has no error is read without one");
    return 0;
}
