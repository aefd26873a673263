#include <tamber/io/tbLoader.h>

#include <tamber/containers/tbiStatic.h>
#include <tamber/graph/tbGroup.h>
#include <tamber/io/tbFile.h>
#include <tamber/io/tbiFileTypes.h>
#include <tamber/io/tbiLoaderDefs.h>
#include <tamber/io/tbiLoaderLookup.h>
#include <tamber/io/tbiPlugInLists.h>
#include <tamber/io/tbiPlugInLog.h>
#include <tamber/io/tbiPlugInSearch.h>
#include <tamber/io/tbiUnknownFormat.h>
#include <tamber/kernel/tbFilePath.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/platform/tbiModule.h>
#include <tamber/platform/tbiModuleName.h>
#include <tamber/platform/tbiPath.h>
#include <tamber/thread/tbiLockGuard.h>

namespace
{

constinit tbiStatic<tbTList<tbLoader*>> loaders;

constinit tbLoader::LOADER_ERROR errorCode = tbLoader::LOADER_OK;
constinit char* errorMesg = nullptr;
constinit char* saveDir = nullptr;
constinit tbProgressFunc progress = nullptr;

// What follows the last dot of the file's name; null when there is none.
const char* extensionOf(const char* path)
{
    const std::string_view name = tbiFilePart(path);
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? nullptr : name.data() + dot + 1;
}

using ExtensionList = tbiLoaderDef::Extensions tbiLoaderDef::*;

int numOf(const tbiLoaderDef* def, ExtensionList list)
{
    return def ? (def->*list).getNum() : 0;
}

const char* textOf(const tbiLoaderDef* def, ExtensionList list, int i)
{
    return i >= 0 && i < numOf(def, list) ? (def->*list)[i] : nullptr;
}

void clearError()
{
    errorCode = tbLoader::LOADER_OK;
    tbiSetText(errorMesg, nullptr);
}

// The file to load a loader from: the one that it was loaded from before, unless it may not be taken any more. Its
// bare name when there is none.
std::string moduleFileOf(const tbiLoaderDef& def, tbiPlugInSearch& search)
{
    if (def.path && *def.path && (tbiPlugInLog::isAskedFor(def.path) || search.allows(def.path)))
        return def.path;
    const std::string found = search.find(def.moduleName);
    return found.empty() ? def.moduleName : found;
}

void setOutOfMemory(tbLoader::LOADER_ERROR code)
{
    errorCode = code;
    tbiSetText(errorMesg, nullptr); // no other failure's text, when there is no memory for this one's
    tbiSetText(errorMesg, "memory is out");
}

std::string quoted(const char* name)
{
    return "\"" + std::string(name ? name : "") + "\"";
}

std::string findFile(const char* name)
{
    const int size = tbFindFile(name, 0, nullptr);
    std::string path(std::size_t(size), '\0');
    if (size > 0)
        tbFindFile(name, size, path.data());
    return path.c_str();
}

bool exportNative(const tbBase* object, std::string path)
{
    const char* extension =
        object->isOfType(tbGroup::getClassType()) ? tbiGroupExtension : tbiFileTypes::extensionFor(*object);
    if (!extension)
    {
        tbiSetLoaderFailure(tbLoader::LOADER_NO_FILE_TYPE,
                            quoted(path.c_str()) +
                                " cannot be written: there is no file type for the class " +
                                object->getType()->getName());
        return false;
    }
    if (!extensionOf(path.c_str()))
        path += std::string(".") + extension;
    tbFile file;
    if (!file.create(path.c_str()))
    {
        tbiSetLoaderFailure(tbLoader::LOADER_FILE_NOT_FOUND, file.getErrorText());
        return false;
    }
    file.setProgressFunc(progress);
    if (file.save(object))
        return true;
    tbiSetLoaderFailure(tbLoader::LOADER_CANNOT_WRITE, file.getErrorText());
    return false;
}

} // namespace

tbLoader::tbLoader(const char* moduleFile) : tbPlugIn(moduleFile), definition(nullptr)
{
    errorCode = LOADER_OK;
    tbiLockGuard guard(tbiLocks::plugIn);
    definition = tbiLoaderDefs::of(getModuleName() ? getModuleName() : "");
    if (definition && getModule())
        tbiWithoutThrow([this] { tbiSetText(definition->path, tbiModulePath(getModule()).c_str()); });
    loaders->add(this);
}

tbLoader::~tbLoader()
{
    tbiForgetLoader(this);
}

bool tbLoader::exportObject(const tbBase*, const char*)
{
    return false;
}

void tbLoader::addExtension(const char* extension)
{
    if (definition)
        tbiLoaderDefs::addExtension(definition->extensions, extension);
}

void tbLoader::addExportExtension(const char* extension)
{
    if (definition)
        tbiLoaderDefs::addExtension(definition->exportExtensions, extension);
}

int tbLoader::getNumExtensions() const
{
    return numOf(definition, &tbiLoaderDef::extensions);
}

const char* tbLoader::getExtension(int i) const
{
    return textOf(definition, &tbiLoaderDef::extensions, i);
}

void tbLoader::initLoaders()
{
    tbiWithoutThrow(
        []
        {
            tbiPlugInSearch search;
            for (const std::string& path : search.findLoaders())
                load(path.c_str(), search, true);
        });
    unloadAll();
}

// The loader of an extension, its module loaded; null when there is none, with an error set when there should be.
tbLoader* tbLoader::loadFor(const char* extension)
{
    const tbiLoaderDef* def = tbiLoaderDefs::forExtension(extension);
    if (!def)
        return nullptr;
    tbiPlugInSearch search;
    const std::string file = moduleFileOf(*def, search);
    if (!load(file.c_str(), search, true) && file != def->moduleName)
        load(def->moduleName, search, true);
    for (tbLoader* loader : *loaders)
        if (loader->definition == def)
            return loader;
    tbiSetLoaderFailure(LOADER_UNKNOWN_FORMAT,
                        std::string("the loader ") + def->moduleName +
                            " cannot be loaded any more: " + tbiPlugInLog::getReason(def->moduleName));
    return nullptr;
}

tbBase* tbLoader::importFile(const char* name)
{
    return tbiImportWhole([name] { return importFrom(name); });
}

tbBase* tbLoader::importFrom(const char* name)
{
    tbiImportSource source;
    if (!tbiFindImportSource(name, source))
        return nullptr;
    const char* path = source.path.c_str();
    if (tbLoader* loader = loadFor(extensionOf(path)))
    {
        loader->ref(); // the module stays while its code runs
        tbBase* root = loader->import(path);
        loader->unRef();
        return root;
    }
    if (errorCode != LOADER_OK)
        return nullptr;
    if (tbFile::isTamberFormat(path))
        return tbiImportNative(path);
    tbiSetLoaderFailure(LOADER_UNKNOWN_FORMAT, tbiUnknownFormat(source.path));
    return nullptr;
}

bool tbLoader::exportFile(const tbBase* object, const char* name)
{
    clearError();
    const tbiMemoryWatch memory;
    if (tbiWithoutThrow(false, [object, name] { return exportTo(object, name); }))
        return true;
    if (memory.ranOut())
        setOutOfMemory(LOADER_CANNOT_WRITE);
    return false;
}

bool tbLoader::exportTo(const tbBase* object, const char* name)
{
    if (!object || !name || *name == 0)
    {
        tbiSetLoaderFailure(LOADER_CANNOT_WRITE, "no object, or no file name");
        return false;
    }
    std::string path = name;
    if (saveDir && *saveDir)
    {
        const char last = saveDir[std::strlen(saveDir) - 1];
        path = std::string(saveDir) + (last == '/' || last == '\\' ? "" : "\\") + name;
    }
    tbiToNativePath(path.data()); // loaders hand it to the system as it is
    const char* extension = extensionOf(path.c_str());
    if (tbLoader* loader = extension ? loadFor(extension) : nullptr)
    {
        loader->ref();
        const bool written = loader->exportObject(object, path.c_str());
        if (!written && errorCode == LOADER_OK)
            tbiSetLoaderFailure(LOADER_CANNOT_WRITE, quoted(name) + " cannot be written: the loader " +
                                                         loader->getModuleName() + " does not write ." +
                                                         extension);
        loader->unRef();
        return written;
    }
    return errorCode == LOADER_OK && exportNative(object, path);
}

bool tbLoader::addTamberFileType(tbType* type, const char* extension)
{
    return tbiFileTypes::add(type, extension);
}

int tbLoader::getNumTamberFileTypes()
{
    return tbiFileTypes::getNum();
}

const char* tbLoader::getTamberFileType(int i)
{
    return tbiFileTypes::get(i);
}

int tbLoader::getNumLoaders()
{
    return tbiLoaderDefs::getNum();
}

int tbLoader::getNumLoaderExtensions(int loader)
{
    return numOf(tbiLoaderDefs::get(loader), &tbiLoaderDef::extensions);
}

const char* tbLoader::getLoaderExtension(int loader, int extension)
{
    return textOf(tbiLoaderDefs::get(loader), &tbiLoaderDef::extensions, extension);
}

int tbLoader::getNumExportExtensions(int loader)
{
    return numOf(tbiLoaderDefs::get(loader), &tbiLoaderDef::exportExtensions);
}

const char* tbLoader::getExportExtension(int loader, int extension)
{
    return textOf(tbiLoaderDefs::get(loader), &tbiLoaderDef::exportExtensions, extension);
}

void tbLoader::setProgressFunc(tbProgressFunc func)
{
    progress = func;
}

tbLoader::LOADER_ERROR tbLoader::getError()
{
    return errorCode;
}

const char* tbLoader::getErrorMessage()
{
    return errorMesg;
}

void tbLoader::setSaveDirectory(const char* dir)
{
    tbiSetText(saveDir, dir);
}

const char* tbLoader::getSaveDirectory()
{
    return saveDir;
}

void tbLoader::setError(LOADER_ERROR error)
{
    errorCode = error;
}

void tbLoader::setErrorMessage(const char* text)
{
    tbiSetText(errorMesg, text);
}

void tbiSetLoaderFailure(tbLoader::LOADER_ERROR code, const std::string& text)
{
    errorCode = code;
    tbiSetText(errorMesg, text.c_str());
}

tbBase* tbiEndImport(tbBase* root, bool ranOut)
{
    if (!ranOut)
        return root;
    if (root)
        root->unRef();
    setOutOfMemory(tbLoader::LOADER_UNKNOWN_FORMAT);
    return nullptr;
}

bool tbiFindImportSource(const char* name, tbiImportSource& source)
{
    clearError();
    source.path = findFile(name);
    if (source.path.empty())
    {
        tbiSetLoaderFailure(tbLoader::LOADER_FILE_NOT_FOUND, "there is no file " + quoted(name));
        return false;
    }
    const char* extension = extensionOf(source.path.c_str());
    if (!extension)
    {
        tbiSetLoaderFailure(tbLoader::LOADER_NO_EXTENSION, "the file name has no extension: " + quoted(name));
        return false;
    }
    source.extension = extension;
    if (const tbiLoaderDef* def = tbiLoaderDefs::forExtension(extension))
    {
        tbiPlugInSearch search;
        source.module = moduleFileOf(*def, search);
    }
    return true;
}

tbBase* tbiImportNative(const char* path)
{
    tbFile file;
    if (!file.open(path, "r"))
    {
        tbiSetLoaderFailure(tbLoader::LOADER_UNKNOWN_FORMAT, file.getErrorText());
        return nullptr;
    }
    file.setProgressFunc(progress);
    tbPlugIn::loadPlugIns(&file);
    tbBase* root = file.readObject(0);
    if (!root)
        tbiSetLoaderFailure(tbLoader::LOADER_UNKNOWN_FORMAT,
                            std::string("the root cannot be read: ") + file.getErrorText());
    return root;
}

void tbiForgetLoader(const void* record)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    for (int i = loaders->getNum() - 1; i >= 0; --i)
        if ((*loaders)[i] == record)
            loaders->removeOrderedIndex(i);
}

void tbiReleaseLoaderLists()
{
    loaders->setSize(0);
    tbiLoaderDefs::release();
    tbiFileTypes::release();
    tbiSetText(errorMesg, nullptr);
    tbiSetText(saveDir, nullptr);
}
