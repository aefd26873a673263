#pragma once

#include <tamber/collide/tbCollider.h>
#include <tamber/trav/tbTravContext.h>

/// The collider's rays and volume in a node's coordinates; the identity changes nothing. On leaving, the collider
/// goes back to the frame above; the rays that it skips then are those that had failed before the node.
class tbiColliderFrame
{
public:
    tbiColliderFrame(tbCollider* walker, const tbMatrix& matrix)
        : collider(walker),
          context(walker->getTravContext()),
          pushed((matrix.getType() & tbMatrix::MATRIX_IDENT) == 0)
    {
        if (!pushed)
            return;
        pushed = context->pushMultMatrix(matrix);
        if (!pushed)
        {
            refused = true;
            return;
        }
        tbMatrix inverse(tbTravContext::ident);
        inverse.invert(context->getMatrix());
        if (!context->pushInvertMatrix(inverse))
        {
            context->popMatrix();
            pushed = false;
            refused = true;
            return;
        }
        collider->applyMatrix(inverse, context->getFailedRayMask());
    }
    ~tbiColliderFrame()
    {
        if (!pushed)
            return;
        context->popInvertMatrix();
        context->popMatrix();
        collider->applyMatrix(context->getInvertMatrix(), context->getFailedRayMask());
    }
    tbiColliderFrame(const tbiColliderFrame&) = delete;
    tbiColliderFrame& operator=(const tbiColliderFrame&) = delete;

    /// False when memory is out: what lies below is passed over.
    explicit operator bool() const { return !refused; }

private:
    tbCollider* collider;
    tbTravContext* context;
    bool pushed;
    bool refused = false;
};
