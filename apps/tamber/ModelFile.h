#pragma once

#include <tamber/kernel/tbRef.h>

#include <string>

class tbGroup;

// How a native file is written.
struct NativeOptions
{
    bool compress = false; // pack runs of equal bytes
    bool swap = false;     // in the byte order that this machine does not have
    bool isDefault() const { return !compress && !swap; }
};

// How foreign formats are read.
struct ImportOptions
{
    bool inProcess = false; // in this process, without limits
    double memory = 1024;   // MiB that the process of their own may take, 0 for any
    double seconds = 30;    // on a processor, 0 for any
};
/// Those that loadModel() goes by.
ImportOptions& importOptions();

/// Reads a model of any known format, a foreign one in a process of its own. Throws CommandError when there is none
/// that can be read.
tbRef<tbGroup> loadModel(const std::string& path);

/// Throws CommandError when `path` cannot take a native file: its extension belongs to another format, or its
/// directory is not there.
void checkSaveTarget(const std::string& path);

/// Throws CommandError when `path` cannot take a model: nobody writes its format or not with these options, its
/// directory is not there, or what stands there is no file.
void checkConvertTarget(const std::string& path, const NativeOptions& options);

/// Writes the model in the format of the path's extension, or natively when that is nobody's, and puts it there when
/// it is complete. Throws CommandError.
void saveModel(const tbGroup& model, const std::string& path, const NativeOptions& options = {});
