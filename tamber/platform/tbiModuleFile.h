#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The file of a module, held from the look at its content to the end of its loading. On Windows nobody can write,
// rename or remove the file meanwhile. Elsewhere isUnchanged() tells afterwards.
class tbiModuleFile
{
public:
    explicit tbiModuleFile(const std::string& path);
    ~tbiModuleFile();
    tbiModuleFile(const tbiModuleFile&) = delete;
    tbiModuleFile& operator=(const tbiModuleFile&) = delete;

    /// False when there is no regular file that can be read.
    bool isOpen() const;
    /// The next bytes, at most `size`: how many there were, 0 at the end, below 0 on failure.
    std::int64_t read(void* bytes, std::size_t size);
    /// False when another file has come to the path, or the file was written to, since it was opened.
    bool isUnchanged() const;

private:
    struct State;

    std::string path;
    State* state = nullptr;
};
