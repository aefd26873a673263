#include "Kernel.h"

#include "RequiredModule.h"

#include <tamber/io/tbModelFiles.h>
#include <tamber/io/tbPlugIn.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbMessage.h>

#include <cstdlib>
#include <cstring>
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

/// What a model was refused is told in any case: the user may wonder where a part of it is.
void showRefusal(const char* text)
{
    if (std::strstr(text, tbModelFiles::REFUSAL))
        showMessage(text);
}
} // namespace

Kernel::Kernel(const KernelOptions& options)
{
    tbSetMessageFunc(options.verbose ? showMessage : showRefusal);
    const char* policy = std::getenv("TAMBER_PLUGINS");
    if (!policy || !*policy)
        tbPlugIn::setSearchPolicy(tbPlugIn::SEARCH_APP);
    tbPlugIn::enableDynamicPlugIns(options.trustFiles);
    tbInit(nullptr);
}

Kernel::~Kernel()
{
    tbShutdown();
}

void Kernel::loadModelClasses()
{
    requireModule(PORTABLE_MODULE);
}
