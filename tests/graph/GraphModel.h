// The graph's rules in their plainest form: lists that are searched, flags that travel by recursion. Tests play the
// same edits on it and on the real nodes and compare everything that can be seen.
#pragma once

#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbRef.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace tbtest
{

/// A node with contents of its own, as geometry and emitters have.
class ContentNode : public tbGroup
{
public:
    explicit ContentNode(unsigned contents) : own(contents) { addTravFlags(own); }

protected:
    void addedTo(tbGroup* parent) override
    {
        addTravFlags(own);
        tbGroup::addedTo(parent);
    }
    void cleanUp(unsigned bits) override { tbGroup::cleanUp(bits & ~own); }

private:
    unsigned own;
};

/// A node that calls back when it comes under a parent and when it leaves one.
class HookNode : public tbGroup
{
public:
    std::function<void()> hook = [] {};

protected:
    void addedTo(tbGroup*) override { hook(); }
    void removedFrom(tbGroup*) override { hook(); }
};

/// Nodes below several parents, once for each path to them.
inline int numWithSeveralParents(const tbGroup* node)
{
    int num = node->getNumParents() > 1 ? 1 : 0;
    for (const tbGroup* child : node->getChildren())
        num += numWithSeveralParents(child);
    return num;
}

struct ModelNode
{
    using List = std::vector<ModelNode*>;

    List children;
    List parents;
    unsigned flags = 0;
    unsigned own = 0;
    bool transform = false;

    static int indexOf(const List& list, const ModelNode* node)
    {
        const auto found = std::find(list.begin(), list.end(), node);
        return found == list.end() ? -1 : int(found - list.begin());
    }
    static List reversed(const List& list) { return List(list.rbegin(), list.rend()); }
    bool hasChild(const ModelNode* node) const { return indexOf(children, node) >= 0; }
    bool reaches(const ModelNode* node) const
    {
        return this == node ||
               std::any_of(children.begin(), children.end(), [=](ModelNode* k) { return k->reaches(node); });
    }

    void dirtyUp(unsigned bits)
    {
        if (transform && (bits & 0xF7) != 0)
            bits |= 0x20;
        flags |= bits;
        for (ModelNode* parent : parents)
            if ((flags & ~parent->flags) != 0)
                parent->dirtyUp(flags);
    }
    void cleanUp(unsigned bits)
    {
        bits &= ~own;
        unsigned held = 0;
        for (const ModelNode* child : children)
            held |= child->flags;
        const unsigned clear = bits & ~held;
        if (clear == 0)
            return;
        flags &= ~clear;
        for (ModelNode* parent : parents)
            parent->cleanUp(clear);
    }
    void dirtyDown()
    {
        for (ModelNode* child : children)
        {
            if ((child->flags & 0x3000) == 0)
                continue;
            child->flags |= 0x10;
            child->dirtyDown();
        }
    }
    void matrixIsNews()
    {
        flags |= 0x10;
        dirtyDown();
    }
    void addedTo()
    {
        flags |= own;
        if (transform)
            matrixIsNews();
        dirtyUp((flags & 0x7E00) | 0x3 | (parents.size() > 1 ? 0x8u : 0u));
    }
    void notifyAdded()
    {
        for (ModelNode* child : reversed(children))
            child->notifyAdded();
        addedTo();
    }
    void removedFrom(ModelNode* parent)
    {
        if (transform)
            matrixIsNews();
        parent->cleanUp(flags & 0x7E00);
        parent->dirtyUp(0x5 | ((flags & 0x220) != 0 ? 0x20u : 0u));
        flags |= 0x1;
        for (ModelNode* child : children)
            child->removedFrom(parent);
    }
    void changeMatrix()
    {
        matrixIsNews();
        for (ModelNode* parent : parents)
            if (((flags | 0x30) & ~parent->flags) != 0)
                parent->dirtyUp(0x30);
    }
    void update()
    {
        flags &= 0xFF08;
        for (ModelNode* child : children)
            if ((child->flags & 0xF1) != 0)
                child->update();
    }

    bool insertChild(int i, ModelNode* child)
    {
        if (i > int(children.size()) || child == this || hasChild(child))
            return false;
        children.insert(children.begin() + i, child);
        child->parents.push_back(this);
        child->notifyAdded();
        return true;
    }
    bool addChild(ModelNode* child) { return insertChild(int(children.size()), child); }
    bool removeChild(ModelNode* child)
    {
        if (!hasChild(child))
            return false;
        std::erase(children, child);
        std::erase(child->parents, this);
        child->removedFrom(this);
        return true;
    }
    void removeChildren()
    {
        while (!children.empty())
            removeChild(children.back());
    }
    void detach()
    {
        for (ModelNode* parent : reversed(parents))
            parent->removeChild(this);
    }
    void yieldTo(ModelNode* node, ModelNode* parent, bool keepOrder)
    {
        if (node == parent || parent->hasChild(node))
        {
            parent->removeChild(this);
            return;
        }
        parent->children[std::size_t(indexOf(parent->children, this))] = node;
        node->parents.push_back(parent);
        if (!keepOrder) // the last moves into the gap
            std::swap(parents[std::size_t(indexOf(parents, parent))], parents.back());
        std::erase(parents, parent);
        removedFrom(parent);
        node->notifyAdded();
    }
    void remove()
    {
        const List former = parents;
        if (children.size() == 1)
        {
            ModelNode* child = children[0];
            for (ModelNode* parent : former)
                yieldTo(child, parent, true);
        }
        else
        {
            const List orphans = children;
            for (ModelNode* parent : former)
                parent->removeChild(this);
            for (ModelNode* parent : former)
                for (ModelNode* child : orphans)
                    parent->addChild(child);
        }
        removeChildren();
    }
    bool replace(ModelNode* node)
    {
        if (node == this || node->hasChild(this) || hasChild(node))
            return false;
        for (ModelNode* child : List(children))
        {
            node->addChild(child);
            removeChild(child);
        }
        while (!parents.empty())
            yieldTo(node, parents[0], false);
        return true;
    }
    bool replaceGraph(ModelNode* node)
    {
        if (node == this)
            return false;
        for (ModelNode* parent : reversed(parents))
            yieldTo(node, parent, false);
        return true;
    }
    bool insertBelow(ModelNode* node)
    {
        if (node == this)
            return false;
        for (ModelNode* child : List(children))
            node->addChild(child);
        removeChildren();
        return addChild(node);
    }
    bool insertAbove(ModelNode* node)
    {
        if (node == this)
            return false;
        const List former = parents;
        node->addChild(this);
        for (ModelNode* parent : former)
            if (parent != node)
                yieldTo(node, parent, true);
        return true;
    }
};

/// The same nodes twice: real ones, each held once from outside, and the model's.
struct GraphPair
{
    std::vector<tbRef<tbGroup>> real;
    std::vector<std::unique_ptr<ModelNode>> model;

    void add(tbGroup* node, unsigned own, bool transform)
    {
        real.emplace_back(node);
        model.push_back(std::make_unique<ModelNode>());
        model.back()->flags = node->getTravFlags();
        model.back()->own = own;
        model.back()->transform = transform;
    }
    int indexOf(const ModelNode* node) const
    {
        const auto isNode = [=](const auto& other) { return other.get() == node; };
        return int(std::find_if(model.begin(), model.end(), isNode) - model.begin());
    }
};

} // namespace tbtest
