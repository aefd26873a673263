#include <tests/process/module/Module.h>

#include <dlfcn.h>

const char* const Module::INIT = "_Z6tbInitPv";

void* Module::open(const char* path)
{
    return dlopen(path, RTLD_NOW | RTLD_LOCAL);
}

void Module::close(void* module)
{
    dlclose(module);
}

bool Module::isLoaded(const char* path)
{
    void* module = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
    if (module)
        dlclose(module);
    return module != nullptr;
}

void* Module::find(void* module, const char* name)
{
    return dlsym(module, name);
}
