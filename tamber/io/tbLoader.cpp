#include <tamber/io/tbLoader.h>

#include <tamber/containers/tbiStatic.h>
#include <tamber/graph/tbGroup.h>
#include <tamber/io/tbFile.h>
#include <tamber/io/tbImport.h>
#include <tamber/io/tbiLoaderLookup.h>
#include <tamber/io/tbiPlugInLists.h>
#include <tamber/io/tbiPlugInLog.h>
#include <tamber/io/tbiPlugInSearch.h>
#include <tamber/io/tbiUnknownFormat.h>
#include <tamber/kernel/tbFilePath.h>
#include <tamber/kernel/tbString.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/platform/tbiModule.h>
#include <tamber/platform/tbiModuleName.h>
#include <tamber/platform/tbiPath.h>
#include <tamber/thread/tbiLockGuard.h>

// What is known of a loader module, loaded or not.
struct tbiLoaderDef : tbAllocated<tbiLoaderDef>
{
    char* moduleName = nullptr;
    tbTList<char*> extensions;
    tbTList<char*> exportExtensions;
    char* path = nullptr; // the file that it was loaded from last
};

// A class whose objects may be native files of their own.
struct tbiFileType : tbAllocated<tbiFileType>
{
    char* extension = nullptr;
    const tbType* type = nullptr;
};

namespace
{

constexpr const char* groupExtension = "tb";

constinit tbiStatic<tbTList<tbLoader*>> loaders;
constinit tbiStatic<tbTList<tbiLoaderDef*>> loaderDefs;
constinit tbiStatic<tbTList<tbiFileType*>> fileTypes;

constinit tbLoader::LOADER_ERROR errorCode = tbLoader::LOADER_OK;
constinit char* errorMesg = nullptr;
constinit char* saveDir = nullptr;
constinit tbProgressFunc progress = nullptr;

bool sameName(const char* a, const char* b)
{
    return tbStrcmp(a, b, true) == 0;
}

// What follows the last dot of the file's name; null when there is none.
const char* extensionOf(const char* path)
{
    const std::string_view name = tbiFilePart(path);
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? nullptr : name.data() + dot + 1;
}

tbiLoaderDef* definitionOf(const char* moduleName)
{
    for (tbiLoaderDef* def : *loaderDefs)
        if (sameName(def->moduleName, moduleName))
            return def;
    auto* def = new tbiLoaderDef;
    if (!def)
        return nullptr;
    def->moduleName = tbiCopyText(moduleName);
    if (def->moduleName && loaderDefs->add(def) >= 0)
        return def;
    tbMemory::free(def->moduleName);
    delete def;
    return nullptr;
}

tbiLoaderDef* definitionFor(const char* extension)
{
    for (tbiLoaderDef* def : *loaderDefs)
        for (int i = def->extensions.getNum() - 1; i >= 0; --i)
            if (sameName(def->extensions[i], extension))
                return def;
    return nullptr;
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

// A module that is loaded again names its extensions again.
void addOnce(tbTList<char*>& extensions, const char* extension)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    if (!extension)
        return;
    for (const char* known : extensions)
        if (sameName(known, extension))
            return;
    char* copy = tbiCopyText(extension);
    if (copy && extensions.add(copy) < 0)
        tbMemory::free(copy);
}

const char* nativeExtension(const tbBase* object)
{
    if (object->isOfType(tbGroup::getClassType()))
        return groupExtension;
    for (const tbiFileType* fileType : *fileTypes)
        if (object->isOfType(fileType->type))
            return fileType->extension;
    return nullptr;
}

bool exportNative(const tbBase* object, std::string path)
{
    const char* extension = nativeExtension(object);
    if (!extension)
    {
        tbiSetLoaderFailure(tbLoader::LOADER_NO_FILE_TYPE,
                            std::string("no file type for the class ") + object->getType()->getName());
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
    const tbiMemoryWatch memory;
    file.setProgressFunc(progress);
    bool written = object->write(&file, nullptr) != nullptr;
    if (written)
    {
        tbPlugIn::savePlugIns(&file);
        written = !memory.ranOut() && file.write();
    }
    if (!written)
        tbiSetLoaderFailure(tbLoader::LOADER_CANNOT_WRITE, file.getErrorText());
    return written;
}

} // namespace

tbLoader::tbLoader(const char* moduleFile) : tbPlugIn(moduleFile), definition(nullptr)
{
    errorCode = LOADER_OK;
    tbiLockGuard guard(tbiLocks::plugIn);
    definition = definitionOf(getModuleName() ? getModuleName() : "");
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
        addOnce(definition->extensions, extension);
}

void tbLoader::addExportExtension(const char* extension)
{
    if (definition)
        addOnce(definition->exportExtensions, extension);
}

int tbLoader::getNumExtensions() const
{
    return definition ? definition->extensions.getNum() : 0;
}

const char* tbLoader::getExtension(int i) const
{
    return definition && definition->extensions.indexInRange(i) ? definition->extensions[i] : nullptr;
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
    const tbiLoaderDef* def = definitionFor(extension);
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

// What was read while memory ran out may lack something anywhere, so nothing of it is handed out.
tbBase* tbLoader::importFile(const char* name)
{
    clearError();
    const tbiMemoryWatch memory;
    tbBase* root = tbiWithoutThrow<tbBase*>(nullptr, [name] { return importFrom(name); });
    if (!memory.ranOut())
        return root;
    if (root)
        root->unRef();
    setOutOfMemory(LOADER_UNKNOWN_FORMAT);
    return nullptr;
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
        loader->unRef();
        if (!written && errorCode == LOADER_OK)
            tbiSetLoaderFailure(LOADER_CANNOT_WRITE, "the loader of this format does not write it");
        return written;
    }
    return errorCode == LOADER_OK && exportNative(object, path);
}

bool tbLoader::addTamberFileType(tbType* type, const char* extension)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    if (!type || !extension)
        return false;
    for (const tbiFileType* known : *fileTypes)
        if (known->type == type || sameName(known->extension, extension))
            return false;
    auto* fileType = new tbiFileType;
    if (!fileType)
        return false;
    fileType->type = type;
    fileType->extension = tbiCopyText(extension);
    if (fileType->extension && fileTypes->add(fileType) >= 0)
        return true;
    tbMemory::free(fileType->extension);
    delete fileType;
    return false;
}

int tbLoader::getNumTamberFileTypes()
{
    return fileTypes->getNum();
}

const char* tbLoader::getTamberFileType(int i)
{
    return fileTypes->indexInRange(i) ? (*fileTypes)[i]->extension : nullptr;
}

int tbLoader::getNumLoaders()
{
    return loaderDefs->getNum();
}

int tbLoader::getNumLoaderExtensions(int loader)
{
    return loaderDefs->indexInRange(loader) ? (*loaderDefs)[loader]->extensions.getNum() : 0;
}

const char* tbLoader::getLoaderExtension(int loader, int extension)
{
    if (extension < 0 || extension >= getNumLoaderExtensions(loader))
        return nullptr;
    return (*loaderDefs)[loader]->extensions[extension];
}

int tbLoader::getNumExportExtensions(int loader)
{
    return loaderDefs->indexInRange(loader) ? (*loaderDefs)[loader]->exportExtensions.getNum() : 0;
}

const char* tbLoader::getExportExtension(int loader, int extension)
{
    if (extension < 0 || extension >= getNumExportExtensions(loader))
        return nullptr;
    return (*loaderDefs)[loader]->exportExtensions[extension];
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
    if (const tbiLoaderDef* def = definitionFor(extension))
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

tbBase* tbImportOfType(const char* fileName, const tbType* type)
{
    tbBase* root = tbLoader::importFile(fileName);
    if (!root || root->isOfType(type))
        return root;
    root->unRef();
    if (!tbiWithoutThrow(false,
                         [=]
                         {
                             tbiSetLoaderFailure(tbLoader::LOADER_UNKNOWN_FORMAT,
                                                 quoted(fileName) + " does not hold a " +
                                                     (type ? type->getName() : "(none)"));
                             return true;
                         }))
        setOutOfMemory(tbLoader::LOADER_UNKNOWN_FORMAT);
    return nullptr;
}

void tbiForgetFileType(const tbType* type)
{
    for (int i = fileTypes->getNum() - 1; i >= 0; --i)
    {
        tbiFileType* fileType = (*fileTypes)[i];
        if (fileType->type != type)
            continue;
        tbMemory::free(fileType->extension);
        delete fileType;
        fileTypes->removeOrderedIndex(i);
    }
}

std::vector<std::string> tbiLoaderExtensions(const std::string& moduleName)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    std::vector<std::string> extensions;
    for (const tbiLoaderDef* def : *loaderDefs)
        if (sameName(def->moduleName, moduleName.c_str()))
            extensions.assign(def->extensions.begin(), def->extensions.end());
    return extensions;
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
    for (tbiLoaderDef* def : *loaderDefs)
    {
        for (tbTList<char*>* list : {&def->extensions, &def->exportExtensions})
            for (char* extension : *list)
                tbMemory::free(extension);
        tbMemory::free(def->moduleName);
        tbMemory::free(def->path);
        delete def;
    }
    for (tbiFileType* fileType : *fileTypes)
    {
        tbMemory::free(fileType->extension);
        delete fileType;
    }
    loaders->setSize(0);
    loaderDefs->setSize(0);
    fileTypes->setSize(0);
    tbiSetText(errorMesg, nullptr);
    tbiSetText(saveDir, nullptr);
}
