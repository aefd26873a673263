// How an object stands in a file: name, flags, attributes.
#include <tamber/kernel/tbBase.h>

#include <tamber/io/tbFile.h>

tbEntry* tbBase::read(tbFile* file, tbEntry* entry)
{
    if (!entry)
        entry = file->findEntry(getType()->getName());
    if (!entry || !file->beginObject(entry))
        return nullptr;

    const int nameSize = entry->readCount(1);
    if (nameSize > 0)
    {
        char* text = static_cast<char*>(tbMemory::realloc(name, std::size_t(nameSize)));
        if (!text)
        {
            entry->fail("memory is out");
            return nullptr;
        }
        name = text;
        entry->readString(name, nameSize);
    }
    else if (name)
    {
        name[0] = 0;
    }
    flags = std::uint16_t(entry->readShort());

    const int numAttributes = entry->readCount(4);
    for (int i = 0; i < numAttributes; ++i)
        addAttribute(readRef(file, entry));
    return entry->hasFailed() ? nullptr : entry;
}

tbEntry* tbBase::write(tbFile* file, tbEntry* entry) const
{
    if (!entry)
    {
        entry = file->newEntry(file->newTag(getType()->getName()));
        if (!entry)
            return nullptr;
        entry->bind(this, tbEntry::KIND_OBJECT);
        entry->setVersion(getType()->getVersion());
    }
    if (name)
    {
        entry->writeInt(int(std::strlen(name)) + 1);
        entry->writeString(name);
    }
    else
    {
        entry->writeInt(0);
    }
    entry->writeShort(short(flags));

    int numWritable = 0;
    if (attributes)
        for (const tbBase* attribute : *attributes)
            numWritable += attribute->getType()->isWritable() ? 1 : 0;
    entry->writeInt(numWritable);
    // Only as many places are visited as attributes were counted, so one that is not writable near the start leaves a
    // later one unwritten. That is meant: files must read back as they were written before.
    for (int i = 0; i < numWritable; ++i)
        if ((*attributes)[i]->getType()->isWritable())
            (*attributes)[i]->writeRef(file, entry);
    return entry;
}

tbEntry* tbBase::writeRef(tbFile* file, tbEntry* entry) const
{
    tbEntry* own = getType()->isWritable() ? file->writeObject(this) : nullptr;
    entry->writeInt(own ? own->getDirNum() : -1);
    return own;
}

tbBase* tbBase::readRef(tbFile* file, tbEntry* entry)
{
    return file->readObjectRef(entry);
}
