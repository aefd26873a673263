#pragma once

#include <tamber/io/tbModelFiles.h>

#include <assimp/IOSystem.hpp>

// The file system that a model sees while it is imported: files to read, as far as tbModelFiles allows them.
class tbiAssimpFiles final : public Assimp::IOSystem
{
public:
    explicit tbiAssimpFiles(const char* modelPath);

    /// As tbModelFiles::getRefusal().
    const char* getRefusal() const { return files.getRefusal(); }

    bool Exists(const char* name) const override { return files.exists(name); }
    char getOsSeparator() const override { return '/'; }
    Assimp::IOStream* Open(const char* name, const char* mode) override;
    void Close(Assimp::IOStream* stream) override;
    bool ComparePaths(const char* one, const char* second) const override;
    bool CreateDirectory(const std::string&) override { return false; }
    bool ChangeDirectory(const std::string&) override { return false; }
    bool DeleteFile(const std::string&) override { return false; }

private:
    mutable tbModelFiles files;
};
