#include "ModelFile.h"

#include "CommandError.h"
#include "Progress.h"

#include <tamber/graph/tbGroup.h>
#include <tamber/io/tbFile.h>
#include <tamber/io/tbImportProcess.h>
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbString.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace
{
constexpr const char* NATIVE_EXTENSION = "tb";

/// Without the dot; empty when there is none.
std::string extensionOf(const std::string& path)
{
    const std::string extension = std::filesystem::path(path).extension().string();
    return extension.empty() ? extension : extension.substr(1);
}

bool isSame(const char* a, const std::string& b)
{
    return tbStrcmp(a, b.c_str(), true) == 0;
}

bool isLoaderExtension(const std::string& extension)
{
    for (int loader = 0; loader < tbLoader::getNumLoaders(); ++loader)
        for (int i = 0; i < tbLoader::getNumLoaderExtensions(loader); ++i)
            if (isSame(tbLoader::getLoaderExtension(loader, i), extension))
                return true;
    return false;
}

/// The native one first.
std::vector<std::string> writtenExtensions()
{
    std::vector<std::string> extensions = {NATIVE_EXTENSION};
    for (int loader = 0; loader < tbLoader::getNumLoaders(); ++loader)
        for (int i = 0; i < tbLoader::getNumExportExtensions(loader); ++i)
            extensions.emplace_back(tbLoader::getExportExtension(loader, i));
    return extensions;
}

std::string writtenFormats()
{
    std::string text = "; what can be written:";
    for (const std::string& extension : writtenExtensions())
        text += " " + extension;
    return text;
}

std::string lastLoaderMessage(const char* otherwise)
{
    const char* message = tbLoader::getErrorMessage();
    return message && *message ? message : otherwise;
}

tbImportLimits limitsOf(const ImportOptions& options)
{
    constexpr double MIB = 1 << 20;
    constexpr double WAITING = 4; // a busy machine gives a process a part of the clock's time
    return {std::int64_t(options.memory * MIB), options.seconds, options.seconds * WAITING};
}

std::string hintAtLimits()
{
    const bool passed =
        tbLoader::getError() == tbLoader::LOADER_STOPPED &&
        std::string_view(tbLoader::getErrorMessage()).find(" passed its ") != std::string::npos;
    return passed ? "; --import-memory and --import-time set the limits" : "";
}

void checkSource(const std::string& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        throw CommandError(path, "there is no such file");
    if (!std::filesystem::is_regular_file(status))
        throw CommandError(path, "is not a file");
}
void checkDirectory(const std::string& path)
{
    const auto directory = std::filesystem::path(path).parent_path();
    std::error_code error;
    if (!directory.empty() && !std::filesystem::is_directory(directory, error))
        throw CommandError(path, "there is no directory " + directory.string());
}

// The bar of the work that goes on, for as long as it does; the library tells it how far it is.
class LibraryProgress
{
public:
    explicit LibraryProgress(const std::string& work) : progress(work)
    {
        current = &progress;
        tbLoader::setProgressFunc(&show);
    }
    LibraryProgress(const LibraryProgress&) = delete;
    LibraryProgress& operator=(const LibraryProgress&) = delete;
    ~LibraryProgress() { tbLoader::setProgressFunc(nullptr); }

    static void show(double done) { current->setDone(done); }

private:
    inline static Progress* current = nullptr;
    Progress progress;
};

void writeNatively(const tbGroup& model, const std::string& path, const NativeOptions& options)
{
    tbFile file;
    if (!file.create(path.c_str()))
        throw CommandError(path, file.getErrorText());
    file.setByteSwapped(options.swap);
    file.setCompression(options.compress ? tbEntry::RLE : tbEntry::NO_COMPRESSION);
    file.setProgressFunc(&LibraryProgress::show);
    if (!file.save(&model))
        throw CommandError(path, file.getErrorText());
}
} // namespace

ImportOptions& importOptions()
{
    static ImportOptions options;
    return options;
}

tbRef<tbGroup> loadModel(const std::string& path)
{
    checkSource(path);
    const LibraryProgress progress("reading " + path);
    tbBase* object = importOptions().inProcess ? tbLoader::importFile(path.c_str())
                                               : tbImportIsolated(path.c_str(), limitsOf(importOptions()));
    if (!object)
        throw CommandError(path, lastLoaderMessage("cannot be read") + hintAtLimits());
    const tbRef<tbBase> holder = object;
    if (!object->isOfType(tbGroup::getClassType()))
        throw CommandError(path, std::string("holds a ") + object->getType()->getName() + " and no model");
    return static_cast<tbGroup*>(object);
}

void checkSaveTarget(const std::string& path)
{
    const std::string extension = extensionOf(path);
    if (isLoaderExtension(extension))
        throw CommandError(path, "models are saved in the native format, whose extension is " +
                                     std::string(NATIVE_EXTENSION) + ", not " + extension);
    checkDirectory(path);
}

void checkConvertTarget(const std::string& path, const NativeOptions& options)
{
    const std::string extension = extensionOf(path);
    const std::vector<std::string> written = writtenExtensions();
    if (extension.empty())
        throw CommandError(path, "has no extension that says the format" + writtenFormats());
    if (std::none_of(written.begin(), written.end(),
                     [&](const std::string& each) { return isSame(each.c_str(), extension); }))
        throw CommandError(path, (isLoaderExtension(extension) ? "files of this format are only read"
                                                               : "a format that is not known here") +
                                     writtenFormats());
    if (!options.isDefault() && !isSame(NATIVE_EXTENSION, extension))
        throw CommandError(path, "only native files are written with --compress and --swap");
    checkDirectory(path);
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        throw CommandError(path, "is not a file");
}

void saveModel(const tbGroup& model, const std::string& path, const NativeOptions& options)
{
    const LibraryProgress progress("writing " + path);
    if (!options.isDefault())
        writeNatively(model, path, options);
    else if (!tbLoader::exportFile(&model, path.c_str()))
        throw CommandError(path, lastLoaderMessage("cannot be written"));
}
