// How rays of a collider meet a mesh.
#include "tbMesh.h"

#include <tamber/collide/tbCollider.h>
#include <tamber/render/tbVertexArray.h>
#include <tamber/trav/tbTravContext.h>

#include "tbiMeshTree.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <mutex>

namespace
{
std::mutex treeMutex; // two queries may want the tree of a mesh at once

// Where a ray comes nearest to the segment from `a` to `b`: along the ray, or nothing when it stays farther away than
// `tolerance`. A point is a segment of no length.
bool meetSegment(const tbiMeshTree::Query& ray, const tbVec3& a, const tbVec3& b, float tolerance,
                 float& distance)
{
    const tbVec3 along = b - a;
    const tbVec3 offset = ray.origin - a;
    const float dd = ray.direction.dot(ray.direction);
    const float de = ray.direction.dot(along);
    const float ee = along.dot(along);
    const float det = dd * ee - de * de;
    float onSegment = det > 0.0f ? (dd * along.dot(offset) - de * ray.direction.dot(offset)) / det : 0.0f;
    onSegment = std::fmin(std::fmax(onSegment, 0.0f), 1.0f);
    const tbVec3 target = a + along * onSegment;
    distance = ray.direction.dot(target - ray.origin) / dd;
    if (!(distance >= 0.0f && distance <= ray.maxDistance))
        return false;
    return (ray.origin + ray.direction * distance - target).sqrLength() <= tolerance * tolerance;
}

} // namespace

void tbMesh::setHitTolerance(float distance)
{
    hitTolerance = distance > 0.0f ? distance : 0.0f;
}

// Null when there is no memory for it.
const tbiMeshTree* tbMesh::getTree() const
{
    const tbiMeshTree* built = tree.load(std::memory_order_acquire);
    if (!built)
    {
        const std::lock_guard guard(treeMutex);
        built = tree.load(std::memory_order_acquire);
        if (!built)
        {
            built = tbiMeshTree::make(*this);
            tree.store(built, std::memory_order_release);
        }
    }
    return built;
}

void tbMesh::dropTree()
{
    delete tree.exchange(nullptr);
}

void tbMesh::getCorners(int i, tbVec3* corners) const
{
    const auto* data = static_cast<const unsigned char*>(vertexArray->getData());
    const unsigned int* named = getIndices();
    const int count = verticesOf(primitive);
    for (int corner = 0; corner < count; ++corner)
    {
        const auto slot = unsigned(i * count + corner);
        float xyz[3];
        std::memcpy(
            xyz, data + std::size_t(named ? named[slot] : slot) * std::size_t(vertexArray->getVertexSize()),
            sizeof xyz);
        corners[corner].set(xyz);
    }
}

void tbMesh::apply(tbCollider* collider) const
{
    tbTravContext* context = collider->getTravContext();
    if (context->anyFlags(tbTravContext::COLLIDE_GEOMETRY) &&
        collider->intersects(this) != tbVolume::OUTSIDE &&
        collider->getRayHitMode() != tbCollider::RAY_HIT_NONE && vertexArray)
    {
        for (int i = 0; i < collider->getNumRays(); ++i)
            if ((context->getFailedRayMask() & (1u << i)) == 0)
                collideRay(collider, i);
    }
    tbGeometry::apply(collider);
}

// In nearest mode the ray is cut at every hit and one hit is reported; the other modes are told of all hits.
void tbMesh::collideRay(tbCollider* collider, int i) const
{
    const tbRay ray(*collider->getWorkingRay(i));
    const bool nearestOnly = collider->getRayHitMode() == tbCollider::RAY_HIT_NEAREST;
    const tbHit& hit = *collider->getRayHit(i);
    float reach = ray.getLength() < 0.0f ? std::numeric_limits<float>::max() : ray.getLength();
    if (nearestOnly && hit.kind != 0)
        reach = std::fmin(reach, hit.distance);
    if (!(reach > 0.0f))
        return;
    tbiMeshTree::Query query{*ray.getOrigin(), *ray.getDirection(), reach};
    const float tolerance = primitive == TRIANGLES ? 0.0f : hitTolerance;
    int nearest = -1;
    tbVec3 nearestPoint(0, 0, 0);
    const auto test = [&](int candidate)
    {
        tbVec3 corners[3];
        tbVec3 point(0, 0, 0);
        float distance = -1.0f;
        getCorners(candidate, corners);
        if (primitive == TRIANGLES)
            distance = ray.intersects(corners[0], corners[1], corners[2], point);
        else if (meetSegment(query, corners[0], corners[primitive == LINES ? 1 : 0], tolerance, distance))
            point = query.origin + query.direction * distance;
        else
            return;
        if (!(distance > 0.0f && distance <= query.maxDistance))
            return;
        if (!nearestOnly)
        {
            report(collider, i, candidate, point, distance);
            return;
        }
        nearest = candidate;
        nearestPoint = point;
        query.maxDistance = distance;
    };
    if (const tbiMeshTree* found = getTree())
        found->visit(query, tolerance, test);
    else
        for (int candidate = 0; candidate < getNumPrimitives(); ++candidate)
            test(candidate);
    if (nearest >= 0)
        report(collider, i, nearest, nearestPoint, query.maxDistance);
}

void tbMesh::report(tbCollider* collider, int ray, int hitPrimitive, const tbVec3& point,
                    float distance) const
{
    const int slot = hitPrimitive * verticesOf(primitive);
    const int firstVertex = indices ? int(getIndices()[slot]) : slot;
    collider->generateRayHit(ray, this, point, distance, hitPrimitive, firstVertex);
}
