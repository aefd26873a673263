#include "FileOutput.h"

#include "CommandError.h"

#include <tamber/io/tbNewFiles.h>

#include <filesystem>
#include <system_error>

void replaceFile(const std::string& path, std::string_view bytes)
{
    std::error_code ignored;
    const auto old = std::filesystem::status(path, ignored);
    if (std::filesystem::exists(old) && !std::filesystem::is_regular_file(old))
        throw CommandError(path, "is not a file");
    tbNewFiles file;
    if (!file.add(path.c_str(), bytes.data(), bytes.size()))
        throw CommandError(path, "cannot be written");
    if (!file.commit())
        throw CommandError(path, "cannot be replaced");
}
