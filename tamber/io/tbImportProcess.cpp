#include <tamber/io/tbImportProcess.h>

#include <tamber/io/tbModelFiles.h>
#include <tamber/io/tbPlugIn.h>
#include <tamber/io/tbiImportOrder.h>
#include <tamber/io/tbiLoaderLookup.h>
#include <tamber/io/tbiPlugInLists.h>
#include <tamber/io/tbiPlugInRules.h>
#include <tamber/kernel/tbFilePath.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbiPrintable.h>
#include <tamber/platform/tbiFile.h>
#include <tamber/platform/tbiModule.h>
#include <tamber/platform/tbiPath.h>
#include <tamber/platform/tbiProcess.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace
{

using namespace tbiImportOrder;

constexpr const char* PROGRAM = "tamber-import";
constexpr const char* PROGRAM_VARIABLE = "TAMBER_IMPORT_PROGRAM";
constexpr std::int64_t LONGEST_REPORT = 64 * 1024;

bool fail(const std::string& text)
{
    tbiSetLoaderFailure(tbLoader::LOADER_STOPPED, text);
    return false;
}

// Removed with what is in it, whatever came of the import.
class PrivateDirectory
{
public:
    PrivateDirectory() : path(tbiMakePrivateDirectory()) {}
    PrivateDirectory(const PrivateDirectory&) = delete;
    PrivateDirectory& operator=(const PrivateDirectory&) = delete;
    ~PrivateDirectory() { tbiRemovePrivateDirectory(path); }

    const std::string& getPath() const { return path; }
    std::string file(const char* name) const { return path + tbiSeparator() + name; }
    /// The text of a file, cut where it is longer than any that was meant; empty when there is none.
    std::string read(const char* name) const
    {
        // Before anything is open that would have to be closed.
        std::string text(std::size_t(LONGEST_REPORT), '\0');
        const int descriptor = tbiOpenFile(file(name).c_str());
        const std::int64_t length = descriptor > 0 ? tbiFileLength(descriptor) : 0;
        text.resize(std::size_t(std::clamp<std::int64_t>(length, 0, LONGEST_REPORT)));
        if (!tbiReadFile(descriptor, text.data(), text.size(), 0))
            text.clear();
        tbiCloseFile(descriptor);
        return text;
    }

private:
    std::string path;
};

// Beside the executable, beside this library, or where programs of this library are installed.
std::string findProgram()
{
    const char* named = std::getenv(PROGRAM_VARIABLE);
    if (named && *named)
    {
        if (tbiIsAbsolutePath(named) && tbiIsReadableFile(named))
            return named;
        fail(std::string(PROGRAM_VARIABLE) + " names no program by an absolute path: " + named);
        return {};
    }
    const std::string library = tbiLibraryDirectory();
    std::string text =
        std::string("the program that imports foreign formats, ") + PROGRAM + ", was not found in:";
    for (const std::string& directory :
         {tbiExecutableDirectory(), library, library + tbiSeparator() + TAMBER_LIBEXEC_FROM_LIBRARY})
    {
        const std::string path = directory + tbiSeparator() + PROGRAM + tbiProgramEnding();
        if (tbiIsAbsolutePath(path) && tbiIsReadableFile(path.c_str()) && !tbiOthersMayWrite(path))
            return path;
        text += " " + directory;
    }
    fail(text);
    return {};
}

std::string allowListArgument()
{
    const std::optional<std::string> list = tbiPlugInRules::getOwnList();
    return list ? LIST_MARK + *list : std::string();
}

tbiProcessOrder makeOrder(const tbiImportSource& source, const std::string& directory,
                          const tbImportLimits& limits)
{
    tbiProcessOrder order;
    order.program = findProgram();
    order.arguments = {directory,
                       source.module,
                       std::to_string(int(tbPlugIn::getSearchPolicy())),
                       allowListArgument(),
                       tbPlugIn::isDynamicPlugInsEnabled() ? "1" : "0",
                       tbModelFiles::isOpenAnywhereEnabled() ? "1" : "0",
                       source.path};
    for (int i = 0; i < tbGetNumFilePaths(); ++i)
        order.arguments.emplace_back(tbGetFilePath(i));
    order.memory = limits.memory;
    order.processorTime = limits.processorTime;
    order.time = limits.time;
    return order;
}

std::string number(const char* format, double value)
{
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

// What became of a child that handed nothing over.
std::string describe(const tbiProcessEnd& end, const tbImportLimits& limits)
{
    const std::string after = number(" after %.1f s", end.seconds);
    switch (end.how)
    {
    case tbiProcessEnd::PROCESSOR_TIME:
        return number("passed its processor time of %g s", limits.processorTime);
    case tbiProcessEnd::TIME:
        return number("passed its time of %g s", limits.time);
    case tbiProcessEnd::STOPPED:
        return "stopped (" + end.text + ")" + after;
    case tbiProcessEnd::NOT_STARTED:
        return "was not started: " + end.text;
    case tbiProcessEnd::EXITED:
        break;
    }
    if (end.code != MEMORY_IS_OUT)
        return "stopped (exit code " + std::to_string(end.code) + ")" + after;
    if (limits.memory > 0 && tbiLimitsMemory())
        return number("passed its memory of %.0f MiB", double(limits.memory) / (1 << 20)) + after;
    return "ran out of memory" + after;
}

// A file may have made the child say anything; lines stay lines.
std::string printableLines(const std::string& text)
{
    std::string out;
    for (std::size_t begin = 0; begin < text.size();)
    {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        out += tbiPrintable(text.substr(begin, end - begin).c_str(), false);
        if (end < text.size())
            out += '\n';
        begin = end + 1;
    }
    return out;
}

// The loader's own error, as the child wrote it down. False when it is not whole.
bool takeReport(const std::string& report)
{
    const std::size_t line = report.find('\n');
    if (line == std::string::npos)
        return false;
    const auto error = tbLoader::LOADER_ERROR(std::atoi(report.c_str()));
    tbiSetLoaderFailure(error == tbLoader::LOADER_OK ? tbLoader::LOADER_STOPPED : error,
                        printableLines(report.substr(line + 1)));
    return true;
}

tbBase* takeScene(const tbiImportSource& source, const PrivateDirectory& directory)
{
    tbPlugIn::load(tbiCompanionModule);
    tbBase* root = tbiImportNative(directory.file(SCENE_FILE).c_str());
    if (!root)
        fail("what the loader for ." + source.extension +
             " handed over cannot be read: " + tbLoader::getErrorMessage());
    return root;
}

tbBase* importInChild(const tbiImportSource& source, const tbImportLimits& limits)
{
    const PrivateDirectory directory;
    if (directory.getPath().empty())
    {
        fail("no directory for temporary files can be made");
        return nullptr;
    }
    const tbiProcessOrder order = makeOrder(source, directory.getPath(), limits);
    if (order.program.empty())
        return nullptr;
    const tbiProcessEnd end = tbiRunProcess(order);
    if (const std::string messages = printableLines(directory.read(MESSAGES_FILE)); !messages.empty())
        tbMessage("%s", messages.c_str());
    if (end.how == tbiProcessEnd::EXITED && end.code == DONE)
        return takeScene(source, directory);
    if (end.how == tbiProcessEnd::EXITED && end.code == CHILD_REFUSED &&
        takeReport(directory.read(REPORT_FILE)))
        return nullptr;
    fail("loader for ." + source.extension + " " + describe(end, limits));
    return nullptr;
}

} // namespace

tbBase* tbImportIsolated(const char* name, const tbImportLimits& limits)
{
    return tbiImportWhole(
        [&]
        {
            tbiImportSource source;
            tbBase* root = nullptr;
            if (tbiFindImportSource(name, source))
                root = source.module.empty() ? tbLoader::importFile(name) : importInChild(source, limits);
            return root;
        });
}

void tbiImportOrder::beginChild() noexcept
{
    tbiBeginChild();
}
