// What every target begins with: messages go nowhere, plug-ins come from nowhere, and all classes are set up, which
// makes the objects that they keep.
#include <apps/tamber/native/Record.h>

#include <tamber/io/tbPlugIn.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbType.h>

#include <cstring>

namespace
{
// Reads what it is given, so that the sanitizers see a text without an end.
void swallow(const char* text)
{
    const volatile std::size_t length = std::strlen(text);
    static_cast<void>(length);
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    tbSetMessageFunc(swallow);
    tbPlugIn::setSearchPolicy(tbPlugIn::SEARCH_NONE);
    for (const native::ClassInfo& info : native::knownClasses())
        tbType::findType(info.name);
    return 0;
}
