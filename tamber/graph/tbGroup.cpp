#include "tbGroup.h"

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbString.h>
#include <tamber/kernel/tbiWhole.h>

#include "tbiDirectCalls.h"
#include "tbiLocalStack.h"
#include "tbiNodeLinks.h"
#include "tbiPointerSet.h"
#include "tbiPropagation.h"

#include <new>

TB_DEFINE_CLASS(tbGroup, tbBase)

static_assert(sizeof(void*) != 8 || sizeof(tbGroup) <= 88, "nodes are many: keep them small");

namespace
{

// Visits a subtree in pre-order, each node once, from a list, so that depth costs no stack.
class PreOrder
{
public:
    explicit PreOrder(const tbGroup* root) { waiting.push(root); }

    const tbGroup* next()
    {
        while (!waiting.isEmpty())
        {
            const tbGroup* node = waiting.pop();
            if (node->getNumParents() > 1 && !seen.addUnique(node))
                continue;
            const auto children = node->getChildren();
            for (std::size_t i = children.size(); i > 0; --i)
                waiting.push(children[i - 1]);
            return node;
        }
        return nullptr;
    }
    /// Nodes that were visited are visited again where other paths lead to them.
    void forgetVisits() { seen.reset(); }

private:
    tbiLocalStack<const tbGroup*> waiting;
    tbiPointerSet seen;
};

} // namespace

tbGroup::tbGroup()
{
    initInstance();
}

tbGroup::tbGroup(const tbGroup& other)
    : tbBase(other),
      travFlags(std::uint16_t(other.travFlags & FLAGS_OF_COPY)),
      nodeFlags(other.nodeFlags)
{
    initInstance();
}

tbGroup::tbGroup(const tbGroup& other, Disposable disposable)
    : tbBase(other, disposable),
      travFlags(other.travFlags),
      nodeFlags(other.nodeFlags)
{
}

// Children that die with this group are told by their own destructors; those that live on get their flags here.
tbGroup::~tbGroup()
{
    deleteInstance();
    visitStamp = DYING;
    if (directCalls > 0)
        tbiDirectCalls::forget(this);
    while (children.getNum() > 0)
        letGoLast();
    while (parents.getNum() > 0)
    {
        tbGroup* parent = parents[parents.getNum() - 1];
        tbiNodeLinks::Edge edge;
        tbiNodeLinks::find(parent, this, edge);
        tbiNodeLinks::remove(parent, this, edge);
    }
}

tbGroup& tbGroup::operator=(const tbGroup& other)
{
    if (this != &other)
        assign(other);
    return *this;
}

void tbGroup::assign(const tbGroup& other)
{
    tbBase::operator=(other);
    travFlags = std::uint16_t((travFlags & TF_CONTENT) | (other.travFlags & ~TF_CONTENT) | TF_UPDATE);
    nodeFlags = other.nodeFlags;
    dirtyUp(travFlags);
}

int tbGroup::getChildIndex(const tbGroup* child) const
{
    return child ? tbiNodeLinks::indexOf(this, child) : -1;
}

bool tbGroup::hasChild(const tbGroup* child) const
{
    return child && tbiNodeLinks::contains(this, child);
}

bool tbGroup::hasParent(const tbGroup* parent) const
{
    return parent && tbiNodeLinks::contains(parent, this);
}

// Searched from below: a node has few ancestors and may have many descendants.
bool tbGroup::hasDescendant(const tbGroup* node) const
{
    if (!node || children.getNum() == 0)
        return false;
    tbiLocalStack<const tbGroup*> waiting;
    tbiPointerSet seen;
    waiting.push(node);
    while (!waiting.isEmpty())
    {
        const auto above = waiting.pop()->getParents();
        for (const tbGroup* parent : above)
        {
            if (parent == this)
                return true;
            if (above.size() == 1 || seen.addUnique(parent))
                waiting.push(parent);
        }
    }
    return false;
}

bool tbGroup::hasDescendantOfType(const tbType* type) const
{
    PreOrder nodes(this);
    while (const tbGroup* node = nodes.next())
        if (node->isOfType(type))
            return true;
    return false;
}

tbGroup* tbGroup::findGroup(const char* wanted, const tbGroup* previous) const
{
    bool passed = false;
    return findGroupRec(wanted, previous, passed);
}

// Passes over the first match whenever there is a `previous`, whatever it is: callers step on once. A shared node is a
// match on each path to it, so the second one may be the first again; what holds no match is looked through once
// before the first one and once after it.
tbGroup* tbGroup::findGroupRec(const char* wanted, const tbGroup* previous, bool& passed) const
{
    PreOrder nodes(this);
    while (const tbGroup* node = nodes.next())
    {
        if (tbStrcmp(wanted, node->getName(), true) != 0)
            continue;
        if (!previous || passed)
            return const_cast<tbGroup*>(node);
        passed = true;
        nodes.forgetVisits();
    }
    return nullptr;
}

bool tbGroup::areChildrenOrdered() const
{
    return false;
}

void tbGroup::setNodeFlags(NODE_FLAGS splitting)
{
    nodeFlags = std::uint16_t(splitting);
}

tbBase* tbGroup::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbGroup::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbGroup(*this, Disposable{arena});
}

void tbGroup::addedTo(tbGroup*)
{
    const unsigned shared = getNumParents() > 1 ? TF_SHARED : 0u;
    dirtyUp((travFlags & TF_CONTENT) | TF_UPDATE | TF_ADDED | shared);
}

void tbGroup::removedFrom(tbGroup* parent)
{
    tbiPropagation::removed(this, parent);
}

void tbGroup::dirtyUp(unsigned bits)
{
    const bool isNews = (bits & ~unsigned(travFlags)) != 0;
    addTravFlags(bits);
    const unsigned carried = travFlags;
    for (tbGroup* parent : isNews ? getParents() : tbiPropagation::parentsToTell(this))
        if ((carried & ~parent->getTravFlags()) != 0)
            tbiPropagation::dirtyUp(parent, carried);
}

void tbGroup::cleanUp(unsigned bits)
{
    const unsigned clear = bits & ~tbiNodeLinks::flagsBelow(this, bits);
    if (clear == 0)
        return;
    removeTravFlags(clear);
    for (tbGroup* parent : getParents())
        tbiPropagation::cleanUp(parent, clear);
}

void tbGroup::dirtyDown(tbGroup* node, unsigned mask, unsigned bits)
{
    if (node->getNumChildren() == 0)
        return;
    tbiLocalStack<tbGroup*> waiting;
    std::uint32_t stamp = 0;
    waiting.push(node);
    while (!waiting.isEmpty())
    {
        for (tbGroup* child : waiting.pop()->getChildren())
        {
            if (child->anyTravFlags(mask) == 0)
                continue;
            child->addTravFlags(bits);
            if (child->getNumChildren() > 0 && tbiPropagation::firstVisit(child, stamp))
                waiting.push(child);
        }
    }
}
