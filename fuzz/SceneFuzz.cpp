// Reads any bytes as the loader of native files does, saves and rereads what came, sends every walk through it,
// copies it and saves it again.
#include <fuzz/support/Check.h>
#include <fuzz/support/InputFile.h>
#include <fuzz/support/LiveObjects.h>
#include <fuzz/support/SceneWalks.h>

#include <tamber/graph/tbScene.h>
#include <tamber/io/tbFile.h>
#include <tamber/io/tbPlugIn.h>

#include <algorithm>

using tbfuzz::check;
using tbfuzz::InputFile;

namespace
{
constexpr unsigned MOST_NODES = 4096; // a walk meets them all, as many times as there are paths to them
constexpr int MOST_ROUNDS = 8;

tbRef<tbBase> readFile(const InputFile& input)
{
    tbFile file;
    file.setMaxObjects(MOST_NODES);
    if (!file.open(input.path(), "r"))
        return nullptr;
    tbPlugIn::loadPlugIns(&file);
    tbRef<tbBase> root = file.readObject(0);
    check(root || *file.getErrorText() != 0, "a root that cannot be read has its reason");
    return root;
}

void saveFile(const tbBase& root, const InputFile& output)
{
    tbFile file;
    check(file.create(output.path()), "the output file can be made");
    check(file.save(&root), "what was read can be saved");
}

// Reading a graph raises travel flags, which are saved as well, and lowers the one that says that something plays.
// Nothing else may differ between two saves with a reading between them, and after a few rounds nothing at all.
bool differsInFlagsOnly(const std::vector<std::uint8_t>& from, const std::vector<std::uint8_t>& to)
{
    constexpr int PLAYS = 0x40;
    return std::equal(from.begin(), from.end(), to.begin(), to.end(),
                      [](std::uint8_t a, std::uint8_t b) { return (a & ~b & ~PLAYS) == 0; });
}

void checkSave(const tbBase& root)
{
    static const InputFile output("saved.tb");
    saveFile(root, output);
    for (int rounds = 0; rounds < MOST_ROUNDS; ++rounds)
    {
        const std::vector<std::uint8_t> before = output.get();
        const tbRef<tbBase> again = readFile(output);
        check(bool(again), "what was saved can be read");
        saveFile(*again, output);
        const std::vector<std::uint8_t> after = output.get();
        if (after == before)
            return;
        check(differsInFlagsOnly(before, after), "what was saved reads back as the same");
    }
    check(false, "a file that is read and saved over and over settles");
}

void walk(tbfuzz::SceneWalks& walks, tbGroup& root)
{
    if (root.isOfType(tbScene::getClassType()))
        walks.run(static_cast<tbScene&>(root));
    const tbRef<tbScene> scene(new tbScene);
    scene->addChild(&root);
    walks.run(*scene);
    const tbRef<tbGroup> copy(root.makeCopy());
    const tbRef<tbGroup> clone(root.makeClone());
    scene->removeChildren();
}
void run(const InputFile& input, tbfuzz::SceneWalks& walks)
{
    const tbRef<tbBase> root = readFile(input);
    if (!root)
        return;
    checkSave(*root);
    if (root->isOfType(tbCollider::getClassType()))
        walks.collide(static_cast<tbCollider&>(*root));
    if (!root->isOfType(tbGroup::getClassType()))
        return;
    walk(walks, static_cast<tbGroup&>(*root));
    checkSave(*root);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const InputFile input("scene.tb");
    static tbfuzz::SceneWalks walks;
    input.set({data, size});
    tbfuzz::checkNothingStays([] { run(input, walks); });
    return 0;
}
