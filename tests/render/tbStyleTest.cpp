#include <tamber/render/tbStyle.h>

#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbCull.h>
#include <tamber/trav/tbPrune.h>
#include <tamber/trav/tbSort.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbVisualTrait.h>

#include <gtest/gtest.h>

#include <string>

namespace
{

std::string appliedTraits; // names, in the order in which the walk applied them

// Two visual traits and an audio trait that do nothing but say that they were applied.
class StyleTestPaint : public tbVisualTrait
{
    TB_CLASS(StyleTestPaint, tbVisualTrait)

public:
    StyleTestPaint() { initInstance(); }
    explicit StyleTestPaint(const char* text) : StyleTestPaint() { setName(text); }
    StyleTestPaint(const StyleTestPaint& other) : tbVisualTrait(other) { initInstance(); }
    tbBase* createCopy() const override { return new StyleTestPaint(*this); }
    bool isEqual(tbTrait* other) const override { return isSameKind(other); }
    void apply(tbTravContext*) const override { appliedTraits += getName() ? getName() : "default paint"; }
    void apply(tbCamera*) const override {}

protected:
    ~StyleTestPaint() override { deleteInstance(); }
};
TB_DEFINE_VISUAL_TRAIT_CLASS(StyleTestPaint, tbVisualTrait)

class StyleTestGlow : public tbVisualTrait
{
    TB_CLASS(StyleTestGlow, tbVisualTrait)

public:
    StyleTestGlow() { initInstance(); }
    explicit StyleTestGlow(const char* text) : StyleTestGlow() { setName(text); }
    StyleTestGlow(const StyleTestGlow& other) : tbVisualTrait(other) { initInstance(); }
    tbBase* createCopy() const override { return new StyleTestGlow(*this); }
    bool isEqual(tbTrait* other) const override { return isSameKind(other); }
    void apply(tbTravContext*) const override { appliedTraits += getName() ? getName() : "default glow"; }
    void apply(tbCamera*) const override {}

protected:
    ~StyleTestGlow() override { deleteInstance(); }
};
TB_DEFINE_VISUAL_TRAIT_CLASS(StyleTestGlow, tbVisualTrait)

class StyleTestTone : public tbAudioTrait
{
    TB_CLASS(StyleTestTone, tbAudioTrait)

public:
    StyleTestTone() { initInstance(); }
    StyleTestTone(const StyleTestTone& other) : tbAudioTrait(other) { initInstance(); }
    tbBase* createCopy() const override { return new StyleTestTone(*this); }
    bool isEqual(tbTrait* other) const override { return isSameKind(other); }
    void apply(tbListener*) const override {}

protected:
    ~StyleTestTone() override { deleteInstance(); }
};
TB_DEFINE_AUDIO_TRAIT_CLASS(StyleTestTone, tbAudioTrait)

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
        paint = stack->getTop(StyleTestPaint::getClassType());
        tone = stack->getTop(StyleTestTone::getClassType());
        cull = stack->getTop(tbCull::getClassType());
        ++visited;
        return node == stopAt ? TRAV_STOP : TRAV_CONTINUE;
    }

    const tbGroup* stopAt = nullptr;
    const tbVisualTrait* paint = nullptr;
    const tbAudioTrait* tone = nullptr;
    const tbTravTrait* cull = nullptr;
    int visited = 0;
};

void registerTraits()
{
    StyleTestPaint::getClassType();
    StyleTestGlow::getClassType();
    StyleTestTone::getClassType();
}

} // namespace

TEST(Style, NewerTraitOfATypeTakesTheOldersPlace)
{
    tbRef<tbStyle> style = new tbStyle;
    tbRef<StyleTestPaint> older = new StyleTestPaint("older");
    tbRef<StyleTestGlow> glow = new StyleTestGlow("glow");
    tbRef<StyleTestPaint> newer = new StyleTestPaint("newer");
    style->addTrait(older.get());
    style->addTrait(glow.get());
    style->addTrait(newer.get());
    ASSERT_EQ(style->getNumVisualTraits(), 2);
    EXPECT_EQ(style->getVisualTrait(0), newer.get());
    EXPECT_EQ(style->getVisualTrait(1), glow.get());
    EXPECT_EQ(older->getRefCount(), 1);
    EXPECT_EQ(newer->getRefCount(), 2);

    style->addTrait(newer.get());
    EXPECT_EQ(style->getNumVisualTraits(), 2);
    EXPECT_EQ(newer->getRefCount(), 2);
    style->addTrait(static_cast<tbVisualTrait*>(nullptr));
    EXPECT_EQ(style->getNumVisualTraits(), 2);
}

TEST(Style, RemovalMovesTheLastTraitAndIgnoresStrangers)
{
    tbRef<tbStyle> style = new tbStyle;
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

TEST(Style, CopyDuplicatesTraitsAndCloneSharesTheShareable)
{
    tbRef<tbStyle> style = new tbStyle;
    tbRef<StyleTestPaint> shared = new StyleTestPaint("shared");
    tbRef<StyleTestGlow> own = new StyleTestGlow("own");
    own->enableShareable(false);
    style->addTrait(shared.get());
    style->addTrait(own.get());
    style->addTrait(new StyleTestTone);

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

TEST(Style, TraitsAreInForceBelowAndGoneAfterwards)
{
    registerTraits();
    tbRef<tbStyle> upper = new tbStyle;
    tbRef<tbStyle> lower = new tbStyle;
    tbRef<tbGroup> leaf = new tbGroup;
    auto* red = new StyleTestPaint("red ");
    auto* blue = new StyleTestPaint("blue ");
    upper->addTrait(red);
    upper->addTrait(new StyleTestTone);
    upper->addTrait(new tbCull);
    lower->addTrait(blue);
    upper->addChild(lower.get());
    lower->addChild(leaf.get());
    tbRef<Visitor> visitor = new Visitor;
    appliedTraits.clear();
    visitor->traverse(upper.get());
    EXPECT_EQ(visitor->paint, blue);
    EXPECT_EQ(visitor->tone, upper->getAudioTrait(0));
    EXPECT_EQ(visitor->cull, upper->getTravTrait(0));
    EXPECT_EQ(appliedTraits, "red blue red ");
    tbTraitStack* stack = visitor->getTravContext()->getTraitStack();
    EXPECT_EQ(stack->getTop(StyleTestPaint::getClassType()), nullptr);
    EXPECT_EQ(stack->getTop(tbCull::getClassType()), nullptr);
}

TEST(Style, StoppedWalkLeavesItsTraitsPushed)
{
    registerTraits();
    tbRef<tbStyle> style = new tbStyle;
    tbRef<tbGroup> leaf = new tbGroup;
    auto* paint = new StyleTestPaint("paint");
    style->addTrait(paint);
    style->addChild(leaf.get());
    tbRef<Visitor> visitor = new Visitor;
    visitor->stopAt = leaf.get();
    visitor->traverse(style.get());
    EXPECT_EQ(visitor->getTravContext()->getTraitStack()->getTop(StyleTestPaint::getClassType()), paint);
}

TEST(Style, PrunedTraversalSkipsTheNodeButPopsWhatItPushed)
{
    tbRef<tbStyle> style = new tbStyle;
    tbRef<tbPrune> prune = new tbPrune;
    prune->enable(true);
    style->addTrait(prune.get());
    style->addChild(new tbGroup);
    tbRef<Visitor> visitor = new Visitor;
    visitor->traverse(style.get());
    EXPECT_EQ(visitor->visited, 0);
    EXPECT_EQ(visitor->getTravContext()->getTraitStack()->getTop(tbPrune::getClassType()), nullptr);
}

TEST(Style, ContextWithoutTraitStackStillWalks)
{
    tbRef<tbStyle> style = new tbStyle;
    style->addTrait(new tbCull);
    style->addChild(new tbGroup);
    tbRef<Visitor> visitor = new Visitor;
    visitor->setTravContext(new tbTravContext);
    tbRef<tbTraverser> plain = new tbTraverser;
    plain->setTravContext(new tbTravContext);
    plain->setGroupBreakPoint(style->getChild(0));
    plain->traverse(style.get());
    EXPECT_EQ(plain->getTravContext()->getGroup(), style->getChild(0));
}

TEST(StyleFile, TraitsComeBackInTheirFamiliesAndOrder)
{
    registerTraits();
    tbRef<tbStyle> style = new tbStyle;
    style->addTrait(new StyleTestGlow("glow"));
    style->addTrait(new StyleTestPaint("paint"));
    auto* cull = new tbCull;
    cull->setMask(0x400);
    style->addTrait(cull);
    style->addTrait(new StyleTestTone);
    {
        tbFile file;
        ASSERT_TRUE(file.create("style.tb"));
        ASSERT_NE(style->write(&file, nullptr), nullptr);
        ASSERT_TRUE(file.write());
    }
    tbFile file;
    ASSERT_TRUE(file.open("style.tb", "r"));
    tbRef<tbStyle> read = static_cast<tbStyle*>(file.readObject(0));
    file.close();
    ASSERT_TRUE(read);
    ASSERT_EQ(read->getNumVisualTraits(), 2);
    EXPECT_STREQ(read->getVisualTrait(0)->getName(), "glow");
    EXPECT_STREQ(read->getVisualTrait(1)->getName(), "paint");
    EXPECT_EQ(read->getNumAudioTraits(), 1);
    ASSERT_EQ(read->getNumTravTraits(), 1);
    EXPECT_EQ(static_cast<tbCull*>(read->getTravTrait(0))->getMask(), 0x400u);
    EXPECT_EQ(read->getTravTrait(0)->getRefCount(), 1);
}
