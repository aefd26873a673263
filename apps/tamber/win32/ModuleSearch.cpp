#include "../ModuleSearch.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

void limitModuleSearch()
{
    SetDllDirectoryA(""); // takes the current directory out of every search
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}
