#pragma once

#include <tamber/kernel/tbBase.h>
#include <tamber/trav/tbTraitStack.h>

class tbGroup;
class tbGroupType;

// Counts what walks meet: traits and groups by type, frames, collider walks and the time they took. A context
// without statistics counts nothing. Belongs to one walk at a time.
class TB_API tbStats : public tbBase
{
    TB_CLASS(tbStats, tbBase)

public:
    /// Further totals that plug-ins and applications use as they like.
    static constexpr int NUM_TOTALS = 11;

    /// Counts groups, and the families of traits that `kinds` names.
    explicit tbStats(tbTraitStack::STACK_TYPES kinds = tbTraitStack::ALL_STACKS);
    tbStats(const tbStats& other);
    tbStats& operator=(const tbStats& other);

    tbBase* createCopy() const override;

    /// Types made since the last reset() are not counted.
    virtual void incCount(const tbVisualTrait* trait);
    virtual void incCount(const tbAudioTrait* trait);
    virtual void incCount(const tbTravTrait* trait);
    virtual void incCount(const tbGroup* group);

    /// Takes in new types and sets everything to 0.
    void reset();

    /// 0 for null, for kinds that are not counted and for types made since the last reset().
    int getCount(const tbVisualTraitType* type) const;
    int getCount(const tbAudioTraitType* type) const;
    int getCount(const tbTravTraitType* type) const;
    int getCount(const tbGroupType* type) const;

    /// One frame update of a scene, which took that long.
    void addFrame(double seconds);
    int getNumFrames() const { return totals.frames; }
    double getUpdateTime() const { return totals.updateTime; }
    /// One walk of a collider, which took that long.
    void addCollision(double seconds);
    int getNumCollisions() const { return totals.collisions; }
    double getCollisionTime() const { return totals.collisionTime; }
    /// One ray that missed a subtree.
    void addFailedRay() { count(totals.failedRays); }
    int getNumFailedRays() const { return totals.failedRays; }
    /// `i` from 0 to NUM_TOTALS - 1; others are ignored, and read as 0.
    void addTotal(int i, int amount);
    int getTotal(int i) const;

protected:
    ~tbStats() override;

private:
    // One counter for each type of a kind, by the type's index.
    struct Counters
    {
        std::int32_t* values = nullptr;
        std::int16_t length = 0;

        bool covers(const tbType* type) const;
        void inc(const tbType* type);
        int get(const tbType* type) const;
        void resize(int numTypes);
        void clear();
        void assign(const Counters& other);
    };
    struct Totals
    {
        double updateTime = 0.0;
        double collisionTime = 0.0;
        std::int32_t frames = 0;
        std::int32_t collisions = 0;
        std::int32_t failedRays = 0;
        std::int32_t further[NUM_TOTALS] = {};
    };
    static_assert(sizeof(Totals) == 18 * sizeof(std::int32_t));

    /// Counters stay at their largest value: programs run for months without a reset().
    static void count(std::int32_t& counter) { counter += counter < INT32_MAX ? 1 : 0; }
    void reallocArrays();
    void assign(const tbStats& other);

    Counters visual;
    Counters audio;
    Counters trav;
    Counters group;
    Totals totals;
    tbTraitStack::STACK_TYPES kinds;
};
