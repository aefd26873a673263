// Every allocation of an operation fails in turn. The operation then fails with its error or succeeds as a whole,
// nothing is left behind, and what comes after it works as if nothing had happened.

#include <plugins/null/tbNullCamera.h>
#include <plugins/null/tbNullWindow.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/graph/tbRangeSwitch.h>
#include <tamber/io/tbFile.h>
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbSettings.h>
#include <tamber/thread/tbEvent.h>
#include <tamber/thread/tbQueue.h>
#include <tamber/thread/tbThread.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/fault/HeapFaults.h>
#include <tests/support/Environment.h>
#include <tests/support/EveryClass.h>
#include <tests/support/TempFile.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
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
        for (int i = 0; i < 2; ++i)
        {
            SCOPED_TRACE("undisturbed");
            operation.whole();
        }
        EXPECT_THROW(throw std::bad_alloc(), std::bad_alloc); // the first one takes memory for good
        const int objects = tbBase::getNum(true);
        for (const HeapFaults::KIND kind : {HeapFaults::ONE, HeapFaults::LASTING})
        {
            long n = 0;
            for (bool struck = true; struck && !HasFailure();)
            {
                SCOPED_TRACE("allocation " + std::to_string(++n) + (kind ? " and later" : ""));
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
        std::atomic<bool> over = false;
        std::thread other( // waits for ever where a lock was left taken
            [&]
            {
                operation.whole();
                over = true;
            });
        while (!over)
            tbGetAppThread()->processQueue(false);
        other.join();
    }

    std::string saved(const tbBase* object) const
    {
        const std::string path = directory.path("copy.tb");
        EXPECT_TRUE(tbLoader::exportFile(object, path.c_str())) << tbLoader::getErrorMessage();
        std::string bytes = tbtest::readAll(path);
        std::filesystem::remove(path);
        return bytes;
    }

    tbtest::TempDirectory directory;
    tbRef<tbScene> scene = tbtest::makeEveryClass();
    tbMessageFunc before;
};

} // namespace

TEST_F(Allocation, LoadGivesTheWholeSceneOrNone)
{
    const std::string content = saved(scene.get());
    const std::string path = directory.write("scene.tb", content);
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
           [&] { directory.write("scene.tb", "old"); }});
}

TEST_F(Allocation, ArenasGiveMemoryOrNull)
{
    std::unique_ptr<tbArena> arena;
    sweep({[&]
           {
               arena.reset(new tbArena);
               return arena && arena->malloc(16) && arena->malloc(9000);
           },
           [&](bool)
           {
               EXPECT_TRUE(!arena || !tbArena::get(int(arena->getIndex()) + 1));
               arena.reset();
           }});
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

namespace
{

/// The first frame of a scene, and everybody who walks it.
struct Frame
{
    explicit Frame(tbScene* walkedScene, tbWindow* window) : scene(walkedScene)
    {
        camera->setWindow(window);
        camera->setFOV(120, 120);
        camera->setNearFar(0.01f, 1000);
        camera->setXYZ(0, -20, 0);
        collider->setVolumeMode(tbCollider::VOLUME_NONE);
        collider->setSaveMask(15);
        collider->addRay(tbRay(tbVec3(0, -5, 0), tbVec3(0, 1, 0), 100));
        const tbRef<tbTravContext> own(new tbTravContext);
        own->setTraitStack(new tbTraitStack(tbTraitStack::TRAV_STACK, true));
        collider->setTravContext(own.get());
    }
    bool run()
    {
        scene->acquireForMods();
        scene->update();
        scene->releaseFromMods();
        scene->acquireForQuery();
        camera->resetCounts();
        camera->draw(scene.get());
        hits = collider->intersect(scene.get());
        scene->releaseFromQuery();
        drawn = camera->getCounts().geometries;
        distance = collider->getRayHit(0)->distance;
        return true;
    }

    tbRef<tbScene> scene;
    tbRef<tbNullCamera> camera{new tbNullCamera};
    tbRef<tbCollider> collider{new tbCollider};
    std::int64_t drawn = 0;
    int hits = 0;
    float distance = 0;
};

/// Ten nodes in a graph and two of their own.
std::vector<tbRef<tbGroup>> makeNodes()
{
    std::vector<tbRef<tbGroup>> node;
    for (int i = 0; i < 12; ++i)
        node.emplace_back(i % 4 == 1 ? new tbSwitch : i % 4 == 3 ? new tbRangeSwitch : new tbGroup);
    for (std::size_t i = 1; i < 10; ++i)
        node[(i - 1) / 2]->addChild(node[i].get());
    for (const std::size_t parent : {1u, 2u, 3u})
        node[parent]->addChild(node[9].get());
    return node;
}

/// Parents and children of nodes, by their places.
std::string describe(const std::vector<tbRef<tbGroup>>& nodes)
{
    std::string text;
    const auto append = [&](const tbGroup* node)
    { text += ' ' + std::to_string(std::find(nodes.begin(), nodes.end(), node) - nodes.begin()); };
    for (const tbRef<tbGroup>& node : nodes)
    {
        text += "\nparents";
        std::for_each(node->getParents().begin(), node->getParents().end(), append);
        text += " children";
        std::for_each(node->getChildren().begin(), node->getChildren().end(), append);
    }
    return text;
}

} // namespace

TEST_F(Allocation, FrameAfterAnInterruptedOneIsWhole)
{
    const tbRef<tbNullWindow> window(new tbNullWindow);
    window->open();
    tbGroup* deep = tbTransform::find("above tbStyle", nullptr, false);
    ASSERT_NE(deep, nullptr);
    for (int i = 0; i < 70; ++i) // deeper than the room that stacks have at first
    {
        auto* below = new tbTransform;
        below->setName("deep");
        below->setXYZ(0, 0.01f, 0);
        deep->addChild(below);
        deep = below;
    }
    auto* mesh = new tbMesh;
    tbtest::setTriangle(mesh, tbVertexArray::VT_POSITION);
    deep->addChild(mesh);
    const auto copyOfScene = [&] { return static_cast<tbScene*>(scene->makeCopy()); };
    Frame undisturbed(copyOfScene(), window.get());
    undisturbed.run();
    undisturbed.run();
    EXPECT_GT(undisturbed.drawn, 8);
    EXPECT_EQ(undisturbed.hits, 1);
    const std::string content = saved(undisturbed.scene.get());
    std::unique_ptr<Frame> frame;
    sweep({[&] { return frame->run(); },
           [&](bool)
           {
               frame->run();
               EXPECT_EQ(frame->drawn, undisturbed.drawn);
               EXPECT_EQ(frame->hits, undisturbed.hits);
               EXPECT_EQ(frame->distance, undisturbed.distance);
               frame->run(); // lowers the last flags
               EXPECT_TRUE(saved(frame->scene.get()) == content);
               frame.reset();
           },
           [&] { frame = std::make_unique<Frame>(copyOfScene(), window.get()); }});
}

TEST_F(Allocation, EditsAreDoneOrNot)
{
    using Nodes = std::vector<tbRef<tbGroup>>;
    using Edit = void (*)(Nodes&);
    const Edit edits[] = {
        [](Nodes& node) { node[1]->addChild(node[10].get()); },
        [](Nodes& node) { node[3]->insertChild(0, node[9].get()); },
        [](Nodes& node) { node[3]->insertChild(1, node[10].get()); },
        [](Nodes& node) { node[9]->detach(); },
        [](Nodes& node) { node[1]->remove(); },
        [](Nodes& node) { node[4]->remove(); },
        [](Nodes& node) { node[0]->remove(); },
        [](Nodes& node) { node[1]->replace(node[10].get()); },
        [](Nodes& node) { node[9]->replaceGraph(node[10].get()); },
        [](Nodes& node) { node[1]->insertBelow(node[10].get()); },
        [](Nodes& node) { node[9]->insertAbove(node[11].get()); },
        [](Nodes& node) { node[1]->removeChildren(); },
    };
    for (const Edit edit : edits)
    {
        SCOPED_TRACE(&edit - edits);
        Nodes nodes = makeNodes();
        const std::string unedited = describe(nodes);
        edit(nodes);
        const std::string after = describe(nodes);
        sweep({[&]
               {
                   edit(nodes);
                   return true;
               },
               [&](bool)
               {
                   const std::string now = describe(nodes);
                   EXPECT_TRUE(now == unedited || now == after) << unedited << "\nbecame" << now;
                   nodes.clear();
               },
               [&] { nodes = makeNodes(); }});
    }
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
        const std::string path = directory.write("damaged.tb", damaged);
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

TEST_F(Allocation, ThreadsWorkOrAreDead)
{
    using tbtest::FuncAction;
    const tbRef<FuncAction> first(new FuncAction), pass(new FuncAction);
    tbRef<FuncAction> posted;
    tbRef<tbThread> thread;
    sweep({[&]
           {
               thread = new tbThread;
               if (!thread)
                   return false;
               thread->setName("worker");
               thread->setThreadMode(tbThread::THREAD_WAIT);
               thread->addInitAction(first.get());
               thread->addAction(pass.get());
               const bool below = tbGetAppThread()->addDownstreamThread(thread.get());
               thread->addActionToQueue(posted.get());
               tbRef<tbGroup>(new tbGroup).reset(); // goes round the threads
               thread->run();
               thread->flushQueue();
               const bool alive = thread->getState() == tbThread::STATE_RUNNING;
               EXPECT_TRUE(alive || thread->getState() == tbThread::STATE_DEAD);
               return alive && below && thread->getNumActions() + thread->getNumInitActions() == 2;
           },
           [&](bool done)
           {
               EXPECT_TRUE(!done || posted->getTimes() == 1);
               if (thread)
               {
                   thread->kill();
                   EXPECT_FALSE(thread->inCurrentThread() ||
                                (!thread->getQueue() && thread->setPriority(15)));
                   tbGetAppThread()->removeDownstreamThread(thread.get());
               }
               thread.reset();
               tbGetAppThread()->processQueue(true);
               EXPECT_EQ(tbBase::getNumPendingDeletions(), 0);
           },
           [&] { posted = new FuncAction; }});
    posted.reset();
}

TEST_F(Allocation, PlugInsAreLoadedWholeOrNot)
{
    const auto extensions = []
    {
        int num = 0;
        for (int i = 0; i < tbLoader::getNumLoaders(); ++i)
            num += tbLoader::getNumLoaderExtensions(i) + tbLoader::getNumExportExtensions(i);
        return num;
    };
    const int known = extensions();
    tbPlugIn* plugIn = nullptr;
    tbRef<tbBase> object;
    sweep({[&]
           {
               plugIn = tbPlugIn::load(TEST_LOADER_FILE);
               object = tbType::createInstance("tbTestLoaded");
               return plugIn && object;
           },
           [&](bool done)
           {
               EXPECT_EQ(plugIn, tbPlugIn::find(TEST_LOADER_FILE));
               EXPECT_TRUE(!plugIn || plugIn->getName());
               EXPECT_TRUE(plugIn || !object);
               EXPECT_TRUE(!done || extensions() == known + 3);
               object.reset();
               EXPECT_TRUE(!plugIn || plugIn->unload());
               EXPECT_EQ(tbPlugIn::find(TEST_LOADER_FILE), nullptr);
               EXPECT_EQ(tbType::findType("tbTestLoaded"), nullptr);
           }});
}

TEST_F(Allocation, SettingsAreReadAndWrittenOrAsTheyWere)
{
    tbtest::setVariable("TAMBER_SETTINGS", directory.path("settings.ini"));
    const std::string other = "Other=\"" + std::string(100, 'x') + "\"\n";
    const std::string longer = std::string(200, 'y');
    const std::string written = other + "Number=0x00000007\nText=\"" + longer + "\"\n";
    int number = 0;
    char text[256] = "";
    sweep({[&]
           {
               return tbWriteRegistry("Number", 7) && tbWriteRegistry("Text", longer.c_str()) &&
                      tbReadRegistry("Number", number) && tbReadRegistry("Text", text);
           },
           [&](bool done)
           {
               const std::string now = tbtest::readAll(directory.path("settings.ini"));
               EXPECT_TRUE(now == written || (!done && written.starts_with(now) && now.starts_with(other)))
                   << now;
               EXPECT_TRUE(number == 7 || (!done && number == 0));
               EXPECT_TRUE(text == longer || (!done && !*text));
               EXPECT_EQ(directory.count(), 1);
               number = 0;
               text[0] = 0;
           },
           [&] { directory.write("settings.ini", other); }});
}
