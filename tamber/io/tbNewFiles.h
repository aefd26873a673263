#pragma once

#include <tamber/kernel/tbTypes.h>

#include <cstddef>

// Files that belong together, such as those of a model in a foreign format. Each is written beside the file that it
// will replace; none is touched before all are written. What is not committed vanishes with this object. An old file
// keeps its rights; a new one has those of any file that the process makes. Needs no kernel that was started.
class TB_API tbNewFiles
{
public:
    tbNewFiles();
    tbNewFiles(const tbNewFiles&) = delete;
    tbNewFiles& operator=(const tbNewFiles&) = delete;
    ~tbNewFiles();

    /// False when the file cannot be written, or `path` is there and no regular file.
    bool add(const char* path, const void* bytes, std::size_t size);
    /// Makes the files safe on the medium and puts them in place, in the order in which they were added. False when
    /// one cannot be: then the ones after it are as they were.
    bool commit();

private:
    struct Files;
    Files* files;
};
