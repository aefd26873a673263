#include <tamber/io/tbiFileTypes.h>

#include <tamber/containers/tbList.h>
#include <tamber/containers/tbiStatic.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbString.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/thread/tbiLockGuard.h>

namespace
{

struct FileType : tbAllocated<FileType>
{
    FileType(const tbType* itsType, const char* text) : type(itsType), extension(tbiCopyText(text)) {}
    FileType(const FileType&) = delete;
    FileType& operator=(const FileType&) = delete;
    ~FileType() { tbMemory::free(extension); }

    const tbType* type;
    char* extension;
};

constinit tbiStatic<tbTList<FileType*>> fileTypes;

} // namespace

bool tbiFileTypes::add(const tbType* type, const char* extension)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    if (!type || !extension)
        return false;
    for (const FileType* known : *fileTypes)
        if (known->type == type || tbStrcmp(known->extension, extension, true) == 0)
            return false;
    auto* fileType = new FileType(type, extension);
    if (fileType && fileType->extension && fileTypes->add(fileType) >= 0)
        return true;
    delete fileType;
    return false;
}

int tbiFileTypes::getNum()
{
    return fileTypes->getNum();
}

const char* tbiFileTypes::get(int i)
{
    return fileTypes->indexInRange(i) ? (*fileTypes)[i]->extension : nullptr;
}

const char* tbiFileTypes::extensionFor(const tbBase& object)
{
    for (const FileType* fileType : *fileTypes)
        if (object.isOfType(fileType->type))
            return fileType->extension;
    return nullptr;
}

void tbiFileTypes::forget(const tbType* type)
{
    for (int i = fileTypes->getNum() - 1; i >= 0; --i)
    {
        FileType* fileType = (*fileTypes)[i];
        if (fileType->type != type)
            continue;
        fileTypes->removeOrderedIndex(i);
        delete fileType;
    }
}

void tbiFileTypes::release()
{
    for (FileType* fileType : *fileTypes)
        delete fileType;
    fileTypes->setSize(0);
}
