#include <tamber/render/tbStyle.h>

#include <tamber/trav/tbCull.h>
#include <tamber/trav/tbPrune.h>
#include <tamber/trav/tbSort.h>
#include <tests/support/RecordingTraits.h>

#include <gtest/gtest.h>

namespace
{

using Paint = tbtest::RecordingTrait<tbVisualTrait, 40>;
using Glow = tbtest::RecordingTrait<tbVisualTrait, 41>;
using Tone = tbtest::RecordingTrait<tbAudioTrait, 40>;

template <class Trait>
tbRef<Trait> named(const char* name)
{
    tbRef<Trait> trait(new Trait);
    trait->setName(name);
    return trait;
}

// Visits nodes and remembers what was in force at the last one.
class Visitor : public tbTraverser
{
public:
    Visitor()
    {
        setTravContext(new tbTravContext);
        getTravContext()->setTraitStack(new tbTraitStack(tbTraitStack::ALL_STACKS, false));
    }
    tbTraverser::TRAV_STATE apply(tbGroup* node) override
    {
        tbTraitStack* stack = getTravContext()->getTraitStack();
        paint = stack->getTop(Paint::type());
        tone = stack->getTop(Tone::type());
        cull = stack->getTop(tbCull::getClassType());
        ++visited;
        if (auto* found = dynamic_cast<tbStyle*>(node); found && strips)
            found->removeTrait(found->getVisualTrait(0));
        return node == stopAt ? TRAV_STOP : TRAV_CONTINUE;
    }

    const tbGroup* stopAt = nullptr;
    bool strips = false;
    const tbVisualTrait* paint = nullptr;
    const tbAudioTrait* tone = nullptr;
    const tbTravTrait* cull = nullptr;
    int visited = 0;
};

class Style : public testing::Test
{
protected:
    Style() { style->addChild(leaf.get()); }
    /// What is on top of the stack of a type when the walk is over.
    template <class Type>
    auto* topOf(const Type* type) const
    {
        return visitor->getTravContext()->getTraitStack()->getTop(type);
    }

    tbRef<tbStyle> style{new tbStyle};
    const tbRef<tbGroup> leaf{new tbGroup};
    const tbRef<Visitor> visitor{new Visitor};
};

} // namespace

TEST_F(Style, NewerTraitOfATypeTakesTheOldersPlace)
{
    const tbRef<Paint> older = named<Paint>("older");
    const tbRef<Glow> glow = named<Glow>("glow");
    const tbRef<Paint> newer = named<Paint>("newer");
    style->addTrait(older.get());
    style->addTrait(glow.get());
    style->addTrait(newer.get());
    ASSERT_EQ(style->getNumVisualTraits(), 2);
    EXPECT_EQ(style->getVisualTrait(0), newer.get());
    EXPECT_EQ(style->getVisualTrait(1), glow.get());
    EXPECT_EQ(older->getRefCount(), 1);
    EXPECT_EQ(newer->getRefCount(), 2);

    style->addTrait(glow.get());
    EXPECT_EQ(style->getNumVisualTraits(), 2);
    EXPECT_EQ(glow->getRefCount(), 2);
    style->addTrait(static_cast<tbVisualTrait*>(nullptr));
    EXPECT_EQ(style->getNumVisualTraits(), 2);
}

TEST_F(Style, RemovalMovesTheLastTraitAndIgnoresStrangers)
{
    tbRef<tbCull> cull = new tbCull;
    tbRef<tbSort> sort = new tbSort;
    tbRef<tbPrune> prune = new tbPrune;
    tbRef<tbCull> stranger = new tbCull;
    style->addTrait(cull.get());
    style->addTrait(sort.get());
    style->addTrait(prune.get());
    style->removeTrait(stranger.get());
    EXPECT_EQ(style->getNumTravTraits(), 3);
    style->removeTrait(cull.get());
    ASSERT_EQ(style->getNumTravTraits(), 2);
    EXPECT_EQ(style->getTravTrait(0), prune.get());
    EXPECT_EQ(cull->getRefCount(), 1);
    style = nullptr;
    EXPECT_EQ(sort->getRefCount(), 1);
}

TEST_F(Style, CopyDuplicatesTraitsAndCloneSharesTheShareable)
{
    const tbRef<Paint> shared = named<Paint>("shared");
    const tbRef<Glow> own = named<Glow>("own");
    own->enableShareable(false);
    style->addTrait(shared.get());
    style->addTrait(own.get());
    style->addTrait(new Tone);

    tbRef<tbGroup> clone = style->makeClone();
    const auto* cloned = static_cast<tbStyle*>(clone.get());
    EXPECT_EQ(cloned->getVisualTrait(0), shared.get());
    EXPECT_NE(cloned->getVisualTrait(1), own.get());
    EXPECT_STREQ(cloned->getVisualTrait(1)->getName(), "own");
    EXPECT_EQ(cloned->getAudioTrait(0), style->getAudioTrait(0));

    tbRef<tbGroup> copy = style->makeCopy();
    const auto* copied = static_cast<tbStyle*>(copy.get());
    ASSERT_EQ(copied->getNumVisualTraits(), 2);
    EXPECT_NE(copied->getVisualTrait(0), shared.get());
    EXPECT_EQ(copied->getVisualTrait(0)->getRefCount(), 1);
}

TEST_F(Style, TraitsAreInForceBelowAndGoneAfterwards)
{
    tbRef<tbStyle> lower = new tbStyle;
    auto* red = new Paint;
    auto* blue = new Paint;
    style->addTrait(red);
    style->addTrait(new Tone);
    style->addTrait(new tbCull);
    lower->addTrait(blue);
    style->addChild(lower.get());
    lower->addChild(leaf.get());
    tbtest::TraitLog::get().clear();
    visitor->traverse(style.get());
    EXPECT_EQ(visitor->paint, blue);
    EXPECT_EQ(visitor->tone, style->getAudioTrait(0));
    EXPECT_EQ(visitor->cull, style->getTravTrait(0));
    EXPECT_EQ(tbtest::TraitLog::get().onContext, (std::vector<const tbTrait*>{red, blue, red}));
    EXPECT_EQ(topOf(Paint::type()), nullptr);
    EXPECT_EQ(topOf(tbCull::getClassType()), nullptr);
}

TEST_F(Style, StoppedWalkLeavesItsTraitsPushed)
{
    auto* paint = new Paint;
    style->addTrait(paint);
    visitor->stopAt = leaf.get();
    visitor->traverse(style.get());
    EXPECT_EQ(topOf(Paint::type()), paint);
}

TEST_F(Style, TraitsThatTheTraverserTakesAwayArePoppedAllTheSame)
{
    style->addTrait(new Paint);
    visitor->strips = true;
    visitor->traverse(style.get());
    EXPECT_EQ(style->getNumVisualTraits(), 0);
    EXPECT_EQ(topOf(Paint::type()), nullptr);
}

TEST_F(Style, PrunedTraversalSkipsTheNodeButPopsWhatItPushed)
{
    auto* prune = new tbPrune;
    prune->enable(true);
    style->addTrait(prune);
    visitor->traverse(style.get());
    EXPECT_EQ(visitor->visited, 0);
    EXPECT_EQ(topOf(tbPrune::getClassType()), nullptr);
}

TEST_F(Style, ContextWithoutTraitStackStillWalks)
{
    style->addTrait(new tbCull);
    tbRef<tbTraverser> plain = new tbTraverser;
    plain->setTravContext(new tbTravContext);
    plain->setGroupBreakPoint(leaf.get());
    plain->traverse(style.get());
    EXPECT_EQ(plain->getTravContext()->getGroup(), leaf.get());
}
