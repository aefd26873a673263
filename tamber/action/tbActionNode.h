#pragma once

#include <tamber/graph/tbGroup.h>

class tbEvent;

// An action that is a node of the scene graph, so that it can be placed in a graph, copied with it, and refer to other
// nodes of that graph.
class TB_API tbActionNode : public tbGroup
{
    TB_CLASS(tbActionNode, tbGroup)

public:
    tbActionNode();
    tbActionNode(const tbActionNode& other);
    tbActionNode& operator=(const tbActionNode& other);

    using tbGroup::apply;

    tbBase* createCopy() const override;
    /// The record of the base object only: flags and children of an action node are not saved, which files rely on.
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

protected:
    ~tbActionNode() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;

    friend class tbGroup;
    /// Called on the action nodes of a copied subgraph for every node that was copied: a class that refers to
    /// `prev` refers to `copy` from now on. Nothing here.
    virtual void resolveGroup(const tbGroup* prev, tbGroup* copy);

public:
    /// Does the work; false when it could not. `initiator` is what triggered the event.
    virtual bool apply(tbBase* initiator, tbEvent* event) = 0;
};
