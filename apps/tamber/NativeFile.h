#pragma once

#include "CommandError.h"

#include <apps/tamber/native/ImageSource.h>

/// True for a file that can be read and is no native one, neither by its extension nor by its first bytes: a loader's.
/// What cannot be read is not, so that this is said without the kernel.
bool isForeignFile(const std::string& path);

/// Runs `work` on a native file. What its bytes cannot be had for ends the command.
template <class Work>
auto withNativeFile(const std::string& path, Work work)
{
    try
    {
        return work();
    }
    catch (const native::SourceError& error)
    {
        throw CommandError(path, error.what());
    }
}
