#include "tbiAssimpFiles.h"

#include <assimp/IOStream.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

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
    ModelStream(tbModelFiles& allFiles, std::string filePath, std::FILE* opened)
        : files(allFiles),
          path(std::move(filePath)),
          file(opened)
    {
        if (std::fseek(opened, 0, SEEK_END) == 0)
            size = std::ftell(opened);
        std::rewind(opened);
    }

    ~ModelStream() override { files.close(path.c_str()); }

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
constexpr std::array<std::string_view, 3> READ_AGAIN{".3d", ".uc", ".x3d"};
} // namespace

tbiAssimpFiles::tbiAssimpFiles(const char* modelPath) : files(modelPath)
{
    std::string folded(modelPath);
    std::transform(folded.begin(), folded.end(), folded.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    files.enableReopening(std::any_of(READ_AGAIN.begin(), READ_AGAIN.end(),
                                      [&](std::string_view extension)
                                      { return folded.ends_with(extension); }));
}

Assimp::IOStream* tbiAssimpFiles::Open(const char* name, const char* mode)
{
    if (!mode || *mode != 'r' || std::strchr(mode, '+'))
        return nullptr;
    const char* found = files.open(name);
    if (!found)
        return nullptr;
    const std::string path = found;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file)
        return new ModelStream(files, path, file);
    files.close(path.c_str());
    return nullptr;
}

void tbiAssimpFiles::Close(Assimp::IOStream* stream)
{
    delete stream;
}

bool tbiAssimpFiles::ComparePaths(const char* one, const char* second) const
{
    return std::strcmp(one, second) == 0;
}
