#pragma once

#include <tamber/action/tbTransition.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/math/tbMatrixStack.h>
#include <tamber/trav/tbTravStack.h>
#include <tamber/volume/tbVolume.h>

class tbCamera;
class tbScene;
class tbStats;
class tbTraitStack;

// The state that a walk carries down a graph: matrices, volumes, cull results, the path of groups, flags and masks,
// the trait stack and the statistics. Nodes push on entry and pop on exit; a walk that is stopped leaves its path,
// and the next reset() makes the context whole again.
//
// A context belongs to one walk at a time and is not locked. Pops and reads of an empty stack give null or 0. Once
// the stacks have grown to the depth of the graph nothing is allocated.
class TB_API tbTravContext : public tbBase
{
    TB_CLASS(tbTravContext, tbBase)

public:
    enum FLAGS : std::uint32_t
    {
        TRANSPARENCY_INPUTS = 0x0F, // written by visual traits
        TRANSPARENCY = 0x40,        // see setTransparencyFlags()
        PRUNE = 0x80,               // styles do not descend, cameras do not apply their visual traits
        CULL_USER_1 = 0x100,        // for the drawing plug-in
        CULL_FENCES = 0x400,        // the camera walk tests fences against the view volume
        CULL_TRANSFORMS = 0x1000,   // the camera walk tests transforms against the view volume
        CULL_USER_2 = 0x4000,       // for the drawing plug-in
        CULL_ALL = 0x5500,
        COLLIDE_TRANSFORMS = 0x10000, // colliders test transforms
        COLLIDE_FENCES = 0x20000,     // colliders test fences
        COLLIDE_GEOMETRY = 0x40000,   // colliders test geometry
        COLLIDE_ALL = 0x70000,
        SORT_USER_1 = 0x100000, // for the drawing plug-in
        SORT_USER_2 = 0x200000, // for the drawing plug-in
        SORT_ALL = 0x300000,
        DEFAULT_FLAGS = 0x375500
    };
    static constexpr unsigned DEFAULT_TRAV_MASK = 0x7E00;

    /// The identity, shared by all contexts.
    static const tbMatrix ident;

    tbTravContext();
    /// Copies the state of the walk and shares trait stack and statistics.
    tbTravContext(const tbTravContext& other);
    tbTravContext& operator=(const tbTravContext& other);

    tbBase* createCopy() const override;

    /// Puts the context, and the trait stack, in the state for a new walk. Scene, camera and travel mask stay.
    void reset();

    void setFlags(unsigned newFlags) { flags = newFlags; }
    unsigned getFlags() const { return flags; }
    void addFlags(unsigned mask) { flags |= mask; }
    void removeFlags(unsigned mask) { flags &= ~mask; }
    unsigned anyFlags(unsigned mask) const { return flags & mask; }
    /// True when every bit of `mask` is set.
    bool allFlags(unsigned mask) const { return (flags & mask) == mask; }
    /// TRANSPARENCY becomes set when the inputs 0x2 and 0x4 are both set, or 0x1 and 0x8, and else clear.
    void setTransparencyFlags()
    {
        if (allFlags(0x2 | 0x4) || allFlags(0x1 | 0x8))
            addFlags(TRANSPARENCY);
        else
            removeFlags(TRANSPARENCY);
    }

    /// Nodes whose travel flags share no bit with it are passed over with their subtrees.
    void setTravMask(unsigned mask) { travMask = mask; }
    unsigned getTravMask() const { return travMask; }
    void setColliderMask(unsigned mask) { colliderMask = mask; }
    unsigned getColliderMask() const { return colliderMask; }
    void setTransitionScale(float scale) { transitionScale = scale; }
    float getTransitionScale() const { return transitionScale; }
    void setTransitionMode(tbTransition::MODE mode) { transitionMode = mode; }
    tbTransition::MODE getTransitionMode() const { return transitionMode; }
    void setTextureID(int id) { textureID = id; }
    int getTextureID() const { return textureID; }
    /// Factor on the distances of range switches.
    void setRangeSwitchScale(float scale) { rangeSwitchScale = scale; }
    float getRangeSwitchScale() const { return rangeSwitchScale; }
    /// Scene and camera are not referenced.
    void setScene(tbScene* newScene) { scene = newScene; }
    tbScene* getScene() const { return scene; }
    void setCamera(tbCamera* newCamera) { camera = newCamera; }
    tbCamera* getCamera() const { return camera; }
    /// Takes a reference. A trait stack serves one context at a time.
    void setTraitStack(tbTraitStack* newStack);
    tbTraitStack* getTraitStack() const { return traitStack.get(); }
    /// Takes a reference. Null: nothing is counted.
    void setStats(tbStats* newStats);
    tbStats* getStats() const { return stats.get(); }

    // Every push is false, and nothing is pushed, when memory is out.

    // Local to world.
    bool pushMatrix(const tbMatrix& matrix) { return matrices.pushLoad(matrix); }
    /// The new top is `matrix` times the old one: `matrix` applies first.
    bool pushMultMatrix(const tbMatrix& matrix) { return matrices.pushMult(matrix); }
    bool pushIdentMatrix() { return matrices.pushLoad(ident); }
    void popMatrix() { matrices.pop(); }
    const tbMatrix& getMatrix() const { return matrices.getTop(); }
    /// Changes whenever the matrix may have changed.
    std::uint16_t getMatrixID() const { return matrices.getID(); }

    // World to local.
    bool pushInvertMatrix(const tbMatrix& matrix) { return inverses.pushLoad(matrix); }
    bool pushMultInvertMatrix(const tbMatrix& matrix) { return inverses.pushMult(matrix); }
    bool pushInvertIdentMatrix() { return inverses.pushLoad(ident); }
    void popInvertMatrix() { inverses.pop(); }
    const tbMatrix& getInvertMatrix() const { return inverses.getTop(); }

    /// Volumes are neither copied nor owned.
    bool pushVolume(tbVolume* volume) { return volumes.push(volume); }
    void popVolume() { volumes.pop(); }
    tbVolume* getVolume() const { return static_cast<tbVolume*>(volumes.getTop()); }

    bool pushCullResult(tbVolume::CONTAINMENT result) { return cullResults.push(slotOf(unsigned(result))); }
    tbVolume::CONTAINMENT popCullResult() { return tbVolume::CONTAINMENT(wordOf(cullResults.pop())); }
    tbVolume::CONTAINMENT getCullResult() const
    {
        return tbVolume::CONTAINMENT(wordOf(cullResults.getTop()));
    }

    /// One bit for each ray of a collider that misses the current subtree. Pushes a copy of the top.
    bool pushFailedRayMask() { return failedRays.push(failedRays.getTop()); }
    /// Adds to the top in place; nothing happens while the stack is empty.
    void addFailedRayMask(unsigned mask) { failedRays.setTop(slotOf(getFailedRayMask() | mask)); }
    void popFailedRayMask() { failedRays.pop(); }
    unsigned getFailedRayMask() const { return wordOf(failedRays.getTop()); }

    bool pushGroup(const tbGroup* group);
    /// The group that was current; null when the path is empty.
    const tbGroup* popGroup();
    const tbGroup* getGroup() const { return path.getTop(); }
    const tbTravStack& getTravStack() const { return path; }
    /// Only the groups that have a name.
    const tbTravStack& getNamedTravStack() const { return namedPath; }
    std::uint32_t getTravStackID() const { return path.getID(); }

protected:
    ~tbTravContext() override;

private:
    // Stacks of 32-bit words keep them in their pointer slots.
    static void* slotOf(unsigned word) { return reinterpret_cast<void*>(std::uintptr_t(word)); }
    static unsigned wordOf(const void* slot) { return unsigned(reinterpret_cast<std::uintptr_t>(slot)); }

    tbScene* scene = nullptr;
    tbCamera* camera = nullptr;
    tbMatrixStack matrices;
    tbMatrixStack inverses;
    tbStack volumes;
    tbStack failedRays;
    tbTravStack path;
    tbTravStack namedPath;
    tbStack cullResults;
    std::uint32_t travMask = DEFAULT_TRAV_MASK;
    std::uint32_t flags = DEFAULT_FLAGS;
    std::uint32_t colliderMask = 0xFFFFFFFF;
    float transitionScale = 0.0f;
    tbTransition::MODE transitionMode = tbTransition::TRANSITION_NONE;
    std::int32_t textureID = 0;
    float rangeSwitchScale = 1.0f;
    tbRef<tbTraitStack> traitStack;
    tbRef<tbStats> stats;
};
