#include <tests/files/WholeFile.h>

#include <tests/support/FileNode.h>
#include <tests/support/TempFile.h>
#include <tests/support/WalkCamera.h>

#include <portable/tbMesh.h>
#include <tamber/tbKernel.h>

#include <algorithm>
#include <unordered_map>

namespace tbtest
{
namespace
{
constexpr unsigned MOST_PATHS = 1u << 15;

bool isDataTag(const char* tag)
{
    const std::string name = tag ? tag : "";
    return name == "tbArray" || name == "tbVertexArray" || name == "tbPlugIns";
}

void walk(tbGroup* root)
{
    WalkCamera camera;
    camera.walk(root, false);
    camera.walk(root, true);
    tbRef<tbCollider> collider = new tbCollider;
    collider->addRay(tbRay(tbVec3(0.25f, 0.25f, 10), tbVec3(0, 0, -1), 100));
    collider->addRay(tbRay(tbVec3(-50, 0.1f, 0.1f), tbVec3(1, 0, 0), -1));
    collider->setRayHitMode(tbCollider::RAY_HIT_ALL);
    collider->intersect(root);
}

void updateScene(tbScene* scene)
{
    scene->acquireForMods();
    scene->update();
    scene->update();
    scene->releaseFromMods();
}

// Nodes that a walk meets, one for each path, or one more than a test has time for.
unsigned countPaths(const tbGroup* node, std::unordered_map<const tbGroup*, unsigned>& known)
{
    const auto place = known.find(node);
    if (place != known.end())
        return place->second;
    unsigned number = 1;
    for (const tbGroup* child : node->getChildren())
        number = std::min(number + countPaths(child, known), MOST_PATHS + 1);
    return known[node] = number;
}

void useGraph(tbBase* object)
{
    auto* root = dynamic_cast<tbGroup*>(object);
    std::unordered_map<const tbGroup*, unsigned> known;
    if (!root || countPaths(root, known) > MOST_PATHS)
        return;
    tbSphere sphere;
    root->getBoundingVolume(sphere);
    tbBox box;
    root->getBoundingVolume(box);
    const bool isScene = object->isOfType(tbScene::getClassType());
    const tbRef<tbScene> scene = isScene ? static_cast<tbScene*>(object) : new tbScene;
    if (!isScene)
        scene->addChild(root);
    updateScene(scene.get());
    walk(scene.get());
    if (!isScene)
        scene->removeChild(root);
}
} // namespace

void WholeFile::prepare()
{
    FileNode::makeKnown();
    tbMesh::getClassType();
}

std::string withoutPath(const std::string& line, const std::string& path)
{
    const std::string start = path + ": ";
    return line.compare(0, start.size(), start) == 0 ? line.substr(start.size()) : line;
}

WholeFile::WholeFile(const std::string& path, int most)
{
    tbFile file;
    opened = file.open(path.c_str(), "r");
    numEntries = file.getNumEntries();
    for (int i = 0; i < std::min(numEntries, most); ++i)
    {
        tbEntry* entry = file.getEntry(i);
        if (i == 0 || !isDataTag(file.getTagDesc(entry->getTag())))
            objects.emplace_back(file.readObject(i));
        else
            file.readEntry(entry);
    }
    error = file.getLastError();
    text = withoutPath(file.getErrorText(), path);
}

tbRef<tbBase> saveAndRead(tbBase* object, const std::string& folder)
{
    const std::string path = (std::filesystem::path(folder) / "saved.tb").string();
    tbFile out;
    if (!out.create(path.c_str()) || !object->write(&out, nullptr) || !out.write())
        return nullptr;
    out.close();
    tbFile in;
    return tbRef<tbBase>(in.open(path.c_str(), "r") ? in.readObject(0) : nullptr);
}

void useGraphs(const std::vector<tbRef<tbBase>>& objects)
{
    constexpr std::size_t MOST_OBJECTS = 50;
    for (std::size_t i = 0; i < std::min(objects.size(), MOST_OBJECTS); ++i)
        useGraph(objects[i].get());
}

Alive::Alive() : bytes(tbMemory::getSize()), objects(tbBase::getNum(true)) {}
} // namespace tbtest
