// Loads a model, finds a node in it by its name, moves the node, saves the model and loads it again.
//
// usage: example_edit_model [MODEL NODE]        default: a small model that the program writes first

#include <portable/tbMesh.h>
#include <tamber/tbKernel.h>

#include <cstdio>

namespace
{
constexpr const char* SAVED_FILE = "edited.tb";

/// A model with a node "house" that holds a mesh of three points.
const char* writeSample()
{
    const unsigned int indices[] = {0, 1, 2};
    const tbRef<tbModel> model = new tbModel;
    auto* house = new tbTransform;
    auto* mesh = new tbMesh;
    house->setName("house");
    mesh->set(tbMesh::POINTS, new tbVertexArray(3, tbVertexArray::VT_POSITION), indices, 3);
    house->addChild(mesh);
    model->addChild(house);
    return tbLoader::exportFile(model.get(), "sample.tb") ? "sample.tb" : nullptr;
}

tbRef<tbModel> load(const char* path)
{
    tbRef<tbModel> model = tbModel::import(path);
    if (!model)
        std::fprintf(stderr, "%s: %s\n", path,
                     tbLoader::getErrorMessage() ? tbLoader::getErrorMessage() : "no model");
    return model;
}

tbTransform* findTransform(tbModel& model, const char* name)
{
    tbGroup* node = model.findGroup(name);
    if (node && node->isOfType(tbTransform::getClassType()))
        return static_cast<tbTransform*>(node);
    std::fprintf(stderr, "the model has no transform named %s\n", name);
    return nullptr;
}

bool run(const char* path, const char* name)
{
    const tbRef<tbModel> model = load(path);
    tbTransform* node = model ? findTransform(*model, name) : nullptr;
    if (!node)
        return false;
    tbVec3 place;
    node->getXYZ(place);
    place += tbVec3(0.0f, 0.0f, 5.0f);
    node->setXYZ(place);

    if (!tbLoader::exportFile(model.get(), SAVED_FILE))
        return false;
    const tbRef<tbModel> again = load(SAVED_FILE);
    const tbTransform* sameNode = again ? findTransform(*again, name) : nullptr;
    if (!sameNode)
        return false;
    tbVec3 placeAgain;
    sameNode->getXYZ(placeAgain);
    std::printf("%s stands at (%g, %g, %g) in %s\n", name, double(placeAgain[0]), double(placeAgain[1]),
                double(placeAgain[2]), SAVED_FILE);
    return placeAgain == place;
}
} // namespace

int main(int argc, char** argv)
{
    tbInit(nullptr);
    const char* path = argc == 3 ? argv[1] : writeSample();
    const bool ok = path && run(path, argc == 3 ? argv[2] : "house");
    tbShutdown();
    return ok ? 0 : 1;
}
