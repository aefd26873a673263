// Deep copies of tbGroup and the splitting of shared instances.
#include "tbGroup.h"

#include <tamber/action/tbActionNode.h>
#include <tamber/containers/tbiStatic.h>
#include <tamber/graph/tbiCopyLists.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/thread/tbiLockGuard.h>

#include "tbiAttach.h"
#include "tbiLocalStack.h"
#include "tbiNodeLinks.h"
#include "tbiPropagation.h"

namespace
{

// Nodes of the running deep copy and their copies, two parallel lists under the group lock.
constinit tbiStatic<tbTList<const tbGroup*>> prevGroups;
constinit tbiStatic<tbTList<tbGroup*>> newGroups;

} // namespace

void tbiReleaseCopyLists()
{
    prevGroups->setSize(0);
    newGroups->setSize(0);
}

void tbGroup::addGroupMapping(const tbGroup* previous, tbGroup* node)
{
    if (prevGroups->add(previous) >= 0 && newGroups->add(node) < 0)
        prevGroups->removeLast();
}

void tbGroup::resolveGroup(tbGroup* node)
{
    if (newGroups->getNum() == 0 || !node->isOfType(tbActionNode::getClassType()))
        return;
    auto* action = static_cast<tbActionNode*>(node);
    for (int i = newGroups->getNum() - 1; i >= 0; --i)
        action->resolveGroup((*prevGroups)[i], (*newGroups)[i]);
}

void tbGroup::resolveGroupMapping(tbGroup* node)
{
    tbiLocalStack<tbGroup*> waiting;
    waiting.push(node);
    while (!waiting.isEmpty())
    {
        tbGroup* next = waiting.pop();
        resolveGroup(next);
        for (tbGroup* child : next->getChildren())
            waiting.push(child);
    }
}

void tbGroup::emptyGroupMapping()
{
    prevGroups->reset();
    newGroups->reset();
}

tbGroup* tbGroup::copyGroup() const
{
    return makeLike(this, &tbGroup::copy);
}

tbGroup* tbGroup::cloneGroup() const
{
    return makeLike(this, &tbGroup::clone);
}

// Each copy comes with its own subtree, told and unchanged since: only the edge to it is new.
void tbGroup::addCopiesOf(const tbGroup& other, CopyKind kind)
{
    tbiAttach edge(this);
    for (int i = 0; i < other.getNumChildren(); ++i)
    {
        const tbRef<tbGroup> node(other.getChild(i)->copyOfKind(kind));
        edge.expect(node.get(), {.isFresh = node && node->getNumParents() == 0});
        addChild(node.get());
        edge.forget();
    }
}

void tbGroup::copy(const tbGroup& other)
{
    if (this == &other)
        return;
    removeChildren();
    assign(other);
    addCopiesOf(other, CopyKind::COPY);
}

void tbGroup::clone(const tbGroup& other)
{
    if (this == &other)
        return;
    assign(other);
    removeChildren();
    addCopiesOf(other, CopyKind::CLONE);
}

tbGroup* tbGroup::makeDeep(CopyKind kind) const
{
    tbiLockGuard guard(tbiLocks::group);
    const tbiMemoryWatch memory;
    tbGroup* node = copyOfKind(kind);
    if (node)
        resolveGroupMapping(node);
    emptyGroupMapping();
    return tbiWhole(node, memory);
}

tbGroup* tbGroup::makeCopy() const
{
    return makeDeep(CopyKind::COPY);
}

tbGroup* tbGroup::makeClone() const
{
    return makeDeep(CopyKind::CLONE);
}

// The first parent keeps this node. No node is told: flags and contents above stay what they were.
void tbGroup::splitFromParents()
{
    const CopyKind kind = getNodeFlags() == NODE_CLONE ? CopyKind::CLONE : CopyKind::COPY;
    for (int i = getNumParents() - 1; i > 0; --i)
    {
        tbGroup* node = makeDeep(kind);
        if (!node)
            return;
        node->ref();
        if (!tbiNodeLinks::replace(getParent(i), this, node, true))
            node->unRef();
        unRef();
    }
}

void tbGroup::updateSharedInstances()
{
    if (getNumParents() > 1 && getNodeFlags() != NODE_SHARE)
    {
        const tbiKeep keepThis(this);
        splitFromParents();
    }
    for (int i = 0; i < getNumChildren(); ++i)
    {
        tbGroup* child = getChild(i);
        if (!child->anyTravFlags(TF_SHARED))
            continue;
        const tbiKeep keepChild(child);
        child->updateSharedInstances();
    }
    removeTravFlags(TF_SHARED);
}
