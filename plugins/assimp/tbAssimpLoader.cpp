// The record of this module: a loader for every format that the library reads, and for some that are written.

#include <portable/tbPortableModule.h>
#include <tamber/graph/tbModel.h>
#include <tamber/io/tbLoader.h>
#include <tamber/io/tbNewFiles.h>
#include <tamber/kernel/tbString.h>
#include <tamber/kernel/tbiMemoryWatch.h>

#include "tbiAssimpAxes.h"
#include "tbiAssimpExport.h"
#include "tbiAssimpFiles.h"
#include "tbiAssimpGraph.h"
#include "tbiAssimpMesh.h"
#include "tbiExportFormats.h"
#include "tbiExportScene.h"
#include "tbiExtension.h"
#include "tbiModelError.h"

#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace
{
constexpr std::string_view NATIVE_EXTENSION = "tb";

/// The library's own validation is left out: it refuses scenes that are unusual and whole, for example clouds of
/// points. What these steps rely on is checked before them, the rest when it is converted.
constexpr unsigned STEPS = aiProcess_Triangulate | aiProcess_SortByPType | aiProcess_JoinIdenticalVertices |
                           aiProcess_GenSmoothNormals | aiProcess_GenUVCoords | aiProcess_TransformUVCoords |
                           aiProcess_FindInvalidData;

class AssimpLoader final : public tbLoader
{
public:
    AssimpLoader() : tbLoader(TB_ASSIMP_FILE)
    {
        setName("Loader of foreign models");
        setCompany("QRM");
        setRelease(1, 2, 0, "Feb  3 1999");
        // A saved model needs the classes of its objects, not the module that read its source.
        enableSaveWithFile(false);
        if (getNumExtensions() == 0)
            tbiWithoutThrow([this] { addExtensions(); });
        tbPortableAddUser(this);
    }

    ~AssimpLoader() override { tbPortableRemoveUser(this); }

    /// A tbModel with count 0; null with error and message set. No exception leaves it.
    tbBase* import(const char* path) override
    {
        try
        {
            return importModel(path);
        }
        catch (const std::exception& error)
        {
            fail(error.what());
        }
        catch (...)
        {
            fail("the file cannot be read");
        }
        return nullptr;
    }

    /// Writes beside the target; an old file stays when false is returned, with error and message set. No exception
    /// leaves it.
    bool exportObject(const tbBase* object, const char* path) override
    {
        try
        {
            exportModel(object, path);
            return true;
        }
        catch (const std::exception& error)
        {
            setErrorMessage(error.what());
        }
        catch (...)
        {
            setErrorMessage("the file cannot be written");
        }
        setError(LOADER_CANNOT_WRITE);
        return false;
    }

private:
    /// Takes over the list "*.3d;*.3ds;..." of the library.
    void addExtensions()
    {
        std::string list;
        Assimp::Importer().GetExtensionList(list);
        for (std::string_view rest = list; !rest.empty();)
        {
            const std::string_view pattern = rest.substr(0, rest.find(';'));
            rest.remove_prefix(pattern.size() < rest.size() ? pattern.size() + 1 : rest.size());
            const std::string extension(tbiExtensionOf(pattern));
            if (!extension.empty() && extension != NATIVE_EXTENSION && !hasExtension(extension))
                addExtension(extension.c_str());
        }
        for (const tbiExportFormat& format : tbiExportFormats())
            addExportExtension(format.extension);
    }

    bool hasExtension(const std::string& extension) const
    {
        for (int i = 0; i < getNumExtensions(); ++i)
            if (tbStrcmp(getExtension(i), extension.c_str(), true) == 0)
                return true;
        return false;
    }

    static tbBase* importModel(const char* path)
    {
        Assimp::Importer importer;
        auto* files = new tbiAssimpFiles(path);
        importer.SetIOHandler(files); // which deletes it
        importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
        const aiScene* scene = importer.ReadFile(path, 0);
        if (scene)
        {
            tbiCheckFaces(*scene);
            scene = importer.ApplyPostProcessing(tbiIsOwnFile(*scene) ? 0 : STEPS);
        }
        if (!scene)
        {
            const char* refusal = files->getRefusal();
            fail(importer.GetErrorString() + (refusal ? "; " + std::string(refusal) : ""));
            return nullptr;
        }
        return tbiConvertScene(*scene, tbiExtensionOf(path)).release();
    }

    static void exportModel(const tbBase* object, const std::string& path)
    {
        if (!object->isOfType(tbGroup::getClassType()))
            throw tbiModelError(std::string("a ") + object->getType()->getName() + " is no model");
        const std::string_view extension = tbiExtensionOf(path);
        const tbiExportFormat* format = tbiFindExportFormat(extension);
        if (!format)
            throw tbiModelError(readOnlyMessage(extension));
        const auto up = tbiIsZUp(extension) ? tbiExportScene::Z_UP : tbiExportScene::Y_UP;
        const tbiExportScene scene = tbiCollectScene(static_cast<const tbGroup&>(*object), up);
        const std::size_t name = path.find_last_of("/\\") + 1; // 0 when there is no directory
        const std::string fileName = path.substr(name);
        if (format->write)
            writeFiles(path.substr(0, name), {{fileName, format->write(scene)}});
        else
            writeFiles(path.substr(0, name), tbiWriteByLibrary(scene, *format, fileName));
    }

    static void writeFiles(const std::string& directory, const std::vector<tbiOutputFile>& files)
    {
        tbNewFiles newFiles;
        for (const tbiOutputFile& file : files)
            if (!newFiles.add((directory + file.name).c_str(), file.bytes.data(), file.bytes.size()))
                throw tbiModelError("\"" + directory + file.name + "\" cannot be written");
        if (!newFiles.commit())
            throw tbiModelError("the new files cannot take their places in \"" + directory + "\"");
    }

    static std::string readOnlyMessage(std::string_view extension)
    {
        std::string message =
            "models are read from ." + std::string(extension) + " but not written to it. Written are:";
        for (const tbiExportFormat& format : tbiExportFormats())
            message += std::string(" ") + format.extension;
        return message;
    }

    /// The format is known, the file is not what it should be.
    static constexpr auto CANNOT_READ = LOADER_ERROR(2);

    static void fail(const std::string& reason)
    {
        setError(CANNOT_READ);
        setErrorMessage(reason.empty() ? "the file cannot be read" : reason.c_str());
    }
};

// Constructed when the module is loaded, destroyed when it is unloaded.
AssimpLoader loader;
} // namespace
