#pragma once

struct KernelOptions
{
    bool trustFiles = false; // files may load the plug-ins that they name
    bool verbose = false;    // show the library's messages
};

// Runs the kernel for as long as it lives. Plug-ins come from TAMBER_PLUGIN_PATH and from the directories of the
// program and the library only, unless the environment's TAMBER_PLUGINS says otherwise.
class Kernel
{
public:
    explicit Kernel(const KernelOptions& options);
    ~Kernel();
    Kernel(const Kernel&) = delete;
    Kernel& operator=(const Kernel&) = delete;

    /// Loads the module with the classes that models are made of. Throws CommandError when it cannot be loaded.
    void loadModelClasses();
};
