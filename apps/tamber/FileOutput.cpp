#include "FileOutput.h"

#include "CommandError.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

namespace
{
namespace fs = std::filesystem;

// Gone with all that is in it, unless it was renamed.
class NewFile
{
public:
    explicit NewFile(const fs::path& target)
    {
        std::random_device random;
        do
        {
            path = target;
            path += "." + std::to_string(random()) + ".tmp";
        } while (fs::exists(fs::symlink_status(path)));
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile()
    {
        std::error_code ignored;
        fs::remove(path, ignored);
    }

    bool write(std::string_view bytes) const
    {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(bytes.data(), std::streamsize(bytes.size()));
        out.close();
        return out.good();
    }

    fs::path path;
};
} // namespace

void replaceFile(const std::string& path, std::string_view bytes)
{
    std::error_code error;
    // A link stays one: what it leads to is replaced.
    fs::path target = fs::canonical(path, error);
    if (error)
        target = path;
    const fs::file_status old = fs::status(target, error);
    if (fs::exists(old) && !fs::is_regular_file(old))
        throw CommandError(path, "is not a file");
    const NewFile made(target);
    if (!made.write(bytes))
        throw CommandError(path, "cannot be written");
    if (fs::exists(old))
        fs::permissions(made.path, old.permissions(), error);
    fs::rename(made.path, target, error);
    if (error)
        throw CommandError(path, "cannot be replaced: " + error.message());
}
