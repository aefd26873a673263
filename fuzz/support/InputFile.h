// An input as a file that the kernel opens by its path.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tbfuzz
{
/// A file of this process in the folder that the environment variable TAMBER_FUZZ_FOLDER names, else in the present
/// one. Written anew for every input, removed at the end.
class InputFile
{
public:
    /// `name` ends in the extension that the file shall have.
    explicit InputFile(const char* name);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    void set(std::span<const std::uint8_t> bytes) const;
    std::vector<std::uint8_t> get() const;
    const char* path() const { return place.c_str(); }

private:
    std::string place;
};
} // namespace tbfuzz
