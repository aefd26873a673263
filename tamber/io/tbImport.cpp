#include <tamber/io/tbImport.h>

#include <tamber/io/tbiLoaderLookup.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbType.h>

tbBase* tbImportOfType(const char* fileName, const tbType* type)
{
    return tbiImportWhole(
        [=]() -> tbBase*
        {
            tbBase* root = tbLoader::importFile(fileName);
            if (!root || root->isOfType(type))
                return root;
            root->unRef();
            tbiSetLoaderFailure(tbLoader::LOADER_UNKNOWN_FORMAT,
                                std::string("\"") + (fileName ? fileName : "") + "\" does not hold a " +
                                    (type ? type->getName() : "(none)"));
            return nullptr;
        });
}
