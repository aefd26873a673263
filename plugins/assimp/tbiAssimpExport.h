#pragma once

#include <string>
#include <vector>

struct tbiExportFormat;
struct tbiExportScene;

// A file that is to be written, its name without directory.
struct tbiOutputFile
{
    std::string name;
    std::string bytes;
};

/// The scene in a format of the library: the files beside the model first, the model, called `name`, last. Throws
/// tbiModelError.
std::vector<tbiOutputFile> tbiWriteByLibrary(const tbiExportScene& scene, const tbiExportFormat& format,
                                             const std::string& name);
