// A plain value written into an entry and read back.
#pragma once

#include <tests/support/TempFile.h>

#include <tamber/io/tbEntry.h>
#include <tamber/io/tbFile.h>

namespace tbtest
{
/// Reads into `out` what `in` writes, and returns the bytes in between.
template <class Value>
int storeAndLoad(const Value& in, Value& out)
{
    const TempDirectory directory;
    tbFile file;
    file.create(directory.path("value.tb").c_str());
    tbEntry* entry = file.newEntry(file.newTag("tbAnything"));
    in.write(entry);
    entry->reset();
    out.read(entry);
    return entry->getDataSize();
}
} // namespace tbtest
