// ExitPath HOW: a process that ends in one of the ways in which processes end. Whatever the kernel still holds, the
// end is clean and the exit code is that of main() or exit().
#include <tamber/graph/tbGroup.h>
#include <tamber/graph/tbScene.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/kernel/tbType.h>
#include <tamber/thread/tbThread.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <string>
#include <thread>

namespace
{

tbRef<tbGroup> globalNode;

void makeObjects()
{
    auto* scene = new tbScene;
    scene->ref();
    scene->setName("left alive");
    for (int i = 0; i < 100; ++i)
        scene->addChild(new tbGroup);
    scene->addAttribute(new tbGroup);
}

void exitInAnotherThread()
{
    std::thread([] { std::exit(0); }).detach();
    std::this_thread::sleep_for(std::chrono::minutes(1));
    std::_Exit(1);
}

void runThread()
{
    auto* thread = new tbThread;
    thread->ref();
    tbGetAppThread()->addDownstreamThread(thread);
    thread->run();
}

// The plug-ins that lie beside this program are loaded in all but the first.
const std::map<std::string, void (*)()> WAYS = {
    {"unused", [] {}},
    {"started", [] { tbInit(nullptr); }},
    {"shut-down", [] { tbInit(nullptr), tbShutdown(); }},
    {"objects", [] { tbInit(nullptr), makeObjects(); }},
    {"objects-after-shut-down", [] { tbInit(nullptr), makeObjects(), tbShutdown(); }},
    {"global-object", [] { tbInit(nullptr), globalNode = new tbGroup; }},
    {"global-object-after-shut-down", [] { tbInit(nullptr), globalNode = new tbGroup, tbShutdown(); }},
    {"exit-in-thread", [] { tbInit(nullptr), makeObjects(), exitInAnotherThread(); }},
    {"thread-running", [] { tbInit(nullptr), runThread(); }},
    {"thread-running-after-shut-down", [] { tbInit(nullptr), runThread(), tbShutdown(); }},
};

} // namespace

int main(int argc, char** argv)
{
    const auto way = WAYS.find(argc == 2 ? argv[1] : "");
    if (way == WAYS.end())
        return 2;
    way->second();
    return 0;
}
