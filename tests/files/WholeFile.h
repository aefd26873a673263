// A native file used as applications use it, whole.
#pragma once

#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbRef.h>

#include <string>
#include <vector>

namespace tbtest
{
/// What came of a file whose every entry, or the first ones, were asked for. Entries that stand for no object are
/// loaded, the first one is asked for as an object all the same.
struct WholeFile
{
    /// Makes the classes known that no file has loaded.
    static void prepare();
    explicit WholeFile(const std::string& path, int most = 1 << 30);

    /// Objects that were made, in the order of the entries; null for what could not be.
    std::vector<tbRef<tbBase>> objects;
    bool opened;
    tbFile::FILE_ERROR error;
    /// The last error in words, without the path before it.
    std::string text;
    int numEntries;
};

/// The same as another program would read it from a file that this one saved; null when it cannot be saved.
/// `folder` is where the file lies meanwhile.
tbRef<tbBase> saveAndRead(tbBase* object, const std::string& folder);

/// Bounds, update, walks of a camera and a collider through the graphs below the objects, as far as there are not more
/// paths in them than a test has time for.
void useGraphs(const std::vector<tbRef<tbBase>>& objects);

/// `line` without `path` and what parts it from the rest.
std::string withoutPath(const std::string& line, const std::string& path);

/// Everything that this process has made and not freed.
struct Alive
{
    Alive();
    bool operator==(const Alive&) const = default;

    std::size_t bytes;
    int objects;
};
} // namespace tbtest
