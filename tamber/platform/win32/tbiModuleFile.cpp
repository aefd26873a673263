#include <tamber/platform/tbiModuleFile.h>

tbiModuleFile::tbiModuleFile(const std::string& file) : path(file), descriptor(tbiHoldFile(file.c_str())) {}

// It is held.
bool tbiModuleFile::isUnchanged() const
{
    return true;
}
