// Builds a row of houses by hand, runs one frame and lets a camera walk it. The camera belongs to the null display,
// which counts what it would draw.

#include <plugins/null/tbNullCounts.h>
#include <portable/tbMesh.h>
#include <tamber/tbKernel.h>

#include <cstdio>
#include <cstring>

namespace
{
/// A pyramid over the square from -1 to 1, one unit high.
tbRef<tbMesh> makeRoof()
{
    const float points[5][3] = {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}, {0, 0, 1}};
    const unsigned int indices[] = {0, 1, 4, 1, 2, 4, 2, 3, 4, 3, 0, 4};
    auto* vertices = new tbVertexArray(5, tbVertexArray::VT_POSITION);
    std::memcpy(vertices->getData(), points, sizeof(points));
    tbRef<tbMesh> roof = new tbMesh;
    roof->set(tbMesh::TRIANGLES, vertices, indices, 12);
    return roof;
}

/// Ten transforms in a row along +Y that share one mesh.
tbRef<tbScene> makeStreet()
{
    const tbRef<tbMesh> roof = makeRoof();
    roof->setNodeFlags(tbGroup::NODE_SHARE);
    tbRef<tbScene> scene = new tbScene;
    for (int i = 0; i < 10; ++i)
    {
        auto* house = new tbTransform;
        house->setXYZ(0.0f, 10.0f * float(i), 0.0f);
        house->addChild(roof.get());
        scene->addChild(house);
    }
    return scene;
}

/// The number of geometries that a camera at `position`, looking along +Y, draws.
int countDrawn(tbScene& scene, tbWindow& window, const tbVec3& position)
{
    const tbRef<tbCamera> camera = static_cast<tbCamera*>(tbType::createInstance("tbNullCamera"));
    camera->setWindow(&window);
    camera->setFOV(60.0f, 45.0f);
    camera->setNearFar(0.1f, 1000.0f);
    camera->setXYZ(position);

    scene.acquireForQuery();
    camera->draw(&scene);
    scene.releaseFromQuery();
    return int(tbNullCounter::of(camera.get())->getCounts().geometries);
}

bool run()
{
    if (!tbPlugIn::load("tbNull.dll"))
        return false;
    const tbRef<tbWindow> window = static_cast<tbWindow*>(tbType::createInstance("tbNullWindow"));
    window->open();
    const tbRef<tbScene> scene = makeStreet();

    scene->acquireForMods();
    scene->update();
    scene->releaseFromMods();

    const int fromTheStart = countDrawn(*scene, *window, tbVec3(0.0f, -10.0f, 0.5f));
    const int fromTheMiddle = countDrawn(*scene, *window, tbVec3(0.0f, 45.0f, 0.5f));
    std::printf("from the start of the street %d houses are in sight, from its middle %d\n", fromTheStart,
                fromTheMiddle);
    window->close();
    return fromTheStart == 10 && fromTheMiddle == 5;
}
} // namespace

int main()
{
    tbInit(nullptr);
    const bool ok = run();
    tbShutdown();
    return ok ? 0 : 1;
}
