#include "tbiAssimpFiles.h"

#include "tbiExtension.h"

#include <assimp/IOStream.hpp>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

namespace
{
struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// A file that is open for reading. Whoever deletes it closes it.
class ModelStream final : public Assimp::IOStream
{
public:
    /// `filePath` is one that `allFiles` opened.
    ModelStream(tbModelFiles& allFiles, const char* filePath)
        : files(allFiles),
          path(filePath),
          file(std::fopen(filePath, "rb"))
    {
        if (!isOpen())
            return;
        if (std::fseek(file.get(), 0, SEEK_END) == 0)
            size = std::max(std::ftell(file.get()), 0L);
        std::rewind(file.get());
    }

    ~ModelStream() override { files.close(path.c_str()); }

    bool isOpen() const { return file != nullptr; }

    std::size_t Read(void* buffer, std::size_t itemSize, std::size_t count) override
    {
        return itemSize > 0 && count > 0 ? std::fread(buffer, itemSize, count, file.get()) : 0;
    }

    std::size_t Write(const void*, std::size_t, std::size_t) override { return 0; }

    aiReturn Seek(std::size_t offset, aiOrigin origin) override
    {
        const int from = origin == aiOrigin_SET ? SEEK_SET : origin == aiOrigin_CUR ? SEEK_CUR : SEEK_END;
        return std::fseek(file.get(), long(offset), from) == 0 ? aiReturn_SUCCESS : aiReturn_FAILURE;
    }

    std::size_t Tell() const override { return std::size_t(std::ftell(file.get())); }
    std::size_t FileSize() const override { return std::size_t(size); }
    void Flush() override {}

private:
    tbModelFiles& files;
    const std::string path;
    const std::unique_ptr<std::FILE, CloseFile> file;
    long size = 0;
};

/// Formats whose readers open a file again while they read it. They name no other models, so nothing recurs.
constexpr const char* READ_AGAIN[] = {"3d", "uc", "x3d"};
} // namespace

tbiAssimpFiles::tbiAssimpFiles(const char* modelPath) : files(modelPath)
{
    files.enableReopening(tbiHasExtension(READ_AGAIN, tbiExtensionOf(modelPath)));
}

Assimp::IOStream* tbiAssimpFiles::Open(const char* name, const char* mode)
{
    if (!mode || *mode != 'r' || std::strchr(mode, '+'))
        return nullptr;
    const char* found = files.open(name);
    if (!found)
        return nullptr;
    auto stream = std::make_unique<ModelStream>(files, found);
    return stream->isOpen() ? stream.release() : nullptr;
}

void tbiAssimpFiles::Close(Assimp::IOStream* stream)
{
    delete stream;
}

bool tbiAssimpFiles::ComparePaths(const char* one, const char* second) const
{
    return std::strcmp(one, second) == 0;
}
