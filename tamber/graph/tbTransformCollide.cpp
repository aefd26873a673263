// The collider walk of tbTransform.
#include "tbTransform.h"

#include <tamber/collide/tbCollider.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>

namespace
{

// The collider's rays and volume in a node's coordinates. On leaving, the collider goes back to the frame above;
// the rays that it skips then are those that had failed before the node.
class ColliderFrame
{
public:
    ColliderFrame(tbCollider* walker, const tbMatrix& matrix)
        : collider(walker),
          context(walker->getTravContext()),
          pushed((matrix.getType() & tbMatrix::MATRIX_IDENT) == 0)
    {
        if (!pushed)
            return;
        context->pushMultMatrix(matrix);
        tbMatrix inverse(tbTravContext::ident);
        inverse.invert(context->getMatrix());
        context->pushInvertMatrix(inverse);
        collider->applyMatrix(inverse, context->getFailedRayMask());
    }
    ~ColliderFrame()
    {
        if (!pushed)
            return;
        context->popInvertMatrix();
        context->popMatrix();
        collider->applyMatrix(context->getInvertMatrix(), context->getFailedRayMask());
    }
    ColliderFrame(const ColliderFrame&) = delete;
    ColliderFrame& operator=(const ColliderFrame&) = delete;

private:
    tbCollider* collider;
    tbTravContext* context;
    bool pushed;
};

} // namespace

void tbTransform::apply(tbCollider* collider) const
{
    tbTravContext* context = collider->getTravContext();
    collider->updateStats(this);
    const tbVolume::CONTAINMENT known = context->getCullResult();
    const bool tested = context->anyFlags(tbTravContext::COLLIDE_TRANSFORMS) != 0;
    if (tested && known == tbVolume::OUTSIDE)
        return;
    const ColliderFrame frame(collider, matrix);
    if (!tested || known == tbVolume::INSIDE)
    {
        tbGroup::apply(collider);
        return;
    }
    const tbiFailedRayScope ownRays(context);
    switch (collider->intersects(this))
    {
    case tbVolume::OUTSIDE:
        break;
    case tbVolume::PARTIAL:
        tbGroup::apply(collider);
        break;
    case tbVolume::INSIDE:
    {
        const tbiCullScope inside(context, tbVolume::INSIDE);
        tbGroup::apply(collider);
        break;
    }
    }
}
