#pragma once

#include <tamber/graph/tbGroup.h>

class tbAudioTrait;
class tbTravTrait;
class tbVisualTrait;

// A group that hands traits down to its subtree: they are pushed on the context's trait stack around the children.
// A style holds at most one trait of each trait type, and a reference on each.
class TB_API tbStyle : public tbGroup
{
    TB_CLASS(tbStyle, tbGroup)

public:
    tbStyle();
    /// Copies the traits, each as a copy of its own, and no children.
    tbStyle(const tbStyle& other);
    /// The traits become copies of the other style's; children stay.
    tbStyle& operator=(const tbStyle& other);

    /// Takes over a trait; one of the same type gives way and `trait` takes its place in the list. Null is ignored.
    /// The node is not marked for an update.
    virtual void addTrait(tbTravTrait* trait);
    virtual void addTrait(tbAudioTrait* trait);
    virtual void addTrait(tbVisualTrait* trait);
    /// Releases a trait; the last one of its list moves into its place. A stranger is ignored.
    virtual void removeTrait(tbTravTrait* trait);
    virtual void removeTrait(tbAudioTrait* trait);
    virtual void removeTrait(tbVisualTrait* trait);

    /// Traits in the order in which they are pushed. Indices are not checked.
    int getNumVisualTraits() const { return visualTraits.getNum(); }
    tbVisualTrait* getVisualTrait(int i) const { return visualTraits[i]; }
    int getNumAudioTraits() const { return audioTraits.getNum(); }
    tbAudioTrait* getAudioTrait(int i) const { return audioTraits[i]; }
    int getNumTravTraits() const { return travTraits.getNum(); }
    tbTravTrait* getTravTrait(int i) const { return travTraits[i]; }

    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    void update(tbTravContext* context) override;
    tbTraverser::TRAV_STATE apply(tbTraverser* traverser, bool noPreApply) override;
    void apply(tbCollider* collider) const override;
    void apply(tbListener* listener) const override;
    void apply(tbCamera* camera) const override;

protected:
    ~tbStyle() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    /// Takes traits and children of `other`; both are copies.
    void copy(const tbStyle& other);
    /// As copy(), but shareable traits are shared and children are clones.
    void clone(const tbStyle& other);

private:
    void assign(const tbStyle& other, bool share);
    void unRefAllTraits();

    tbTList<tbVisualTrait*> visualTraits;
    tbTList<tbTravTrait*> travTraits;
    tbTList<tbAudioTrait*> audioTraits;
};
