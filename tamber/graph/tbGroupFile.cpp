// How a node is written to a file and read back.
#include "tbGroup.h"

#include <tamber/io/tbEntry.h>

#include "tbiAttach.h"
#include "tbiNodeLinks.h"
#include "tbiPointerSet.h"

#include <algorithm>

namespace
{

// Tells which nodes a list that is being read holds already: many children with many parents each would be searched for
// ever. Where one of the two lists is short, searching is left to the attach.
class ChildrenMet
{
public:
    /// A list of `length` references.
    ChildrenMet(const tbGroup* reader, int length) : parent(reader), atFirst(std::min(length, MOST_AT_FIRST))
    {
    }

    /// False for a child that is there already.
    bool admit(const tbGroup* child)
    {
        known = remembers || child->getNumParents() == 0;
        if (!known && isLong(parent->getNumChildren()) && isLong(child->getNumParents()))
            known = remember();
        return !remembers || met.addUnique(child);
    }
    /// Whether the child that was admitted last is certain to be new.
    bool isKnown() const { return known; }

private:
    static constexpr int MOST_AT_FIRST = 1000; // lists nest: none may take much on trust

    static bool isLong(int number) { return number > 16; }

    bool remember()
    {
        met.reserve(std::max(atFirst, parent->getNumChildren()));
        for (const tbGroup* child : parent->getChildren())
            met.addUnique(child);
        remembers = met.getNum() == parent->getNumChildren();
        return remembers;
    }

    const tbGroup* parent;
    int atFirst;
    tbiPointerSet met;
    bool remembers = false;
    bool known = false;
};

} // namespace

// Null when the caller gave the entry, as for every node: who made the entry gets it back.
tbEntry* tbGroup::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* target = tbBase::write(file, entry);
    if (!target)
        return nullptr;
    target->writeShort(short(travFlags));
    target->writeShort(short(nodeFlags));
    target->writeInt(getNumChildren());
    for (const tbGroup* child : getChildren())
        child->writeRef(file, target);
    return entry ? nullptr : target;
}

tbEntry* tbGroup::read(tbFile* file, tbEntry* entry)
{
    entry = tbBase::read(file, entry);
    if (!entry)
        return nullptr;
    removeChildren();
    travFlags = std::uint16_t(entry->readShort());
    nodeFlags = std::uint16_t(entry->readShort());
    const int n = entry->readCount(sizeof(std::int32_t));
    ChildrenMet met(this, n);
    tbiAttach edge(this);
    for (int i = 0; i < n; ++i)
    {
        tbBase* object = readRef(file, entry);
        if (!object)
            continue;
        if (!object->isOfType(getClassType()))
        {
            entry->passOver("a child that is no node");
            continue;
        }
        tbGroup* child = static_cast<tbGroup*>(object);
        tbiNodeLinks::prefetchAppend(child);
        if (!met.admit(child))
            continue;
        // What comes out of a file has told all below itself.
        edge.set(child, met.isKnown(), child->getNumChildren() == 0 || child->anyTravFlags(TF_UPDATE));
        addChild(child);
    }
    return entry->hasFailed() ? nullptr : entry;
}
