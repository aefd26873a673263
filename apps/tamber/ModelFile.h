#pragma once

#include <tamber/kernel/tbRef.h>

#include <string>

class tbGroup;

/// Whether loadModel() reads foreign formats in this process too, as it does not at first.
void setImportInProcess(bool inProcess);

/// Reads a model of any known format, a foreign one in a process of its own. Throws CommandError when there is none that can be read.
tbRef<tbGroup> loadModel(const std::string& path);

/// Throws CommandError when `path` cannot take a native file: its extension belongs to another format, or its
/// directory is not there.
void checkSaveTarget(const std::string& path);

/// Writes the model natively beside `path` and puts it there when it is complete. Throws CommandError.
void saveModel(const tbGroup& model, const std::string& path);
