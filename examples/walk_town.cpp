// A whole small application. A walker strolls over a hill beside the town while two threads share the scene: one edits
// it and runs the frame, the other looks, listens and feels for the ground. In the end everything is saved and read
// back.
//
// usage: example_walk_town [FRAMES]        default: 1000

#include <examples/walk_town/Town.h>
#include <examples/walk_town/Visitor.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace
{
constexpr const char* SAVED_FILE = "walked_town.tb";

/// Where the walker is in a frame, in the coordinates of the park; the height is what is to be found.
tbVec3 footprint(int frame)
{
    const float angle = 0.02f * float(frame);
    return tbVec3(30.0f * std::sin(angle), 25.0f * std::sin(1.7f * angle), 0.0f);
}

/// The walk through the town. In one frame, editFrame() and visitFrame() run at the same time.
class Walk
{
public:
    Walk() : visitor(*town.scene) { feelGround(0); }

    void editFrame(int frame)
    {
        town.scene->acquireForMods();
        tbVec3 feet = footprint(frame);
        feet[2] = ground[frame % 2];
        town.walker->setXYZ(feet);
        worstStep = std::max(worstStep, std::abs(feet[2] - hillHeight(feet[0], feet[1])));
        if (frame % 20 == 0)
            town.lights->selectChild(frame / 20 % 3);
        if (frame % 100 == 0)
            town.fountain->play();
        if (frame % 100 == 50)
            town.fountain->stop();
        town.scene->update();
        fadingFrames += town.lights->isInTransition() ? 1 : 0;
        town.scene->releaseFromMods();
    }

    void visitFrame(int frame)
    {
        visitor.lookAndListen(inWorld(footprint(frame)) + tbVec3(0.0f, 0.0f, 1.7f));
        feelGround(frame + 1);
    }

    Town town;
    Visitor visitor;
    float worstStep = 0.0f;
    int fadingFrames = 0;
    int missingGround = 0;

private:
    static tbVec3 inWorld(const tbVec3& place) { return place + tbVec3(0.0f, -300.0f, 0.0f); }

    void feelGround(int frame)
    {
        const bool found = visitor.findGround(inWorld(footprint(frame)) + tbVec3(0.0f, 0.0f, 50.0f), GROUND,
                                              ground[frame % 2]);
        missingGround += found ? 0 : 1;
    }

    float ground[2] = {}; // below the feet in even and odd frames: found in the frame before
};

/// Does one piece of work with every pass of a thread and says when it is done.
class FrameAction : public tbAction
{
public:
    FrameAction(std::function<void(int)> everyFrame, tbSemaphore* tell)
        : work(std::move(everyFrame)),
          done(tell)
    {
    }

    bool apply(tbBase*, tbEvent*) override
    {
        work(frame++);
        done->inc();
        return true;
    }

private:
    std::function<void(int)> work;
    tbRef<tbSemaphore> done;
    int frame = 0;
};

tbRef<tbThread> makeThread(std::function<void(int)> work, tbSemaphore* done)
{
    tbRef<tbThread> thread = new tbThread;
    thread->setThreadMode(tbThread::THREAD_WAIT);
    thread->addAction(new FrameAction(std::move(work), done));
    return thread;
}

void runFrames(Walk& walk, int numFrames)
{
    const tbRef<tbSemaphore> done = new tbSemaphore;
    const tbRef<tbThread> editor = makeThread([&walk](int frame) { walk.editFrame(frame); }, done.get());
    const tbRef<tbThread> visitor = makeThread([&walk](int frame) { walk.visitFrame(frame); }, done.get());
    for (int frame = 0; frame < numFrames; ++frame)
    {
        editor->run();
        visitor->run();
        done->dec();
        done->dec();
    }
}

const char* nameOf(const tbGroup* node)
{
    return node->getName() ? node->getName() : "";
}

/// Whether two graphs have the same nodes, by class, name and matrix; counts them.
bool areEqual(const tbGroup* a, const tbGroup* b, int& numNodes)
{
    ++numNodes;
    if (std::strcmp(a->getType()->getName(), b->getType()->getName()) != 0 ||
        std::strcmp(nameOf(a), nameOf(b)) != 0 || a->getNumChildren() != b->getNumChildren())
        return false;
    if (a->isOfType(tbTransform::getClassType()) && !(*static_cast<const tbTransform*>(a)->getMatrix() ==
                                                      *static_cast<const tbTransform*>(b)->getMatrix()))
        return false;
    for (int i = 0; i < a->getNumChildren(); ++i)
        if (!areEqual(a->getChild(i), b->getChild(i), numNodes))
            return false;
    return true;
}

bool saveAndReadBack(const tbScene& scene)
{
    if (!tbLoader::exportFile(&scene, SAVED_FILE))
        return false;
    const tbRef<tbScene> again = tbScene::import(SAVED_FILE);
    int numNodes = 0;
    const bool equal = again && areEqual(&scene, again.get(), numNodes);
    std::printf("%s: %d nodes, %s\n", SAVED_FILE, numNodes,
                equal ? "the same classes, names and matrices" : "another graph came back");
    return equal;
}

bool run(int numFrames)
{
    if (!tbPlugIn::load("tbNull.dll"))
        return false;
    Walk walk;
    runFrames(walk, numFrames);
    const tbNullCounts& drawn = walk.visitor.getDrawn();
    std::printf("%d frames: %lld geometries drawn, %lld branches out of sight, %d sounds heard, %d frames in "
                "transition\n",
                numFrames, static_cast<long long>(drawn.geometries), static_cast<long long>(drawn.culled),
                walk.visitor.getNumHeard(), walk.fadingFrames);
    std::printf("the walker's feet were at most %.3f off the ground\n", double(walk.worstStep));
    const bool walked = drawn.walks == numFrames && drawn.geometries > numFrames &&
                        walk.visitor.getNumHeard() > 0 && walk.fadingFrames > 0;
    return walked && walk.missingGround == 0 && walk.worstStep < 0.05f && saveAndReadBack(*walk.town.scene);
}
} // namespace

int main(int argc, char** argv)
{
    const int numFrames = argc == 2 ? std::atoi(argv[1]) : 1000;
    if (numFrames <= 0)
    {
        std::fprintf(stderr, "usage: %s [FRAMES]\n", argv[0]);
        return 2;
    }
    tbInit(nullptr);
    const bool ok = run(numFrames);
    tbShutdown();
    return ok ? 0 : 1;
}
