// What a node pushes on the context of a walk, popped when the scope ends, however the node's function returns.
// A walk that was stopped is to leave its state behind: the node calls leave() on its scopes then.
//
// A stack that finds no memory stays as it is. The scope is false then and pops nothing, and the node passes over
// what lies below it: the walk goes on beside it.
#pragma once

#include <tamber/trav/tbTravContext.h>

class tbiScope
{
public:
    tbiScope(const tbiScope&) = delete;
    tbiScope& operator=(const tbiScope&) = delete;

    /// Nothing is popped at the end.
    void leave() { context = nullptr; }
    /// False when memory is out.
    explicit operator bool() const { return !refused; }

protected:
    explicit tbiScope(tbTravContext* walk) : context(walk) {}
    ~tbiScope() = default;

    /// Called with whether the push was taken.
    bool pushed(bool taken)
    {
        if (!taken) [[unlikely]]
        {
            refused = true;
            context = nullptr;
        }
        return taken;
    }

    tbTravContext* context; // null when there is nothing to pop
    bool refused = false;
};

/// A node's matrix on the matrix stack; the identity is not pushed.
class tbiMatrixScope : public tbiScope
{
public:
    tbiMatrixScope(tbTravContext* walk, const tbMatrix& matrix)
        : tbiScope((matrix.getType() & tbMatrix::MATRIX_IDENT) != 0 ? nullptr : walk)
    {
        if (context)
            pushed(context->pushMultMatrix(matrix));
    }
    ~tbiMatrixScope()
    {
        if (context)
            context->popMatrix();
    }
};

/// A frame of its own: the identity on the matrix stack.
class tbiIdentScope : public tbiScope
{
public:
    explicit tbiIdentScope(tbTravContext* walk) : tbiScope(walk) { pushed(context->pushIdentMatrix()); }
    ~tbiIdentScope()
    {
        if (context)
            context->popMatrix();
    }
};

/// A node's matrix on the matrix stack and the inverse of the new top on the inverse stack; the identity is not
/// pushed.
class tbiFrameScope : public tbiScope
{
public:
    tbiFrameScope(tbTravContext* walk, const tbMatrix& matrix)
        : tbiScope((matrix.getType() & tbMatrix::MATRIX_IDENT) != 0 ? nullptr : walk)
    {
        if (!context || !pushed(context->pushMultMatrix(matrix)))
            return;
        tbMatrix inverse(tbTravContext::ident);
        inverse.invert(context->getMatrix());
        if (!context->pushInvertMatrix(inverse))
        {
            context->popMatrix();
            pushed(false);
        }
    }
    ~tbiFrameScope()
    {
        if (!context)
            return;
        context->popInvertMatrix();
        context->popMatrix();
    }
};

/// The volume that nodes below extend.
class tbiVolumeScope : public tbiScope
{
public:
    tbiVolumeScope(tbTravContext* walk, tbVolume* volume) : tbiScope(walk)
    {
        pushed(context->pushVolume(volume));
    }
    ~tbiVolumeScope()
    {
        if (context)
            context->popVolume();
    }
};

/// What is known of the subtree against the view volume.
class tbiCullScope : public tbiScope
{
public:
    tbiCullScope(tbTravContext* walk, tbVolume::CONTAINMENT result) : tbiScope(walk)
    {
        pushed(context->pushCullResult(result));
    }
    ~tbiCullScope()
    {
        if (context)
            context->popCullResult();
    }
};

/// A place of its own for the rays that miss the subtree.
class tbiFailedRayScope : public tbiScope
{
public:
    explicit tbiFailedRayScope(tbTravContext* walk) : tbiScope(walk) { pushed(context->pushFailedRayMask()); }
    ~tbiFailedRayScope()
    {
        if (context)
            context->popFailedRayMask();
    }
};

/// A group on the path.
class tbiGroupScope : public tbiScope
{
public:
    tbiGroupScope(tbTravContext* walk, const tbGroup* group) : tbiScope(walk)
    {
        pushed(context->pushGroup(group));
    }
    ~tbiGroupScope()
    {
        if (context)
            context->popGroup();
    }
};
