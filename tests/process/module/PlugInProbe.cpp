// PlugInProbe [FILE...]: a program of the library with all its defaults, which imports what it is given. Lines of the
// library go to stdout, and so does why an import failed.
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbRef.h>

#include <cstdio>

int main(int argc, char** argv)
{
    tbInit(nullptr);
    for (int i = 1; i < argc; ++i)
    {
        const tbRef<tbBase> root = tbLoader::importFile(argv[i]);
        if (!root)
            std::printf("%s\n", tbLoader::getErrorMessage() ? tbLoader::getErrorMessage() : "no reason");
    }
    tbShutdown();
    return 0;
}
