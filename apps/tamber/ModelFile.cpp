#include "ModelFile.h"

#include "CommandError.h"
#include "Progress.h"

#include <tamber/graph/tbGroup.h>
#include <tamber/io/tbImportProcess.h>
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbString.h>

#include <filesystem>
#include <system_error>

namespace
{
constexpr const char* NATIVE_EXTENSION = "tb";
bool importInProcess = false;

/// Without the dot; empty when there is none.
std::string extensionOf(const std::string& path)
{
    const std::string extension = std::filesystem::path(path).extension().string();
    return extension.empty() ? extension : extension.substr(1);
}

bool isLoaderExtension(const std::string& extension)
{
    for (int loader = 0; loader < tbLoader::getNumLoaders(); ++loader)
        for (int i = 0; i < tbLoader::getNumLoaderExtensions(loader); ++i)
            if (tbStrcmp(tbLoader::getLoaderExtension(loader, i), extension.c_str(), true) == 0)
                return true;
    return false;
}

std::string lastLoaderMessage(const char* otherwise)
{
    const char* message = tbLoader::getErrorMessage();
    return message && *message ? message : otherwise;
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
} // namespace

void setImportInProcess(bool inProcess)
{
    importInProcess = inProcess;
}

tbRef<tbGroup> loadModel(const std::string& path)
{
    checkSource(path);
    const Progress progress("reading " + path);
    tbBase* object = importInProcess ? tbLoader::importFile(path.c_str()) : tbImportIsolated(path.c_str());
    if (!object)
        throw CommandError(path, lastLoaderMessage("cannot be read"));
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
    const auto directory = std::filesystem::path(path).parent_path();
    std::error_code error;
    if (!directory.empty() && !std::filesystem::is_directory(directory, error))
        throw CommandError(path, "there is no directory " + directory.string());
}

void saveModel(const tbGroup& model, const std::string& path)
{
    const Progress progress("writing " + path);
    if (!tbLoader::exportFile(&model, path.c_str()))
        throw CommandError(path, lastLoaderMessage("cannot be written"));
}
