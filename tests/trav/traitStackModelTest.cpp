// The trait stack against a small model, over random walks: nested styles, geometry with traits of its own, walks
// that end early.
#include <tamber/trav/tbTraitStack.h>

#include <tests/support/RecordingTraits.h>

#include <array>
#include <random>

#include <gtest/gtest.h>

using tbtest::RecordingTrait;
using tbtest::TraitLog;

namespace
{
constexpr tbTrait::MODE MODES[] = {tbTrait::OFF, tbTrait::ON, tbTrait::ON, tbTrait::OVERRIDE, tbTrait::FORCE};

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

    Palette()
    {
        for (int i = 0; i < 5; ++i)
            traits[std::size_t(i)] = new Trait(MODES[i]);
    }
    Trait* pick(std::mt19937& random) { return traits[random() % 5].get(); }

    std::array<tbRef<Trait>, 5> traits;
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
        stack = new tbTraitStack(tbTraitStack::VISUAL_STACK, true);
        log.stack = stack.get();
        defaults = tbtest::visualDefaultsOf(*stack);
        stack->applyAllDefaultVisualTraits(nullptr);
        device = defaults;
        log.clear();
    }
    ~VisualWalk()
    {
        log.stack = nullptr;
        log.clear();
    }

    void push(tbVisualTrait* trait)
    {
        stack->pushTrait(trait, context.get());
        styles.push_back(trait);
    }
    void pop()
    {
        stack->popTrait(static_cast<tbVisualTrait*>(const_cast<tbTrait*>(styles.back())), context.get());
        styles.pop_back();
    }
    void startWalk()
    {
        styles.clear();
        stack->reset(true);
    }
    void draw(std::vector<const tbVisualTrait*> own)
    {
        log.onDevice.clear();
        stack->applyVisualTraitStacks(nullptr);
        stack->applyTraits(nullptr, int(own.size()), own.data());
        for (const tbTrait* trait : log.onDevice)
        {
            const tbTrait*& current = slotOf(device, trait->getType());
            EXPECT_NE(current, trait) << "set again";
            current = trait;
        }
        std::vector<const tbTrait*> expected;
        for (const tbTrait* trait : defaults)
        {
            const tbTrait* effective = inEffect(styles, trait->getType());
            expected.push_back(effective ? effective : trait);
        }
        for (const tbVisualTrait* trait : own)
            slotOf(expected, trait->getType()) = trait;
        EXPECT_EQ(device, expected);
    }
    std::size_t depth() const { return styles.size(); }

private:
    static const tbTrait*& slotOf(std::vector<const tbTrait*>& traits, const tbType* type)
    {
        std::size_t i = 0;
        while (traits[i]->getType() != type)
            ++i;
        return traits[i];
    }

    TraitLog& log = TraitLog::get();
    tbRef<tbTravContext> context{new tbTravContext};
    tbRef<tbTraitStack> stack;
    std::vector<const tbTrait*> styles;
    std::vector<const tbTrait*> defaults;
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
            walk.startWalk();
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
