// The system's dynamic loader, for programs that load the kernel themselves instead of being linked with it.
#pragma once

namespace Module
{
/// Loads a library; null when it cannot be loaded.
void* open(const char* path);
void close(void* module);
/// True while the library is in the process.
bool isLoaded(const char* path);
/// A function by its mangled name, null when there is none.
void* find(void* module, const char* name);

/// The mangled name of tbInit(), whose argument is a type of the system's.
extern const char* const INIT;
} // namespace Module
