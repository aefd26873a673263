#pragma once

#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbRef.h>

class tbGroup;
class tbTravContext;

// Visits the nodes of a graph, depth first, parents before children. An application derives its visitor from this
// class and overrides apply(), preApply() or both. Three break points stop a walk at the first node that matches and
// leave the path to it on the context.
class TB_API tbTraverser : public tbBase
{
    TB_CLASS(tbTraverser, tbBase)

public:
    /// What a node, or the traverser for a node, answers to the walk.
    enum TRAV_STATE : std::int32_t
    {
        TRAV_CONTINUE = 0, // visit the children, then the next sibling
        TRAV_PRUNE = 1,    // pass over the children, go on with the next sibling
        TRAV_STOP = 2      // end the whole walk; the path so far stays on the context
    };

    tbTraverser();
    /// Shares break points and context.
    tbTraverser(const tbTraverser& other);
    tbTraverser& operator=(const tbTraverser& other);

    tbBase* createCopy() const override;

    /// Resets the context and walks the graph below `root`. Nothing happens for null. A walk needs a context:
    /// without one, nothing is visited.
    virtual void traverse(tbGroup* root);
    virtual void reset();
    /// Called for every node that is entered. The base answers TRAV_STOP at a break point. Whoever takes the node out of
    /// the graph answers TRAV_PRUNE, here and below; the sibling that moves into its place is passed over.
    virtual TRAV_STATE apply(tbGroup* group);
    /// Called before a node is entered. Any answer but TRAV_CONTINUE keeps the walk out of it: it is not counted
    /// and never stands on the path.
    virtual TRAV_STATE preApply(tbGroup* group);
    /// Stops at that very node. Takes a reference.
    virtual void setGroupBreakPoint(tbGroup* group);
    /// Stops at nodes of that type and of types derived from it.
    virtual void setIsOfTypeBreakPoint(const tbType* type);
    /// Stops at nodes of that very type.
    virtual void setExactTypeBreakPoint(const tbType* type);
    /// Takes a reference on the new context and drops the old one's.
    virtual void setTravContext(tbTravContext* newContext);

    tbGroup* getGroupBreakPoint() const { return groupBreakPoint.get(); }
    const tbType* getIsOfTypeBreakPoint() const { return isOfTypeBreakPoint; }
    const tbType* getExactTypeBreakPoint() const { return exactTypeBreakPoint; }
    tbTravContext* getTravContext() const { return context.get(); }

protected:
    ~tbTraverser() override;

private:
    tbRef<tbGroup> groupBreakPoint;
    const tbType* isOfTypeBreakPoint = nullptr;
    const tbType* exactTypeBreakPoint = nullptr;
    tbRef<tbTravContext> context;
};
