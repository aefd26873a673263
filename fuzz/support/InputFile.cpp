#include <fuzz/support/InputFile.h>

#include <fuzz/support/Check.h>

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace tbfuzz
{
InputFile::InputFile(const char* name)
{
    const char* folder = std::getenv("TAMBER_FUZZ_FOLDER");
    const std::filesystem::path base = folder ? folder : std::filesystem::current_path();
    place = (base / (std::to_string(getpid()) + "-" + name)).string();
}

InputFile::~InputFile()
{
    unlink(place.c_str());
}

void InputFile::set(std::span<const std::uint8_t> bytes) const
{
    const int descriptor = open(place.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    check(descriptor >= 0, "the input's file can be written");
    check(write(descriptor, bytes.data(), bytes.size()) == ssize_t(bytes.size()),
          "the input's file is whole");
    close(descriptor);
}

std::vector<std::uint8_t> InputFile::get() const
{
    const int descriptor = open(place.c_str(), O_RDONLY | O_CLOEXEC);
    check(descriptor >= 0, "the file is there");
    std::vector<std::uint8_t> bytes(std::filesystem::file_size(place));
    check(read(descriptor, bytes.data(), bytes.size()) == ssize_t(bytes.size()), "the file can be read");
    close(descriptor);
    return bytes;
}
} // namespace tbfuzz
