// How a node is written to a file and read back.
#include "tbGroup.h"

#include <tamber/io/tbEntry.h>
#include <tamber/io/tbFile.h>

#include "tbiAttach.h"
#include "tbiNodeLinks.h"
#include "tbiPointerSet.h"

#include <algorithm>

namespace
{

// The children that a node reads, on their way from the file into its list.
//
// Which of them the list holds already is known without a search, which could take for ever: while nothing but this
// list makes edges, a node that it holds has its parent for the last one. Nodes that read lists of their own in between
// end that for the children before them, which are remembered then. Only where somebody takes children out of the list
// are they searched for.
class ChildrenRead
{
public:
    explicit ChildrenRead(tbGroup* reader) : parent(reader), edge(reader) {}

    /// Makes room for more children, of which `left` come at most: as many as the file has paid for.
    void makeRoom(int left)
    {
        const int number = parent->getNumChildren();
        if (number < room)
            return;
        const int more = std::min(left, std::max(FIRST_ROOM, 2 * number));
        room = tbiNodeLinks::reserveChildren(parent, more) ? number + more : number;
    }
    /// Attaches a child. One that is held comes with the reference for it.
    void attach(tbGroup* child, bool isHeld)
    {
        look();
        const bool isFirst = child->getNumParents() == 0;
        const bool isSure = isFirst || remember();
        const bool isThere =
            !isFirst && (tbiNodeLinks::isLastParent(parent, child) || (isSure && met.contains(child)));
        // What comes out of a file has told all below itself.
        const bool isFresh = child->getNumChildren() == 0 || child->anyTravFlags(tbGroup::TF_UPDATE);
        edge.expect(child, {.isNew = isSure, .isFresh = isFresh, .isHeld = isHeld});
        if (!isThere)
            parent->addChild(child);
        if (edge.forget() && isHeld)
            child->unRef();
    }

private:
    /// Sees whether somebody else has made edges since the last child. Where edges are cut alone, the other parents keep
    /// their order.
    void look()
    {
        const unsigned made = tbiNodeLinks::getNumMade();
        const int number = parent->getNumChildren();
        if (made - numMade != unsigned(number - numChildren))
            numUnsure = number;
        numMade = made;
        numChildren = number;
    }
    /// Remembers the children that may have come under other parents since. False when memory is out, and when those
    /// that were remembered are not there any more.
    bool remember()
    {
        int number = met.getNum();
        if (number > numUnsure || (number > 0 && parent->getChild(number - 1) != lastMet))
            return false;
        for (; number < numUnsure && met.addUnique(parent->getChild(number)); ++number)
            lastMet = parent->getChild(number);
        return number == numUnsure;
    }

    static constexpr int FIRST_ROOM = 16;

    tbGroup* parent;
    tbiAttach edge;
    int room = 0; // children that fit
    unsigned numMade = tbiNodeLinks::getNumMade();
    int numChildren = 0;
    int numUnsure = 0; // children from the first on
    tbiPointerSet met;
    const tbGroup* lastMet = nullptr;
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
    if (n > 0)
        readChildren(file, entry, n);
    return entry->hasFailed() ? nullptr : entry;
}

// Each child is attached before the next is read. Those for which nothing has to be read come a number at a time, so
// that what the attaching touches is in the cache.
void tbGroup::readChildren(tbFile* file, tbEntry* entry, int number)
{
    constexpr int MOST_AT_ONCE = 16;
    const tbType* type = getClassType();
    tbBase* objects[MOST_AT_ONCE];
    ChildrenRead list(this);
    for (int i = 0; i < number;)
    {
        const int known = file->readKnownRefs(entry, type, objects, std::min(MOST_AT_ONCE, number - i));
        list.makeRoom(number - i);
        for (int k = 0; k < known; ++k)
        {
            tbiNodeLinks::prefetchAppend(static_cast<tbGroup*>(objects[k]));
            objects[k]->ref(); // all at once: each waits for the stores of the edge before it
        }
        for (int k = 0; k < known; ++k)
            list.attach(static_cast<tbGroup*>(objects[k]), true);
        i += known;
        if (known > 0)
            continue;
        ++i;
        tbBase* object = readRef(file, entry);
        if (object && object->isOfType(type))
            list.attach(static_cast<tbGroup*>(object), false);
        else if (object)
            entry->passOver("a child that is no node");
    }
}
