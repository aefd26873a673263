#include "tbiAssimpExport.h"

#include <portable/tbTexture.h>

#include "tbiAssimpScene.h"
#include "tbiExportFormats.h"
#include "tbiExportScene.h"
#include "tbiModelError.h"
#include "tbiPng.h"

#include <assimp/Exporter.hpp>
#include <assimp/IOStream.hpp>
#include <assimp/IOSystem.hpp>
#include <assimp/scene.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <map>

namespace
{
/// A file that is kept until it is closed. Positions may go back, as file headers want.
class OutputStream final : public Assimp::IOStream
{
public:
    explicit OutputStream(std::string& target) : bytes(target) {}

    std::size_t Read(void*, std::size_t, std::size_t) override { return 0; }

    std::size_t Write(const void* data, std::size_t itemSize, std::size_t count) override
    {
        const std::size_t size = itemSize * count;
        if (size == 0)
            return 0;
        bytes.resize(std::max(bytes.size(), position + size));
        std::memcpy(&bytes[position], data, size);
        position += size;
        return count;
    }

    aiReturn Seek(std::size_t offset, aiOrigin origin) override
    {
        const std::size_t from = origin == aiOrigin_SET   ? 0
                                 : origin == aiOrigin_CUR ? position
                                                          : bytes.size();
        const std::size_t wanted = from + offset; // offsets may be negative and wrap
        if (wanted > bytes.size())
            return aiReturn_FAILURE;
        position = wanted;
        return aiReturn_SUCCESS;
    }

    std::size_t Tell() const override { return position; }
    std::size_t FileSize() const override { return bytes.size(); }
    void Flush() override {}

private:
    std::string& bytes;
    std::size_t position = 0;
};

/// Keeps what is written in memory, by name without directory.
class OutputFiles final : public Assimp::IOSystem
{
public:
    explicit OutputFiles(std::map<std::string, std::string>& target) : files(target) {}

    bool Exists(const char*) const override { return false; }
    char getOsSeparator() const override { return '/'; }
    Assimp::IOStream* Open(const char* name, const char* mode) override
    {
        if (!mode || *mode != 'w')
            return nullptr;
        std::string& bytes = files[std::filesystem::path(name).filename().string()];
        bytes.clear();
        return new OutputStream(bytes);
    }
    void Close(Assimp::IOStream* stream) override { delete stream; }
    bool CreateDirectory(const std::string&) override { return false; }
    bool ChangeDirectory(const std::string&) override { return false; }
    bool DeleteFile(const std::string&) override { return false; }

private:
    std::map<std::string, std::string>& files;
};

std::map<std::string, std::string> writeToMemory(const aiScene& scene, const char* id,
                                                 const std::string& name)
{
    std::map<std::string, std::string> files;
    Assimp::Exporter exporter;
    exporter.SetIOHandler(new OutputFiles(files)); // which the exporter deletes
    if (exporter.Export(&scene, id, name) != aiReturn_SUCCESS)
        throw tbiModelError(*exporter.GetErrorString() ? exporter.GetErrorString()
                                                       : "the file cannot be written");
    return files;
}

/// The names of the materials' images. Those that the graph carries become files beside the model.
std::vector<std::string> takeImages(const tbiExportScene& scene, const std::string& name,
                                    std::vector<tbiOutputFile>& files)
{
    std::map<const tbTexture*, std::string> known;
    std::vector<std::string> images;
    const std::string stem = std::filesystem::path(name).stem().string();
    for (const tbiExportMaterial& material : scene.materials)
    {
        const tbTexture* texture = material.texture;
        if (!texture)
        {
            images.emplace_back();
            continue;
        }
        const auto [place, isNew] = known.try_emplace(texture);
        if (isNew && texture->getImage())
        {
            const auto* bytes = static_cast<const unsigned char*>(texture->getImage());
            const bool arePixels = texture->getWidth() > 0;
            const auto png = arePixels ? tbiWritePng(texture->getWidth(), texture->getHeight(), bytes)
                                       : std::vector<unsigned char>(bytes, bytes + texture->getImageSize());
            const std::string format = arePixels || !*texture->getFormat() ? "png" : texture->getFormat();
            const bool isPlain = std::all_of(format.begin(), format.end(),
                                             [](unsigned char c) { return c < 0x80 && std::isalnum(c); });
            place->second =
                stem + "-" + std::to_string(files.size() + 1) + "." + (isPlain ? format : "image");
            files.push_back({place->second, std::string(png.begin(), png.end())});
        }
        else if (isNew && texture->getFileName())
            place->second = texture->getFileName();
        images.push_back(place->second);
    }
    return images;
}
} // namespace

std::vector<tbiOutputFile> tbiWriteByLibrary(const tbiExportScene& source, const tbiExportFormat& format,
                                             const std::string& name)
{
    std::vector<tbiOutputFile> files;
    const std::vector<std::string> images = takeImages(source, name, files);
    const std::unique_ptr<aiScene> scene = tbiMakeAssimpScene(source, images, format.losesTop);
    std::map<std::string, std::string> written = writeToMemory(*scene, format.id, name);
    auto model = written.extract(name);
    if (model.empty() || model.mapped().empty())
        throw tbiModelError("nothing was written");
    for (auto& [side, bytes] : written)
        files.push_back({side, std::move(bytes)});
    files.push_back({name, std::move(model.mapped())});
    return files;
}
