#pragma once

#include <portable/tbPortableApi.h>
#include <portable/tbTraitApply.h>
#include <tamber/trav/tbVisualTrait.h>

// Which side of triangles is left out when they are drawn.
class TB_PORTABLE_API tbFaceCull : public tbVisualTrait
{
    TB_CLASS(tbFaceCull, tbVisualTrait)

public:
    enum FACE : std::int32_t
    {
        CULL_NONE = 0,
        CULL_BACK = 1,
        CULL_FRONT = 2,
        CULL_BOTH = 3
    };

    /// Leaves nothing out.
    tbFaceCull();
    tbFaceCull(const tbFaceCull& other);
    tbFaceCull& operator=(const tbFaceCull& other);

    /// False, and nothing changed, when the value is none of the enumeration.
    bool setFace(FACE value);
    FACE getFace() const { return face; }

    static void setApplyFunc(tbTraitApplyFunc func);

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    bool isEqual(tbTrait* other) const override;
    using tbVisualTrait::apply;
    void apply(tbCamera* camera) const override;

protected:
    tbFaceCull(const tbFaceCull& other, Disposable disposable);
    ~tbFaceCull() override;

private:
    FACE face = CULL_NONE;
};
