#include <tests/process/module/Module.h>

#include <windows.h>

const char* const Module::INIT = "_Z6tbInitP11HINSTANCE__";

void* Module::open(const char* path)
{
    return LoadLibraryA(path);
}

void Module::close(void* module)
{
    FreeLibrary(static_cast<HMODULE>(module));
}

bool Module::isLoaded(const char* path)
{
    return GetModuleHandleA(path) != nullptr;
}

void* Module::find(void* module, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}
