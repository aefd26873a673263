// Programs that save over one file again and again are killed in the middle. After every kill the file is whole, and
// what the killed ones left behind is gone after the next save.
//
// usage: KilledSaves ROUNDS          kills that many times, and says what it met
//        KilledSaves --save FILE     saves until it is killed
//        KilledSaves --save-once FILE

#include <tamber/graph/tbGroup.h>
#include <tamber/io/tbFile.h>
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/platform/tbiProcess.h>
#include <tests/support/TempFile.h>
#include <tests/support/WorkFolder.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <thread>

namespace
{

constexpr int NUM_NODES = 3000;

// A tree of nodes with one name: a mixture of two saves would show.
tbRef<tbGroup> makeTree(const std::string& name)
{
    tbRef<tbGroup> root(new tbGroup);
    root->setName(name.c_str());
    for (int i = 0; i < NUM_NODES; ++i)
    {
        auto* node = new tbGroup;
        node->setName(name.c_str());
        root->addChild(node);
    }
    return root;
}

bool save(const std::string& name, const std::string& path)
{
    return tbLoader::exportFile(makeTree(name).get(), path.c_str());
}

bool isWhole(const std::string& path)
{
    const tbRef<tbBase> read(tbLoader::importFile(path.c_str()));
    const auto* root = dynamic_cast<const tbGroup*>(read.get());
    if (!root || root->getNumChildren() != NUM_NODES)
        return false;
    for (const tbGroup* node : root->getChildren())
        if (!node->getName() || std::strcmp(node->getName(), root->getName()) != 0)
            return false;
    return true;
}

int saveForEver(const std::string& path)
{
    for (unsigned number = 0;; ++number)
        if (!save(std::string(1 + number % 50, char('a' + number % 26)), path))
            return 1;
}

// Windows does not replace a file that another save is just looking at.
constexpr bool SAVES_AT_ONCE = std::filesystem::path::preferred_separator == '/';

/// Saves over and over that are killed. True when it came to that.
bool killSave(const std::string& program, const std::string& path, double seconds)
{
    tbiProcessOrder order{.program = program, .arguments = {"--save", path}, .time = seconds};
    return tbiRunProcess(order).how == tbiProcessEnd::TIME;
}

int killSaves(const std::string& program, int rounds)
{
    const tbtest::WorkFolder folder;
    const tbtest::TempDirectory directory;
    const std::string path = directory.path("saved.tb");
    // How long a program takes to save for the first time.
    const tbiProcessEnd once =
        tbiRunProcess({.program = program, .arguments = {"--save-once", path}, .time = 60});
    if (once.code != 0 || !isWhole(path))
        return 1;
    std::mt19937 random(7);
    int inTheMiddle = 0;
    int mostLeft = 0;
    for (int round = 0; round < rounds; ++round)
    {
        const double seconds = once.seconds + double(random() % 30) / 1000;
        bool other = true;
        std::thread beside([&]
                           { other = !SAVES_AT_ONCE || round % 4 != 0 || killSave(program, path, seconds); });
        const bool one = killSave(program, path, seconds);
        beside.join();
        if (!one || !other)
            return std::printf("round %d: a save failed\n", round), 1;
        if (!isWhole(path))
            return std::printf("round %d: the file is damaged: %s\n", round, tbLoader::getErrorMessage()), 1;
        const int left = directory.count() - 1;
        inTheMiddle += left > 0 ? 1 : 0;
        mostLeft = left > mostLeft ? left : mostLeft;
    }
    if (!save("last", path) || !isWhole(path) || directory.count() != 1)
        return std::printf("the last save failed\n"), 1;
    std::printf(
        "%d kills, %d in the middle of a save; the file was whole every time, at most %d files were left\n",
        rounds, inTheMiddle, mostLeft);
    return mostLeft <= 2 ? 0 : 1; // no more than were killed at once
}

} // namespace

int main(int argc, char** argv)
{
    tbSetMessageFunc([](const char*) {});
    if (argc == 3 && std::strcmp(argv[1], "--save") == 0)
        return saveForEver(argv[2]);
    if (argc == 3 && std::strcmp(argv[1], "--save-once") == 0)
        return save("first", argv[2]) ? 0 : 1;
    const int rounds = argc == 2 ? std::atoi(argv[1]) : 100;
    return killSaves(std::filesystem::absolute(argv[0]).string(), rounds);
}
