// The collider's file record.
#include <tamber/collide/tbCollider.h>

#include <tamber/io/tbEntry.h>
#include <tamber/trav/tbTravTrait.h>

#include <algorithm>

tbEntry* tbCollider::write(tbFile* file, tbEntry* entry) const
{
    entry = tbBase::write(file, entry);
    if (!entry)
        return nullptr;
    position.write(entry);
    orientation.write(entry);
    entry->writeInt(int(colliderMask));
    entry->writeInt(saveMask);
    entry->writeInt(rayHitMode);
    entry->writeInt(volumeMode);
    entry->writeInt(volumeHitMode);
    entry->writeInt(getNumRays());
    for (const tbRay* ray : localRays)
        ray->write(entry);
    entry->writeInt(traits.getNum());
    for (const tbTravTrait* trait : traits)
        trait->writeRef(file, entry);
    return entry;
}

tbEntry* tbCollider::read(tbFile* file, tbEntry* entry)
{
    constexpr int RAY_SIZE = 7 * int(sizeof(float));
    constexpr int RAY_MEMORY = 416; // three rays, a hit and their places in lists
    entry = tbBase::read(file, entry);
    if (!entry)
        return nullptr;
    position.read(entry);
    orientation.read(entry);
    colliderMask = unsigned(entry->readInt());
    saveMask = std::uint8_t(entry->readInt() & 0xF);
    rayHitMode = RAY_HIT_MODE(entry->readInt());
    // A user's volume is not in the file: there is none until setVolume() gives it back.
    setVolumeMode(VOLUME_MODE(entry->readInt()));
    volumeHitMode = VOLUME_HIT_MODE(entry->readInt());
    const int numRays = entry->readCount(RAY_SIZE);
    removeAllRays();
    if (!entry->checkMemory(std::int64_t{RAY_MEMORY} * std::min(numRays, MAX_RAYS)))
        return nullptr;
    for (int i = 0; i < numRays; ++i)
    {
        tbRay ray;
        ray.read(entry);
        addRay(ray);
    }
    const int numTraits = entry->readCount(int(sizeof(int)));
    for (int i = 0; i < numTraits; ++i)
    {
        tbBase* object = readRef(file, entry);
        if (object && object->isOfType(tbTravTrait::getClassType()))
            addTrait(static_cast<tbTravTrait*>(object));
        else if (object)
            entry->passOver("a trait of a collider that is none for walks");
    }
    return entry->hasFailed() ? nullptr : entry;
}
