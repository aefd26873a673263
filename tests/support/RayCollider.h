// Colliders that look along rays.
#pragma once

#include <tamber/collide/tbCollider.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/volume/tbRay.h>

namespace tbtest
{
/// With one ray and no volume around it.
inline tbRef<tbCollider> makeCollider(const tbRay& ray,
                                      tbCollider::RAY_HIT_MODE mode = tbCollider::RAY_HIT_NEAREST)
{
    tbRef<tbCollider> collider(new tbCollider);
    collider->setVolumeMode(tbCollider::VOLUME_NONE);
    collider->setRayHitMode(mode);
    collider->addRay(ray);
    return collider;
}
} // namespace tbtest
