#include <tests/support/FileNode.h>

#include <tamber/io/tbFile.h>

namespace tbtest
{
TB_DEFINE_CLASS(FileNode, tbBase)

FileNode::FileNode()
{
    initInstance();
}

void FileNode::makeKnown()
{
    getClassType();
}

tbEntry* FileNode::read(tbFile* file, tbEntry* entry)
{
    entry = tbBase::read(file, entry);
    if (!entry)
        return nullptr;
    value = entry->readInt();
    ratio = entry->readDouble();
    array = tbArray::readRef(file, entry);
    const int numChildren = entry->readCount(4);
    for (int i = 0; i < numChildren; ++i)
        if (tbBase* child = tbBase::readRef(file, entry))
            add(child);
    return entry->hasFailed() ? nullptr : entry;
}

tbEntry* FileNode::write(tbFile* file, tbEntry* entry) const
{
    entry = tbBase::write(file, entry);
    if (!entry)
        return nullptr;
    entry->writeInt(value);
    entry->writeDouble(ratio);
    if (array)
        array->writeRef(file, entry);
    else
        entry->writeInt(-1);
    entry->writeInt(int(children.size()));
    for (const tbRef<tbBase>& child : children)
        child->writeRef(file, entry);
    return entry;
}
} // namespace tbtest
