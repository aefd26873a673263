// The child process of tbImportIsolated(): imports one file with the loader that it is given, and leaves the scene as
// a native file. Whatever becomes of it, its parent is well.

#include <tamber/io/tbFile.h>
#include <tamber/io/tbLoader.h>
#include <tamber/io/tbModelFiles.h>
#include <tamber/io/tbiImportOrder.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbFilePath.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbiMemoryWatch.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <new>
#include <string>

namespace
{

using namespace tbiImportOrder;

std::string directory;

std::string outputFile(const char* name)
{
    return directory + "/" + name;
}

void dropMessage(const char*) {}

// At once, because the process may end at any point of the import.
void keepMessage(const char* text)
{
    static std::ofstream messages(outputFile(MESSAGES_FILE), std::ios::binary);
    messages << text << std::flush;
}

/// The readers of some formats take memory that they were refused for a damaged file, or go on without it.
[[noreturn]] void endWithoutMemory()
{
    std::_Exit(MEMORY_IS_OUT);
}

/// The file says which loader takes it, and that one is loaded without looking at any other.
void startKernel(char** arguments)
{
    tbSetMessageFunc(dropMessage);
    tbPlugIn::setSearchPolicy(tbPlugIn::SEARCH_NONE);
    tbInit(nullptr);
    tbPlugIn::setSearchPolicy(tbPlugIn::SEARCH_POLICY(std::atoi(arguments[POLICY])));
    if (*arguments[LIST] == LIST_MARK)
        tbPlugIn::setAllowList(arguments[LIST] + 1);
    tbPlugIn::enableDynamicPlugIns(*arguments[TRUST] == '1');
    tbModelFiles::enableOpenAnywhere(*arguments[ANYWHERE] == '1');
    for (char** path = arguments + FIRST_PATH; *path; ++path)
        tbAddFilePath(*path);
    tbPlugIn::load(arguments[MODULE]);
    tbSetMessageFunc(keepMessage);
}

EXIT_CODE refuse(int error, const std::string& text)
{
    std::ofstream report(outputFile(REPORT_FILE), std::ios::binary);
    report << error << '\n' << text << std::flush;
    return CHILD_REFUSED;
}

EXIT_CODE importFile(const char* name)
{
    const tbiMemoryWatch memory;
    const tbBase* root = tbLoader::importFile(name);
    if (memory.ranOut())
        return MEMORY_IS_OUT;
    if (!root)
    {
        const char* text = tbLoader::getErrorMessage();
        return refuse(tbLoader::getError(), text && *text ? text : "the file cannot be read");
    }
    tbFile file;
    if (file.create(outputFile(SCENE_FILE).c_str()) && file.save(root))
        return DONE;
    if (memory.ranOut())
        return MEMORY_IS_OUT;
    return refuse(tbLoader::LOADER_STOPPED,
                  std::string("the scene cannot be handed over: ") + file.getErrorText());
}

} // namespace

int main(int argc, char** argv)
{
    beginChild();
    if (argc < FIRST_PATH)
        return CHILD_REFUSED;     // without a report: nobody has ordered anything
    while (std::getchar() != EOF) // the limits hold when the input ends
    {
    }
    std::set_new_handler(endWithoutMemory);
    directory = argv[DIRECTORY];
    startKernel(argv);
    // What the loader's library would still do now can only go wrong.
    std::_Exit(importFile(argv[FILE_NAME]));
}
