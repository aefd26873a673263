#pragma once

#include <string>
#include <vector>

struct tbiExportScene;

// A file that is to be written, its name without directory.
struct tbiOutputFile
{
    std::string name;
    std::string bytes;
};

/// The scene in the format that the library calls `format`: the files beside the model first, the model, called `name`, last. Throws
/// tbiModelError.
std::vector<tbiOutputFile> tbiWriteByLibrary(const tbiExportScene& scene, const char* format,
                                             const std::string& name);
