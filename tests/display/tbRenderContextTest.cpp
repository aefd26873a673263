#include <tamber/display/tbRenderContext.h>

#include <tamber/io/tbFile.h>

#include <plugins/null/tbNullCamera.h>
#include <plugins/null/tbNullRenderContext.h>
#include <plugins/null/tbNullWindow.h>

#include <gtest/gtest.h>

#include <tests/support/Near.h>
#include <tests/support/RecordingTraits.h>

namespace
{

using tbtest::near;

// Counts the contexts that it was set up for, and may drop another object meanwhile.
class RenderContextTestObject : public tbBase
{
    TB_CLASS(RenderContextTestObject, tbBase)

public:
    RenderContextTestObject() { initInstance(); }
    void initRenderContext(tbRenderContext*) const override
    {
        ++numSetUp;
        if (victim)
            victim->unRef();
        victim = nullptr;
    }

    mutable int numSetUp = 0;
    mutable tbBase* victim = nullptr;

protected:
    ~RenderContextTestObject() override { deleteInstance(); }
};
TB_DEFINE_CLASS(RenderContextTestObject, tbBase)

} // namespace

TEST(RenderContext, ProjectionsMapTheirBoundsToTheClipCube)
{
    tbRef<tbNullWindow> window = new tbNullWindow;
    tbNullRenderContext context(window.get());
    tbMatrix m;
    context.makePerspProjMatrix(m, -1, 1, -1, 1, 1, 1000);
    const float persp[] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1001.0f / 999.0f, -1, 0, 0, -2000.0f / 999.0f, 0};
    EXPECT_TRUE(near(m, tbMatrix(persp, 0), 1e-6f));
    EXPECT_NE(m.getType() & tbMatrix::MATRIX_PROJ, 0u);
    context.makeOrthoProjMatrix(m, 0, 2, 0, 2, -1, 1);
    const float ortho[] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, -1, -1, 0, 1};
    EXPECT_TRUE(near(m, tbMatrix(ortho, 0), 1e-6f));
}

TEST(RenderContext, DefaultsAreAppliedOncePerFrame)
{
    using Shade = tbtest::RecordingTrait<tbVisualTrait, 0>;
    Shade::type();
    tbtest::TraitLog& log = tbtest::TraitLog::get();
    tbRef<tbNullWindow> window = new tbNullWindow;
    window->open();
    tbRef<tbNullCamera> camera = new tbNullCamera;
    camera->setWindow(window.get());
    tbRenderContext* context = window->getRenderContext();
    context->getTraitStack()->reset(true);
    for (const std::size_t frames : {1u, 2u})
    {
        context->clear(camera.get());
        EXPECT_EQ(log.onDevice.size(), frames);
        context->clear(camera.get());
        EXPECT_EQ(log.onDevice.size(), frames);
        EXPECT_EQ(camera->getAppliedVisualTrait(Shade::type()), log.onDevice.back());
        context->close();
    }
}

TEST(RenderContext, LiveContextsAreListedInTheOrderOfTheirMaking)
{
    const int before = tbRenderContext::getNumRenderContexts();
    tbRenderContext* first = tbRenderContext::createRenderContext(nullptr); // by the plug-in
    EXPECT_NE(dynamic_cast<tbNullRenderContext*>(first), nullptr);
    auto* second = new tbNullRenderContext(nullptr);
    auto* third = new tbNullRenderContext(nullptr);
    EXPECT_EQ(tbRenderContext::getRenderContext(before), first);
    delete first;
    EXPECT_EQ(tbRenderContext::getRenderContext(before), second);
    EXPECT_EQ(tbRenderContext::getRenderContext(before + 1), third);
    delete second;
    delete third;
    EXPECT_EQ(tbRenderContext::getNumRenderContexts(), before);
    EXPECT_EQ(tbRenderContext::getRenderContext(before), nullptr);
    const tbRenderContext::CreateFunc factory = tbRenderContext::getCreateFunc();
    tbRenderContext::setCreateFunc(nullptr);
    EXPECT_EQ(tbRenderContext::createRenderContext(nullptr), nullptr);
    tbRenderContext::setCreateFunc(factory);
}

TEST(RenderContext, EveryLiveObjectIsSetUpAndKeepsItsCount)
{
    tbRef<RenderContextTestObject> held = new RenderContextTestObject;
    auto* unheld = new RenderContextTestObject;
    tbNullRenderContext context(nullptr);
    context.initClassInstances();
    EXPECT_TRUE(held->numSetUp == 1 && unheld->numSetUp == 1);
    EXPECT_TRUE(held->getRefCount() == 1 && unheld->getRefCount() == 0);

    tbRenderContext::enableAutoInit(false);
    context.initClassInstances();
    tbRenderContext::enableAutoInit(true);
    EXPECT_EQ(held->numSetUp, 1);
    unheld->unRef();
}

TEST(RenderContext, ObjectsMayGoWhileTheyAreSetUp)
{
    const int before = RenderContextTestObject::getNum(false);
    const tbRef<RenderContextTestObject> first = new RenderContextTestObject;
    const tbRef<RenderContextTestObject> second = new RenderContextTestObject;
    first->victim = new RenderContextTestObject;
    first->victim->ref();
    second->victim = new RenderContextTestObject; // held by nobody
    tbNullRenderContext context(nullptr);
    context.initClassInstances();
    EXPECT_EQ(RenderContextTestObject::getNum(false), before + 2);
}

TEST(RenderContext, TraitStackIsReplacedAndCounted)
{
    tbNullRenderContext context(nullptr);
    tbRef<tbTraitStack> own = context.getTraitStack();
    EXPECT_EQ(own->getStackTypes() & 0xFu, 0xDu);
    tbRef<tbTraitStack> other = new tbTraitStack(tbTraitStack::VISUAL_STACK, false);
    context.setTraitStack(other.get());
    EXPECT_EQ(own->getRefCount(), 1);
    EXPECT_EQ(other->getRefCount(), 2);
    context.setTraitStack(other.get());
    EXPECT_EQ(other->getRefCount(), 2);
}

TEST(Window, EnabledFlagIsItsRecord)
{
    tbRef<tbNullWindow> window = new tbNullWindow, read = new tbNullWindow;
    EXPECT_TRUE(window->isEnabled());
    window->enable(false);
    tbFile file;
    ASSERT_TRUE(file.create("window.tb") && window->write(&file, nullptr) && file.write());
    file.close();
    ASSERT_TRUE(file.open("window.tb", "r") && read->read(&file, nullptr));
    EXPECT_FALSE(read->isEnabled());
}
