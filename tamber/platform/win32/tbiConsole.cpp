#include <tamber/platform/tbiConsole.h>

#include <cstdio>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

void tbiOpenConsole()
{
    if (!AllocConsole())
        return;
    const int descriptor =
        _open_osfhandle(reinterpret_cast<intptr_t>(GetStdHandle(STD_OUTPUT_HANDLE)), _O_TEXT);
    if (descriptor < 0)
        return;
    // The stream keeps its identity: everything that holds stdout writes to the console from here on.
    if (_fileno(stdout) < 0)
    {
        if (!std::freopen("CONOUT$", "w", stdout))
            return;
    }
    else
        _dup2(descriptor, _fileno(stdout));
    std::setvbuf(stdout, nullptr, _IONBF, 0);
}
