#pragma once

#include <tamber/platform/tbiFile.h>

#include <array>

// The file of a module, held from the look at its content to the end of its loading. On Windows nobody can write,
// rename or remove the file meanwhile. Elsewhere isUnchanged() tells afterwards.
class tbiModuleFile
{
public:
    explicit tbiModuleFile(const std::string& file);
    ~tbiModuleFile() { tbiCloseFile(descriptor); }
    tbiModuleFile(const tbiModuleFile&) = delete;
    tbiModuleFile& operator=(const tbiModuleFile&) = delete;

    /// For tbiFileLength() and tbiReadFile(); -1 when there is no regular file that can be read.
    int getDescriptor() const { return descriptor; }
    /// False when another file has come to the path, or the file was written to, since it was opened.
    bool isUnchanged() const;

private:
    std::string path;
    int descriptor;
    std::array<std::int64_t, 7> mark{}; // of the file and its last change, where it can be changed
};
