#pragma once

#include <tamber/io/tbPlugIn.h>
#include <tamber/io/tbProgress.h>

struct tbiLoaderDef;

// A plug-in that reads or writes foreign file formats. Its module constructs it and adds the extensions that it
// takes; they stay known when the module is unloaded, which is loaded again when a file of its format comes.
//
// importFile() and exportFile() are the ways in and out for files of any format, the native one included.
class TB_API tbLoader : public tbPlugIn
{
public:
    enum LOADER_ERROR : int
    {
        LOADER_OK = 0,
        LOADER_UNKNOWN_FORMAT = 1, // or the native file has no root that can be read
        LOADER_FILE_NOT_FOUND = 3, // or the output file cannot be created
        LOADER_NO_FILE_TYPE = 7,
        LOADER_CANNOT_WRITE = 8,
        LOADER_NO_EXTENSION = 9,
        LOADER_STOPPED = 10 // tbImportIsolated(): the loader's process came to no good end
    };

    explicit tbLoader(const char* moduleFile);
    ~tbLoader() override;

    /// Reads a file; the root of what it holds, with count 0, or null.
    virtual tbBase* import(const char* path) = 0;
    /// Writes an object; false here.
    virtual bool exportObject(const tbBase* object, const char* path);

    int getNumExtensions() const;
    /// Null when out of range.
    const char* getExtension(int i) const;

    /// Loads every loader in the plug-in directories, to learn its extensions, and unloads what nobody uses.
    static void initLoaders();
    /// Finds the file, through the search paths too, and reads it with the loader of its extension or natively.
    /// Returns the root with count 0; null with error and message set.
    static tbBase* importFile(const char* name);
    /// Writes `object` with the loader of the name's extension, or natively beside the target, which is replaced
    /// when all is written. False with error and message set, and an old file as it was.
    static bool exportFile(const tbBase* object, const char* name);

    /// Lets objects of `type` be files of their own in the native format. False, and nothing done, when type or
    /// extension (case ignored) is known already.
    static bool addTamberFileType(tbType* type, const char* extension);
    static int getNumTamberFileTypes();
    /// The extension; null when out of range.
    static const char* getTamberFileType(int i);

    /// Every loader ever met, loaded or not.
    static int getNumLoaders();
    static int getNumLoaderExtensions(int loader);
    static const char* getLoaderExtension(int loader, int extension);
    /// The extensions of what the loader writes.
    static int getNumExportExtensions(int loader);
    static const char* getExportExtension(int loader, int extension);

    /// Called now and then while importFile() and exportFile() read and write native files, and while
    /// tbImportIsolated() takes a scene over.
    static void setProgressFunc(tbProgressFunc func);

    static LOADER_ERROR getError();
    /// Why the last import or export failed; null when it did not, or when there is nothing more to say.
    static const char* getErrorMessage();
    /// Directory that exportFile() writes below; null for none.
    static void setSaveDirectory(const char* dir);
    static const char* getSaveDirectory();

protected:
    void addExtension(const char* extension);
    /// Says that exportObject() writes files of that extension, which is to be one of the loader's.
    void addExportExtension(const char* extension);
    static void setError(LOADER_ERROR error);
    static void setErrorMessage(const char* text);

private:
    static tbBase* importFrom(const char* name);
    static bool exportTo(const tbBase* object, const char* name);
    static tbLoader* loadFor(const char* extension);

    tbiLoaderDef* definition;
};
