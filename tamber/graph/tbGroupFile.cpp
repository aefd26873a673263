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
// list makes edges, a node that it holds has its parent for the last one. Nodes that read lists of their own in
// between end that for the children before them, which are remembered then. Where a class edits the graph meanwhile
// in other ways than by appending, the children that follow are searched for.
class ChildrenRead
{
public:
    ChildrenRead(tbGroup* reader, tbFile* from, tbEntry* record)
        : parent(reader),
          file(from),
          entry(record),
          edge(reader)
    {
        parent->ref(); // moves in the lists of nodes that nobody holds go uncounted
    }
    ~ChildrenRead() { parent->unRefNoDelete(); }
    ChildrenRead(const ChildrenRead&) = delete;
    ChildrenRead& operator=(const ChildrenRead&) = delete;

    /// Reads so many references. Each child is attached before the next one is read. Those for which nothing has to be
    /// read come a number at a time, so that what the attaching touches is in the cache; where there are none such they
    /// are asked for less and less often.
    void read(int count)
    {
        int rarity = 0;
        int alone = 0;
        for (int left = count; left > 0;)
        {
            makeRoom(left);
            if (alone > 0)
            {
                readOne();
                --alone;
                --left;
                continue;
            }
            const int number = readSeveral(left);
            left -= number;
            rarity = number > 0 ? 0 : std::min(rarity + 1, MOST_RARITY);
            alone = (1 << rarity) - 1;
        }
    }

private:
    static constexpr int MOST_AT_ONCE = 16;
    static constexpr int MOST_RARITY = 4;
    static constexpr int FIRST_ROOM = 16;

    /// Attaches the next children for which nothing has to be read, and returns how many.
    int readSeveral(int left)
    {
        tbBase* objects[MOST_AT_ONCE];
        const int number = file->readKnownRefs(entry, groupType, objects, std::min(MOST_AT_ONCE, left));
        for (int i = 0; i < number; ++i)
        {
            tbiNodeLinks::prefetchAppend(static_cast<tbGroup*>(objects[i]));
            objects[i]->ref(); // all at once: each waits for the stores of the edge before it
        }
        for (int i = 0; i < number; ++i)
            attach(static_cast<tbGroup*>(objects[i]), true);
        return number;
    }
    void readOne()
    {
        tbBase* object = file->readObjectRef(entry);
        if (object && object->isOfType(groupType))
            attach(static_cast<tbGroup*>(object), false);
        else if (object)
            entry->passOver("a child that is no node");
    }
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
        const bool isSure = isFirst || (tbiNodeLinks::getNumMoves() == numMoves && remember());
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
    /// Sees whether somebody else has made edges since the last child.
    void look()
    {
        const unsigned made = tbiNodeLinks::getNumMade();
        const int number = parent->getNumChildren();
        if (made - numMade != unsigned(number - numChildren))
            numUnsure = number;
        numMade = made;
        numChildren = number;
    }
    /// Remembers the children that may have come under other parents since. False when memory is out.
    bool remember()
    {
        if (met.getNum() < numUnsure)
            met.reserve(numUnsure);
        while (met.getNum() < numUnsure && met.addUnique(parent->getChild(met.getNum())))
        {
        }
        return met.getNum() == numUnsure;
    }

    tbGroup* parent;
    tbFile* file;
    tbEntry* entry;
    const tbType* groupType = tbGroup::getClassType();
    tbiAttach edge;
    int room = 0; // children that fit
    unsigned numMade = tbiNodeLinks::getNumMade();
    const unsigned numMoves = tbiNodeLinks::getNumMoves();
    int numChildren = 0;
    int numUnsure = 0; // children from the first on
    tbiPointerSet met;
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
        ChildrenRead(this, file, entry).read(n);
    return entry->hasFailed() ? nullptr : entry;
}
