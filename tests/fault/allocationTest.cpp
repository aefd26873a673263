// Every allocation of an operation fails in turn. The operation then fails with its error or succeeds as a whole,
// nothing is left behind, and what comes after it works as if nothing had happened.

#include <plugins/null/tbNullCamera.h>
#include <plugins/null/tbNullWindow.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/io/tbFile.h>
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/thread/tbEvent.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/fault/HeapFaults.h>
#include <tests/fault/everyClass.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

#include <functional>
#include <thread>

using tbtest::HeapFaults;

// What is written need not outlast a power failure.
extern "C" [[gnu::visibility("default")]] int fsync(int)
{
    return 0;
}

namespace
{

/// One operation of the library, in steps that can be repeated.
struct Operation
{
    /// The only step in which allocations fail. True when all was done.
    std::function<bool()> run;
    /// What holds after run(), told whether it was done; lets go what was made.
    std::function<void(bool)> check;
    std::function<void()> prepare = [] {};

    void whole() const
    {
        prepare();
        const bool done = run();
        EXPECT_TRUE(done);
        check(done);
    }
};

class Allocation : public testing::Test
{
protected:
    Allocation() : before(tbSetMessageFunc([](const char*) {})) {}
    ~Allocation() override { tbSetMessageFunc(before); }

    /// Runs the operation until it needs no more allocations than are let through.
    static void sweep(const Operation& operation)
    {
        {
            const testing::ScopedTrace trace(__FILE__, __LINE__, "undisturbed");
            operation.whole();
            operation.whole();
        }
        try
        {
            throw std::bad_alloc(); // the first one takes memory for good
        }
        catch (const std::bad_alloc&)
        {
        }
        const int objects = tbBase::getNum(true);
        for (const HeapFaults::KIND kind : {HeapFaults::ONE, HeapFaults::LASTING})
        {
            long n = 0;
            for (bool struck = true; struck && !HasFailure();)
            {
                ++n;
                const testing::ScopedTrace trace(
                    __FILE__, __LINE__, "allocation " + std::to_string(n) + (kind ? " and later" : ""));
                const long blocks = HeapFaults::getNumBlocks();
                operation.prepare();
                HeapFaults::arm(n, kind);
                const bool done = operation.run();
                struck = HeapFaults::disarm();
                EXPECT_TRUE(done || struck);
                operation.check(done);
                operation.whole();
                EXPECT_EQ(tbBase::getNum(true), objects);
                EXPECT_EQ(HeapFaults::getNumBlocks(), blocks);
            }
            std::printf("[  faults  ] %ld\n", n - 1);
        }
        std::thread([&operation] { operation.whole(); }).join(); // waits for ever where a lock was left taken
    }

    std::string saved(const tbBase* object) const
    {
        const std::string path = directory.path("copy.tb");
        EXPECT_TRUE(tbLoader::exportFile(object, path.c_str())) << tbLoader::getErrorMessage();
        std::string bytes = tbtest::readAll(path);
        std::filesystem::remove(path);
        return bytes;
    }
    std::string file(const std::string& name, const std::string& content) const
    {
        tbtest::writeAll(directory.path(name), content);
        return directory.path(name);
    }

    tbtest::TempDirectory directory;
    tbRef<tbScene> scene = tbtest::makeEveryClass();
    tbMessageFunc before;
};

} // namespace

TEST_F(Allocation, LoadGivesTheWholeSceneOrNone)
{
    const std::string content = saved(scene.get());
    const std::string path = file("scene.tb", content);
    tbRef<tbBase> made;
    sweep({[&]
           {
               made = tbLoader::importFile(path.c_str());
               return bool(made);
           },
           [&](bool done)
           {
               EXPECT_EQ(tbLoader::getError() == tbLoader::LOADER_OK, done);
               EXPECT_TRUE(!done || saved(made.get()) == content);
               made.reset();
           }});
}

TEST_F(Allocation, SaveReplacesTheFileOrLeavesIt)
{
    const std::string content = saved(scene.get());
    const std::string path = directory.path("scene.tb");
    sweep({[&] { return tbLoader::exportFile(scene.get(), path.c_str()); },
           [&](bool done)
           {
               EXPECT_EQ(tbLoader::getError() == tbLoader::LOADER_OK, done);
               EXPECT_TRUE(tbtest::readAll(path) == (done ? content : "old"));
               EXPECT_EQ(directory.count(), 1);
           },
           [&] { file("scene.tb", "old"); }});
}

TEST_F(Allocation, CopiesAreWholeOrNull)
{
    const std::string content = saved(scene.get());
    using Make = tbGroup* (tbGroup::*)() const;
    for (const Make make : {Make(&tbGroup::makeCopy), Make(&tbGroup::makeClone)})
    {
        const std::string copied = saved(tbRef<tbGroup>((scene.get()->*make)()).get());
        tbRef<tbGroup> made;
        sweep({[&]
               {
                   made = (scene.get()->*make)();
                   return bool(made);
               },
               [&](bool done)
               {
                   EXPECT_TRUE(!done || saved(made.get()) == copied);
                   made.reset();
                   EXPECT_TRUE(saved(scene.get()) == content) << "what was copied";
               }});
    }
}

TEST_F(Allocation, ObjectsAreMadeAndCopiedOneByOne)
{
    for (int i = 0; i < tbType::getNumTypes(); ++i)
    {
        const tbType* type = tbType::getType(i);
        SCOPED_TRACE(type->getName());
        const tbRef<tbBase> original(type->create());
        if (!original)
            continue;
        original->setName("a name");
        tbRef<tbBase> object, copy;
        sweep({[&]
               {
                   object = type->create();
                   copy = original->createCopy();
                   return true;
               },
               [&](bool)
               {
                   object.reset();
                   copy.reset();
               }});
    }
}

TEST_F(Allocation, FrameLeavesSceneAndWalkersAsTheyWere)
{
    const tbRef<tbNullWindow> window(new tbNullWindow);
    window->open();
    tbTransform* moving = tbTransform::find("above tbStyle", nullptr, false);
    ASSERT_NE(moving, nullptr);
    for (int i = 0; i < 40; ++i) // deeper than the room that stacks have at first
    {
        auto* below = new tbTransform;
        below->setName("deep");
        below->setXYZ(0, 0.01f, 0);
        moving->addChild(below);
        moving = below;
    }
    moving->addChild(tbtest::makeTriangle(2));

    tbRef<tbNullCamera> camera;
    tbRef<tbCollider> collider;
    std::int64_t drawn = 0;
    int hits = 0;
    const auto frame = [&]
    {
        scene->acquireForMods();
        moving->setXYZ(0, 0.02f, 0);
        scene->update();
        scene->releaseFromMods();
        scene->acquireForQuery();
        camera->resetCounts();
        camera->draw(scene.get());
        hits = collider->intersect(scene.get());
        scene->releaseFromQuery();
        drawn = camera->getCounts().geometries;
        return true;
    };
    const auto newWalkers = [&]
    {
        camera = new tbNullCamera;
        camera->setWindow(window.get());
        camera->setFOV(90, 90);
        camera->setNearFar(0.01f, 1000);
        collider = new tbCollider;
        collider->setVolumeMode(tbCollider::VOLUME_NONE);
        collider->setSaveMask(15);
        collider->addRay(tbRay(tbVec3(0, -5, 0), tbVec3(0, 1, 0), 100));
        const tbRef<tbTravContext> contexts[2] = {new tbTravContext, new tbTravContext};
        contexts[0]->setTraitStack(new tbTraitStack(tbTraitStack::ALL_STACKS, false));
        contexts[1]->setTraitStack(new tbTraitStack(tbTraitStack::ALL_STACKS, false));
        scene->setTravContext(contexts[0].get());
        collider->setTravContext(contexts[1].get());
    };
    newWalkers();
    frame();
    frame();
    const std::int64_t wholeDrawn = drawn;
    const int wholeHits = hits;
    EXPECT_GT(wholeDrawn, 8);
    EXPECT_EQ(wholeHits, 1);
    const std::string content = saved(scene.get());
    sweep({frame,
           [&](bool)
           {
               frame();
               EXPECT_EQ(drawn, wholeDrawn);
               EXPECT_EQ(hits, wholeHits);
               EXPECT_TRUE(saved(scene.get()) == content);
           },
           newWalkers});
}

TEST_F(Allocation, DamagedFilesAreRefusedAllTheSame)
{
    std::string bytes = saved(scene.get());
    std::string swapped = bytes;
    for (std::size_t i = bytes.size() / 2; i < bytes.size(); i += 97)
        swapped[i] = '\x7f';
    tbRef<tbBase> made;
    for (const std::string& damaged : {bytes.substr(0, bytes.size() - 100), swapped})
    {
        const std::string path = file("damaged.tb", damaged);
        sweep({[&]
               {
                   tbFile opened;
                   if (opened.open(path.c_str(), "r"))
                       made = opened.readObject(0);
                   else
                       EXPECT_NE(opened.getLastError(), tbFile::FILE_OK);
                   opened.getErrorText();
                   return true;
               },
               [&](bool) { made.reset(); }});
    }
}
