// The structural operations of tbGroup. Each keeps the nodes that it still needs alive until it ends; a node that
// nobody holds is the caller's and stays as it is. Each takes the memory that its edges need before it changes
// anything, and does nothing when there is none.
#include "tbGroup.h"

#include "tbiAttach.h"
#include "tbiNodeLinks.h"
#include "tbiPropagation.h"

namespace
{

// Room for each of the children under one more parent.
bool reserveParents(std::span<tbGroup* const> children, int more)
{
    for (tbGroup* child : children)
        if (!tbiNodeLinks::reserveParents(child, more))
            return false;
    return true;
}

bool reserveChildren(std::span<tbGroup* const> parents, int more)
{
    for (tbGroup* parent : parents)
        if (!tbiNodeLinks::reserveChildren(parent, more))
            return false;
    return true;
}

} // namespace

// Makes the edge to a child by `link`, which returns false when it cannot, and tells the subtree.
template <class Link>
bool tbGroup::attach(tbGroup* child, Link link)
{
    const tbiAttach::Known known = tbiAttach::take(this, child);
    tbiNodeLinks::Edge edge;
    const bool can =
        child && child != this && !isDying() && (known.isNew || !tbiNodeLinks::find(this, child, edge));
    if (can && !known.isHeld)
        child->ref(); // before the edge: it waits for all stores before it, and those of an edge go far
    const bool made = can && link();
    if (made)
        tbiPropagation::added(child, this, known.isFresh);
    else if (can || known.isHeld)
        child->unRefNoDelete();
    return made;
}

bool tbGroup::addChild(tbGroup* child)
{
    return attach(child, [=, this] { return tbiNodeLinks::append(this, child); });
}

bool tbGroup::insertChild(int i, tbGroup* child)
{
    return attach(child, [=, this]
                  { return i >= 0 && i <= getNumChildren() && tbiNodeLinks::insert(this, i, child); });
}

// Cuts the edge to a child, tells its subtree and drops the reference. The hooks may drop the last one on this node.
bool tbGroup::letGo(tbGroup* child)
{
    tbiNodeLinks::Edge edge;
    if (!tbiNodeLinks::find(this, child, edge))
        return false;
    tbiNodeLinks::remove(this, child, edge);
    tellAndRelease(child);
    return true;
}

// The same for the last of the children that there are, which needs no search.
void tbGroup::letGoLast()
{
    tbiNodeLinks::Edge edge;
    tbGroup* child = tbiNodeLinks::findLast(this, edge);
    tbiNodeLinks::remove(this, child, edge);
    tellAndRelease(child);
}

void tbGroup::tellAndRelease(tbGroup* child)
{
    const tbiKeep keepThis(this);
    child->removedFrom(this);
    child->unRef();
}

bool tbGroup::removeChild(tbGroup* child)
{
    return child && child != this && letGo(child);
}

void tbGroup::removeChildren()
{
    const tbiKeep keepThis(this);
    for (int i = getNumChildren() - 1; i >= 0; --i)
        if (i < getNumChildren())
            removeChild(getChild(i));
}

void tbGroup::detach()
{
    if (getNumParents() < 2)
    {
        if (getNumParents() == 1)
            getParent(0)->removeChild(this);
        return;
    }
    const tbiKeep keepThis(this);
    const tbiNodeSnapshot former(getParents());
    for (int i = former.getNum() - 1; i >= 0 && former.isWhole(); --i)
        former[i]->removeChild(this);
}

// One parent's step of the operations that put `node` in this node's place. When `node` cannot stand there, being
// the parent or its child already, the place is dropped, as by any removal: switches drop what they keep for it.
void tbGroup::yieldTo(tbGroup* node, tbGroup* parent, bool keepOrder)
{
    if ((node == parent || parent->hasChild(node)) && parent->removeChild(this))
        return;
    const tbiKeep keepParent(parent);
    const bool placed = tbiNodeLinks::replace(parent, this, node, keepOrder);
    if (placed)
        node->ref();
    removedFrom(parent);
    if (placed)
        tbiPropagation::added(node, parent, false);
    unRef();
}

void tbGroup::remove()
{
    const bool one = getNumChildren() == 1;
    if (!reserveParents(getChildren(), getNumParents()) ||
        (!one && !reserveChildren(getParents(), getNumChildren())))
        return;
    ref();
    {
        const tbiNodeSnapshot former(getParents());
        const tbiNodeSnapshot orphans(getChildren());
        const bool whole = former.isWhole() && orphans.isWhole();
        if (whole && one)
        {
            tbGroup* child = getChild(0);
            const tbiKeep keepChild(child);
            for (tbGroup* parent : former)
                if (hasParent(parent))
                    yieldTo(child, parent, true);
        }
        else if (whole)
        {
            for (tbGroup* parent : former)
                parent->removeChild(this);
            for (tbGroup* parent : former)
                for (tbGroup* child : orphans)
                    parent->addChild(child);
        }
        if (whole)
            removeChildren();
    }
    unRef();
}

bool tbGroup::replace(tbGroup* node)
{
    if (!node || node == this || hasParent(node) || hasChild(node))
        return false;
    if (!tbiNodeLinks::reserveChildren(node, getNumChildren()) || !reserveParents(getChildren(), 1) ||
        !tbiNodeLinks::reserveParents(node, getNumParents()))
        return false;
    const tbiKeep keepThis(this);
    const tbiKeep keepNode(node);
    while (getNumChildren() > 0)
    {
        tbGroup* child = getChild(0);
        const tbiKeep keepChild(child);
        node->addChild(child);
        if (!removeChild(child))
            break;
    }
    // The last parent moves into the gap of the first: the order of enumeration is part of the interface.
    while (getNumParents() > 0)
        yieldTo(node, getParent(0), false);
    return true;
}

bool tbGroup::replaceGraph(tbGroup* node)
{
    if (!node || node == this || !tbiNodeLinks::reserveParents(node, getNumParents()))
        return false;
    ref();
    bool whole = true;
    {
        const tbiKeep keepNode(node);
        const tbiNodeSnapshot former(getParents());
        whole = former.isWhole();
        for (int i = former.getNum() - 1; i >= 0 && whole; --i)
            if (hasParent(former[i]))
                yieldTo(node, former[i], false);
    }
    unRef();
    return whole;
}

bool tbGroup::insertBelow(tbGroup* node)
{
    if (!node || node == this)
        return false;
    if (!tbiNodeLinks::reserveChildren(node, getNumChildren()) || !reserveParents(getChildren(), 1) ||
        !tbiNodeLinks::reserveChildren(this, 1) || !tbiNodeLinks::reserveParents(node, 1))
        return false;
    const tbiKeep keepNode(node);
    {
        const tbiNodeSnapshot former(getChildren());
        if (!former.isWhole())
            return false;
        for (tbGroup* child : former)
            node->addChild(child);
        removeChildren();
    }
    return addChild(node);
}

bool tbGroup::insertAbove(tbGroup* node)
{
    if (!node || node == this)
        return false;
    const tbiKeep keepNode(node);
    const tbiNodeSnapshot former(getParents());
    if (!former.isWhole() || !tbiNodeLinks::reserveParents(node, getNumParents()))
        return false;
    if (!node->addChild(this) && !node->hasChild(this))
        return false;
    for (tbGroup* parent : former)
        if (parent != node && hasParent(parent))
            yieldTo(node, parent, true);
    return true;
}
