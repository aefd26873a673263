#pragma once

#include <portable/tbPortableApi.h>
#include <portable/tbTraitApply.h>
#include <tamber/trav/tbVisualTrait.h>

// How what is drawn mixes with what is there: result = source * source factor + there * destination factor.
class TB_PORTABLE_API tbBlend : public tbVisualTrait
{
    TB_CLASS(tbBlend, tbVisualTrait)

public:
    enum FACTOR : std::int32_t
    {
        ZERO = 0,
        ONE = 1,
        SRC_COLOR = 2,
        ONE_MINUS_SRC_COLOR = 3,
        DST_COLOR = 4,
        ONE_MINUS_DST_COLOR = 5,
        SRC_ALPHA = 6,
        ONE_MINUS_SRC_ALPHA = 7,
        DST_ALPHA = 8,
        ONE_MINUS_DST_ALPHA = 9
    };

    /// Off: what is drawn replaces what is there.
    tbBlend();
    tbBlend(const tbBlend& other);
    tbBlend& operator=(const tbBlend& other);

    void enable(bool on) { enabled = on; }
    /// False, and nothing changed, when a value is none of the enumeration.
    bool setFactors(FACTOR source, FACTOR destination);

    bool isEnabled() const { return enabled; }
    FACTOR getSourceFactor() const { return sourceFactor; }
    FACTOR getDestinationFactor() const { return destinationFactor; }

    static void setApplyFunc(tbTraitApplyFunc func);

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    bool isEqual(tbTrait* other) const override;
    void apply(tbTravContext* context) const override;
    void apply(tbCamera* camera) const override;

protected:
    tbBlend(const tbBlend& other, Disposable disposable);
    ~tbBlend() override;

private:
    void assign(const tbBlend& other);

    bool enabled = false;
    FACTOR sourceFactor = SRC_ALPHA;
    FACTOR destinationFactor = ONE_MINUS_SRC_ALPHA;
};
