#include <tamber/render/tbStyle.h>

#include <tamber/audio/tbListener.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/display/tbCamera.h>
#include <tamber/graph/tbiLocalStack.h>
#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbTraverser.h>
#include <tamber/trav/tbVisualTrait.h>
#include <tamber/trav/tbiTraitList.h>

TB_DEFINE_NODE_CLASS(tbStyle, tbGroup)

namespace
{

// Removing the older trait of the type moves the new one, appended last, into its place.
template <class Trait>
void replaceTrait(tbStyle* style, tbTList<Trait*>& traits, Trait* trait)
{
    if (!tbiHoldTrait(traits, trait))
        return;
    for (int i = traits.getNum() - 2; i >= 0; --i)
        if (traits[i]->getType() == trait->getType())
        {
            style->removeTrait(traits[i]);
            return;
        }
}

template <class Trait>
void addCopies(tbStyle* style, const tbTList<Trait*>& traits, bool share)
{
    for (Trait* trait : traits)
    {
        const tbRef<Trait> added(share && trait->isShareable() ? trait
                                                               : static_cast<Trait*>(trait->createCopy()));
        style->addTrait(added.get());
    }
}

// A style's traits on the stack while code of the application runs, which may take them from the style: those that were
// pushed are popped, and live until then. Of a walk that was stopped they stay pushed.
template <class Trait>
class PushedTraits
{
public:
    PushedTraits(const tbTList<Trait*>& traits, tbTravContext* walk) : context(walk)
    {
        tbTraitStack* stack = context->getTraitStack();
        for (int i = 0; stack && i < traits.getNum() && held.push(traits[i]); ++i)
        {
            held.top()->ref();
            stack->pushTrait(held.top(), context);
        }
    }
    ~PushedTraits()
    {
        tbTraitStack* stack = context ? context->getTraitStack() : nullptr;
        while (!held.isEmpty())
        {
            Trait* trait = held.pop();
            if (stack)
                stack->popTrait(trait, context);
            trait->unRef();
        }
    }
    PushedTraits(const PushedTraits&) = delete;
    PushedTraits& operator=(const PushedTraits&) = delete;

    void leave() { context = nullptr; }

private:
    tbTravContext* context;
    tbiLocalStack<Trait*, 4> held;
};

template <class Trait>
void writeTraits(const tbTList<Trait*>& traits, tbFile* file, tbEntry* entry)
{
    for (const Trait* trait : traits)
        trait->writeRef(file, entry);
}

} // namespace

tbStyle::tbStyle()
{
    initInstance();
}

tbStyle::tbStyle(const tbStyle& other) : tbGroup(other)
{
    initInstance();
    assign(other, false);
}

tbStyle& tbStyle::operator=(const tbStyle& other)
{
    if (this != &other)
    {
        tbGroup::operator=(other);
        assign(other, false);
    }
    return *this;
}

tbStyle::~tbStyle()
{
    deleteInstance();
    unRefAllTraits();
}

void tbStyle::addTrait(tbTravTrait* trait)
{
    replaceTrait(this, travTraits, trait);
}

void tbStyle::addTrait(tbAudioTrait* trait)
{
    replaceTrait(this, audioTraits, trait);
}

void tbStyle::addTrait(tbVisualTrait* trait)
{
    replaceTrait(this, visualTraits, trait);
}

void tbStyle::removeTrait(tbTravTrait* trait)
{
    tbiDropTrait(travTraits, trait);
}

void tbStyle::removeTrait(tbAudioTrait* trait)
{
    tbiDropTrait(audioTraits, trait);
}

void tbStyle::removeTrait(tbVisualTrait* trait)
{
    tbiDropTrait(visualTraits, trait);
}

void tbStyle::unRefAllTraits()
{
    tbiDropTraits(visualTraits);
    tbiDropTraits(travTraits);
    tbiDropTraits(audioTraits);
}

void tbStyle::assign(const tbStyle& other, bool share)
{
    unRefAllTraits();
    addCopies(this, other.visualTraits, share);
    addCopies(this, other.audioTraits, share);
    addCopies(this, other.travTraits, share);
}

tbBase* tbStyle::createCopy() const
{
    return tbiCopyOf(*this);
}

void tbStyle::copy(const tbStyle& other)
{
    if (this == &other)
        return;
    assign(other, false);
    tbGroup::copy(other);
}

void tbStyle::clone(const tbStyle& other)
{
    if (this == &other)
        return;
    assign(other, true);
    tbGroup::clone(other);
}

tbGroup* tbStyle::copyGroup() const
{
    tbStyle* made = new tbStyle;
    if (!made)
        return nullptr;
    addGroupMapping(this, made);
    made->copy(*this);
    return made;
}

tbGroup* tbStyle::cloneGroup() const
{
    tbStyle* made = new tbStyle;
    if (!made)
        return nullptr;
    addGroupMapping(this, made);
    made->clone(*this);
    return made;
}

void tbStyle::update(tbTravContext* context)
{
    const PushedTraits pushed(travTraits, context);
    tbGroup::update(context);
}

// While the context is pruned neither the other traits nor the children are visited; the traversal traits are
// pushed all the same, because one of them may be what prunes.
void tbStyle::apply(tbCamera* camera) const
{
    tbTravContext* context = camera->getTravContext();
    tbiPushTraits(travTraits, context);
    if (!context->anyFlags(tbTravContext::PRUNE))
    {
        tbiPushTraits(visualTraits, context);
        tbGroup::apply(camera);
        tbiPopTraits(visualTraits, context);
    }
    tbiPopTraits(travTraits, context);
}

void tbStyle::apply(tbListener* listener) const
{
    tbTravContext* context = listener->getTravContext();
    tbiPushTraits(travTraits, context);
    if (!context->anyFlags(tbTravContext::PRUNE))
    {
        tbiPushTraits(audioTraits, context);
        tbGroup::apply(listener);
        tbiPopTraits(audioTraits, context);
    }
    tbiPopTraits(travTraits, context);
}

void tbStyle::apply(tbCollider* collider) const
{
    tbTravContext* context = collider->getTravContext();
    tbiPushTraits(travTraits, context);
    if ((context->getColliderMask() & collider->getColliderMask()) != 0 &&
        !context->anyFlags(tbTravContext::PRUNE))
        tbGroup::apply(collider);
    tbiPopTraits(travTraits, context);
}

// A stopped walk leaves everything pushed, as the group leaves its path.
tbTraverser::TRAV_STATE tbStyle::apply(tbTraverser* traverser, bool noPreApply)
{
    if (!noPreApply)
    {
        const tbTraverser::TRAV_STATE state = traverser->preApply(this);
        if (state != tbTraverser::TRAV_CONTINUE)
            return state;
    }
    tbTravContext* context = traverser->getTravContext();
    PushedTraits traversal(travTraits, context);
    if (context->getTraitStack() && context->anyFlags(tbTravContext::PRUNE))
        return tbTraverser::TRAV_CONTINUE;
    PushedTraits visual(visualTraits, context);
    PushedTraits audio(audioTraits, context);
    if (tbGroup::apply(traverser, true) != tbTraverser::TRAV_STOP)
        return tbTraverser::TRAV_CONTINUE;
    audio.leave();
    visual.leave();
    traversal.leave();
    return tbTraverser::TRAV_STOP;
}

tbEntry* tbStyle::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbGroup::write(file, entry);
    tbEntry* target = entry ? entry : created;
    if (!target)
        return nullptr;
    target->writeInt(travTraits.getNum() + audioTraits.getNum() + visualTraits.getNum());
    writeTraits(visualTraits, file, target);
    writeTraits(audioTraits, file, target);
    writeTraits(travTraits, file, target);
    return created;
}

tbEntry* tbStyle::read(tbFile* file, tbEntry* entry)
{
    entry = tbGroup::read(file, entry);
    if (!entry)
        return nullptr;
    const int n = entry->readCount(4);
    for (int i = 0; i < n && !entry->hasFailed(); ++i)
    {
        tbBase* object = tbBase::readRef(file, entry);
        if (!object)
            continue;
        if (object->isOfType(tbVisualTrait::getClassType()))
            addTrait(static_cast<tbVisualTrait*>(object));
        else if (object->isOfType(tbAudioTrait::getClassType()))
            addTrait(static_cast<tbAudioTrait*>(object));
        else if (object->isOfType(tbTravTrait::getClassType()))
            addTrait(static_cast<tbTravTrait*>(object));
        else
            entry->passOver("a trait of a style that is none");
    }
    return entry->hasFailed() ? nullptr : entry;
}
