#include "Kernel.h"

#include <tamber/io/tbPlugIn.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbMessage.h>

#include <cstdlib>
#include <iostream>

namespace
{
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
}

Kernel::~Kernel()
{
    tbShutdown();
}
