// The trait stack against a small model, over random walks: nested styles, geometry with traits of its own, walks
// that end early.
#include <tamber/trav/tbTraitStack.h>

#include <tests/support/RecordingTraits.h>

#include <random>

#include <gtest/gtest.h>

using tbtest::RecordingTrait;
using tbtest::TraitLog;

namespace
{
// The rule for what is in effect below nested styles, outermost first; null for the default.
const tbTrait* inEffect(const std::vector<const tbTrait*>& styles, const tbType* type)
{
    const tbTrait* effective = nullptr;
    for (const tbTrait* trait : styles)
    {
        if (trait->getType() != type || trait->getApplyMode() == tbTrait::OFF)
            continue;
        if (!effective || effective->getApplyMode() != tbTrait::OVERRIDE || trait == effective ||
            trait->getApplyMode() == tbTrait::FORCE)
            effective = trait;
    }
    return effective;
}

// Five traits of one type, one for each way to be pushed.
template <class Family, int Number>
struct Palette
{
    using Trait = RecordingTrait<Family, Number>;

    Trait* pick(std::mt19937& random) { return traits[random() % 5].get(); }

    const tbRef<Trait> traits[5] = {new Trait(tbTrait::OFF), new Trait(tbTrait::ON), new Trait(tbTrait::ON),
                                    new Trait(tbTrait::OVERRIDE), new Trait(tbTrait::FORCE)};
};

TEST(TraitStackModel, TraversalTraitsInEffectAreOnTheContext)
{
    Palette<tbTravTrait, 10> palette;
    const tbTravTraitType* type = decltype(palette)::Trait::type();
    tbRef<tbTravContext> context(new tbTravContext);
    tbRef<tbTraitStack> stack(new tbTraitStack(tbTraitStack::TRAV_STACK, true));
    std::vector<const tbTrait*> styles;
    std::mt19937 random(1);
    TraitLog& log = TraitLog::get();
    log.clear();
    for (int step = 0; step < 20'000; ++step)
    {
        if (random() % 5 < (styles.size() < 8 ? 3u : 1u))
        {
            auto* trait = palette.pick(random);
            stack->pushTrait(trait, context.get());
            styles.push_back(trait);
        }
        else if (!styles.empty())
        {
            stack->popTrait(static_cast<tbTravTrait*>(const_cast<tbTrait*>(styles.back())), context.get());
            styles.pop_back();
        }
        const tbTrait* expected = inEffect(styles, type);
        if (expected)
            ASSERT_EQ(stack->getTop(type), expected) << "step " << step;
        else
            expected = stack->getTop(type); // the default, once something was pushed
        ASSERT_EQ(log.onContext.empty() ? nullptr : log.onContext.back(), expected) << "step " << step;
    }
    log.clear();
}

// A camera's device: the trait that each of four types has there. Nothing reaches it that it has already.
class VisualWalk
{
public:
    VisualWalk()
    {
        log.clear();
        log.stack = stack.get();
        device.resize(defaults.size());
        startWalk(true);
    }
    ~VisualWalk()
    {
        log.stack = nullptr;
        log.clear();
    }

    void push(tbVisualTrait* trait)
    {
        const int id = stack->getVisualStackID();
        stack->pushTrait(trait, context.get());
        styles.push_back(trait);
        expectOnContext(trait->getType(), stack->getVisualStackID() != id);
    }
    void pop()
    {
        const int id = stack->getVisualStackID();
        auto* trait = static_cast<tbVisualTrait*>(const_cast<tbTrait*>(styles.back()));
        stack->popTrait(trait, context.get());
        styles.pop_back();
        expectOnContext(trait->getType(), stack->getVisualStackID() != id);
    }
    void startWalk(bool setAll)
    {
        styles.clear();
        stack->reset(true);
        if (setAll)
        {
            std::fill(device.begin(), device.end(), nullptr);
            stack->applyAllDefaultVisualTraits(nullptr);
        }
        else
            stack->applyDefaultVisualTraits(nullptr);
        expectOnDevice(defaults);
    }
    void draw(std::vector<const tbVisualTrait*> own)
    {
        stack->applyVisualTraitStacks(nullptr);
        stack->applyTraits(nullptr, int(own.size()), own.data());
        std::vector<const tbTrait*> expected = allInEffect();
        for (const tbVisualTrait* trait : own)
            slotOf(expected, trait->getType()) = trait;
        expectOnDevice(expected);
    }
    std::size_t depth() const { return styles.size(); }

private:
    std::vector<const tbTrait*> allInEffect() const
    {
        std::vector<const tbTrait*> traits = defaults;
        for (const tbTrait*& trait : traits)
            if (const tbTrait* effective = inEffect(styles, trait->getType()))
                trait = effective;
        return traits;
    }
    // The context is told at once, the camera when something is drawn.
    void expectOnContext(const tbType* type, bool changed)
    {
        std::vector<const tbTrait*> expected = allInEffect();
        EXPECT_EQ(log.onContext,
                  changed ? std::vector{slotOf(expected, type)} : std::vector<const tbTrait*>{});
        log.clear();
    }
    void expectOnDevice(const std::vector<const tbTrait*>& expected)
    {
        for (const tbTrait* trait : log.onDevice)
        {
            const tbTrait*& current = slotOf(device, trait->getType());
            EXPECT_NE(current, trait) << "set again";
            current = trait;
        }
        log.clear();
        EXPECT_EQ(device, expected);
    }
    const tbTrait*& slotOf(std::vector<const tbTrait*>& traits, const tbType* type) const
    {
        std::size_t i = 0;
        while (defaults[i]->getType() != type)
            ++i;
        return traits[i];
    }

    TraitLog& log = TraitLog::get();
    tbRef<tbTravContext> context{new tbTravContext};
    tbRef<tbTraitStack> stack{new tbTraitStack(tbTraitStack::VISUAL_STACK, true)};
    std::vector<const tbTrait*> styles;
    std::vector<const tbTrait*> defaults = tbtest::visualDefaultsOf(*stack);
    std::vector<const tbTrait*> device;
};

// Styles use two types, geometry two others.
TEST(TraitStackModel, TheCameraHasWhatIsInEffectAndNothingIsSetTwice)
{
    Palette<tbVisualTrait, 10> styleA;
    Palette<tbVisualTrait, 11> styleB;
    Palette<tbVisualTrait, 12> ownA;
    Palette<tbVisualTrait, 13> ownB;
    VisualWalk walk;
    std::mt19937 random(2);
    for (int step = 0; step < 20'000 && !testing::Test::HasFailure(); ++step)
    {
        const auto action = random() % 20;
        if (action == 0)
            walk.startWalk(random() % 4 == 0);
        else if (action < 6 && walk.depth() < 8)
        {
            tbVisualTrait* const picked[] = {styleA.pick(random), styleB.pick(random)};
            walk.push(picked[random() % 2]);
        }
        else if (action < 12 && walk.depth() > 0)
            walk.pop();
        else
        {
            std::vector<const tbVisualTrait*> own;
            if (random() % 2 == 0)
                own.push_back(ownA.pick(random));
            if (random() % 3 == 0)
                own.push_back(ownB.pick(random));
            walk.draw(own);
        }
    }
}
} // namespace
