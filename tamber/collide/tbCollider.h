#pragma once

#include <tamber/collide/tbHit.h>
#include <tamber/containers/tbList.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/math/tbVec3.h>
#include <tamber/volume/tbRay.h>
#include <tamber/volume/tbVolume.h>

class tbEvent;
class tbFence;
class tbGeometry;
class tbGroup;
class tbQuat;
class tbTransform;
class tbTravContext;
class tbTravTrait;

// Finds what in a graph its volume touches and where its rays strike. Placed in the world with position, heading,
// pitch and roll; carries up to 32 rays and one volume down into each node's frame and keeps one hit per ray and one
// volume hit. All colliders share one traversal context: two of them must not walk at the same time.
class TB_API tbCollider : public tbBase
{
    TB_CLASS(tbCollider, tbBase)

public:
    enum RAY_HIT_MODE : unsigned char
    {
        RAY_HIT_NONE = 0,
        RAY_HIT_NEAREST = 1,
        RAY_HIT_FARTHEST = 2,
        RAY_HIT_ALL = 3
    };
    enum VOLUME_MODE : unsigned char
    {
        VOLUME_NONE = 0,
        VOLUME_SPHERE = 1,
        VOLUME_BOX = 2,
        VOLUME_USER = 3
    };
    enum VOLUME_HIT_MODE : unsigned char
    {
        VOLUME_HIT_NONE = 0,
        VOLUME_HIT_FIRST = 1,
        VOLUME_HIT_ALL = 2
    };
    /// Bits of the save mask: what each hit keeps besides itself.
    enum SAVE : unsigned char
    {
        SAVE_PATH = 1,
        SAVE_NAMED_PATH = 2,
        SAVE_MATRIX = 4,
        SAVE_INVERT_MATRIX = 8
    };
    static constexpr int MAX_RAYS = 32;

    tbCollider();
    tbCollider(const tbCollider& other);
    tbCollider& operator=(const tbCollider& other);

    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

    /// Adds the low four bits to the save mask. Bits once set stay: users of one collider each ask for what they
    /// need.
    virtual void setSaveMask(unsigned int mask);
    virtual void setRayHitMode(RAY_HIT_MODE mode);
    /// Copies `ray`, in the collider's coordinates. A 33rd ray is ignored.
    virtual void addRay(const tbRay& ray);
    virtual void setVolumeMode(VOLUME_MODE mode);
    virtual void setVolumeHitMode(VOLUME_HIT_MODE mode);
    /// Goes over to the user's volume, in the collider's coordinates. It stays the caller's.
    virtual void setVolume(tbVolume* volume);
    /// Walks the graph. Returns the number of rays with a hit; without rays or with ray mode 0, 1 for a recorded
    /// volume hit; else 0. Null, and a context that is in use by another walk, give 0.
    virtual int intersect(tbGroup* root);
    /// Called by geometry that ray `ray` strikes at `point`, in the geometry's coordinates.
    virtual void generateRayHit(int ray, const tbGroup* node, const tbVec3& point, float distance,
                                int primitive, int index);
    virtual void setXYZ(float x, float y, float z);
    virtual void setXYZ(const tbVec3& position);
    /// Degrees.
    virtual void setHPR(float heading, float pitch, float roll);
    virtual void setHPR(const tbVec3& hpr);
    virtual void setQuat(const tbQuat& rotation);
    virtual void setTravContext(tbTravContext* context);
    virtual void addTrait(tbTravTrait* trait);
    virtual void setColliderMask(unsigned int mask);

    void removeAllRays();
    int getNumRays() const { return localRays.getNum(); }
    /// World ray, local ray, ray in the coordinates of the node being tested, and hit of ray `i`; not range checked.
    const tbRay* getRay(int i) const { return worldRays[i]; }
    const tbRay* getLocalRay(int i) const { return localRays[i]; }
    const tbRay* getWorkingRay(int i) const { return workingRays[i]; }
    const tbHit* getRayHit(int i) const { return hits[i]; }
    RAY_HIT_MODE getRayHitMode() const { return rayHitMode; }
    /// The volume in world coordinates, null when there is none.
    const tbVolume* getVolume() const { return worldVolume; }
    const tbVolume* getLocalVolume() const { return localVolume; }
    const tbHit* getVolumeHit() const { return &volumeHit; }
    VOLUME_MODE getVolumeMode() const { return volumeMode; }
    VOLUME_HIT_MODE getVolumeHitMode() const { return volumeHitMode; }
    unsigned int getSaveMask() const { return saveMask; }
    unsigned int getColliderMask() const { return colliderMask; }
    void getXYZ(float& x, float& y, float& z) const;
    void getXYZ(tbVec3& position) const;
    void getHPR(float& heading, float& pitch, float& roll) const;
    void getHPR(tbVec3& hpr) const;
    void getQuat(tbQuat& rotation) const;

    void removeTrait(tbTravTrait* trait);
    tbTravTrait* getTrait(int i) const { return traits[i]; }
    int getNumTraits() const { return traits.getNum(); }
    /// Pushes every trait on the context's trait stack.
    void applyTraits();

    tbEvent* getRayHitEvent() const { return rayHitEvent; }
    tbEvent* getVolumeHitEvent() const { return volumeHitEvent; }
    tbTravContext* getTravContext() const { return travContext; }

    /// Tests counted in the last walk.
    int getNumFences() const { return int(numFences); }
    int getNumVolume() const { return int(numVolumes); }
    int getNumTransforms() const { return int(numTransforms); }
    int getNumGeometries() const { return int(numGeometries); }

    // Called by nodes during the walk.
    tbVolume::CONTAINMENT intersects(const tbTransform* node);
    tbVolume::CONTAINMENT intersects(const tbFence* node);
    tbVolume::CONTAINMENT intersects(const tbGeometry* node);
    /// Brings volume and rays, but the rays in `failedRays`, into the frame whose world-to-local matrix is `matrix`.
    void applyMatrix(const tbMatrix& matrix, unsigned int failedRays);
    void updateStats(const tbGroup* node);

protected:
    ~tbCollider() override;

private:
    enum TARGET : unsigned int
    {
        TARGET_TRANSFORM = 0x10000,
        TARGET_FENCE = 0x20000,
        TARGET_GEOMETRY = 0x40000
    };

    void assign(const tbCollider& other);
    tbMatrix placement() const;
    void prepareRays(const tbMatrix& matrix);
    void prepareVolume(const tbMatrix& matrix);
    void buildVolume();
    void dropVolumes();
    bool ownsLocalVolume() const { return volumeMode == VOLUME_SPHERE || volumeMode == VOLUME_BOX; }
    void walk(tbGroup* root);
    int lastRayWithHit() const;
    int result() const;
    tbVolume::CONTAINMENT intersects(const tbGroup* node, const tbVolume& volume, unsigned int target);
    void recordVolumeHit(const tbGroup* node, unsigned int target);
    bool anyRayMeets(const tbVolume& volume, unsigned int target);
    void save(tbHit& hit) const;

    tbTList<tbTravTrait*> traits;
    tbVec3 position;
    tbVec3 orientation;
    std::uint32_t colliderMask = 0xFFFFFFFF;
    std::uint8_t saveMask = 0;
    RAY_HIT_MODE rayHitMode = RAY_HIT_NEAREST;
    bool rayHitMade = false; // during the present walk
    VOLUME_MODE volumeMode = VOLUME_SPHERE;
    VOLUME_HIT_MODE volumeHitMode = VOLUME_HIT_NONE;
    tbTList<tbRay*> localRays;
    tbTList<tbRay*> worldRays;
    tbTList<tbRay*> workingRays;
    tbTList<tbHit*> hits;
    tbVolume* localVolume = nullptr; // the user's in mode VOLUME_USER
    tbVolume* worldVolume = nullptr;
    tbVolume* workingVolume = nullptr;
    tbHit volumeHit;
    tbTravContext* travContext = nullptr;
    tbEvent* rayHitEvent = nullptr;
    tbEvent* volumeHitEvent = nullptr;
    std::uint32_t numFences = 0;
    std::uint32_t numVolumes = 0;
    std::uint32_t numTransforms = 0;
    std::uint32_t numGeometries = 0;
};
