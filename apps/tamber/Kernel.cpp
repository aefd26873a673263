#include "Kernel.h"

#include "CommandError.h"

#include <tamber/io/tbPlugIn.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbMessage.h>

#include <cstdlib>
#include <iostream>

namespace
{
/// The classes that models are made of. Native files are not asked which modules they need.
constexpr const char* PORTABLE_MODULE = "tbPortableKernel.dll";

/// Messages must not come between the lines of a table, so they never go to stdout.
void showMessage(const char* text)
{
    std::cerr << text << std::flush;
}

void dropMessage(const char*) {}
} // namespace

Kernel::Kernel(const KernelOptions& options)
{
    tbSetMessageFunc(options.verbose ? showMessage : dropMessage);
    if (!std::getenv("TAMBER_PLUGINS"))
        tbPlugIn::setSearchPolicy(tbPlugIn::SEARCH_APP);
    tbPlugIn::enableDynamicPlugIns(options.trustFiles);
    tbInit(nullptr);
    if (tbPlugIn::load(PORTABLE_MODULE))
        return;
    tbShutdown();
    throw CommandError(PORTABLE_MODULE,
                       "the module was not found beside the program or in TAMBER_PLUGIN_PATH");
}

Kernel::~Kernel()
{
    tbShutdown();
}
