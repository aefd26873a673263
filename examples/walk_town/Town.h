// The town, and a park with a hill beside it: switches, billboards, an emitter and a walker.
#pragma once

#include <portable/tbMesh.h>
#include <tamber/tbKernel.h>

#include <cmath>
#include <cstring>
#include <vector>

constexpr float HILL_SIZE = 80.0f;

inline tbMesh* makeMesh(const std::vector<tbVec3>& points, const std::vector<unsigned int>& indices)
{
    auto* vertices = new tbVertexArray(int(points.size()), tbVertexArray::VT_POSITION);
    std::memcpy(vertices->getData(), points.data(), points.size() * sizeof(tbVec3));
    auto* mesh = new tbMesh;
    mesh->set(tbMesh::TRIANGLES, vertices, indices.data(), int(indices.size()));
    return mesh;
}

/// An upright board in the plane of X and Z, on the ground.
inline tbMesh* makeBoard(float width, float height)
{
    const float x = width / 2.0f;
    return makeMesh({{-x, 0, 0}, {x, 0, 0}, {x, 0, height}, {-x, 0, height}}, {0, 1, 2, 0, 2, 3});
}

/// A block without a floor.
inline tbMesh* makeHouse(float size, float height)
{
    const float s = size / 2.0f, h = height;
    return makeMesh(
        {{-s, -s, 0}, {s, -s, 0}, {s, s, 0}, {-s, s, 0}, {-s, -s, h}, {s, -s, h}, {s, s, h}, {-s, s, h}},
        {0, 1, 5, 0, 5, 4, 1, 2, 6, 1, 6, 5, 2, 3, 7, 2, 7, 6, 3, 0, 4, 3, 4, 7, 4, 5, 6, 4, 6, 7});
}

inline float hillHeight(float x, float y)
{
    return 3.0f * std::cos(x / 12.0f) * std::cos(y / 15.0f);
}

inline tbMesh* makeHill()
{
    constexpr int SIDE = int(HILL_SIZE);
    std::vector<tbVec3> points;
    std::vector<unsigned int> indices;
    for (int y = 0; y <= SIDE; ++y)
    {
        for (int x = 0; x <= SIDE; ++x)
        {
            const float px = float(x) - HILL_SIZE / 2.0f, py = float(y) - HILL_SIZE / 2.0f;
            points.emplace_back(px, py, hillHeight(px, py));
            const auto a = unsigned(y * (SIDE + 1) + x), b = a + SIDE + 1;
            if (x < SIDE && y < SIDE)
                indices.insert(indices.end(), {a, a + 1, b + 1, a, b + 1, b});
        }
    }
    return makeMesh(points, indices);
}

template <class Node>
Node* addTo(tbGroup* parent, Node* node)
{
    parent->addChild(node);
    return node;
}

inline tbTransform* addPlace(tbGroup* parent, float x, float y, float z)
{
    auto* place = addTo(parent, new tbTransform);
    place->setXYZ(x, y, z);
    return place;
}

/// Bits of collider masks: who feels for the ground meets nothing else.
enum MASK : unsigned
{
    GROUND = 1,
    THINGS = 2
};

inline tbModel* addModel(tbGroup* parent, const char* name, MASK mask)
{
    auto* model = addTo(parent, new tbModel);
    model->setName(name);
    model->setColliderMask(mask);
    return model;
}

/// The sample town; where no loader reads it, a few blocks.
inline tbRef<tbModel> makeTown()
{
    tbRef<tbModel> town = tbModel::import(TOWN_FILE);
    if (town)
        return town;
    town = new tbModel;
    const tbRef<tbMesh> house = makeHouse(10.0f, 8.0f);
    house->setNodeFlags(tbGroup::NODE_SHARE);
    for (int i = 0; i < 25; ++i)
        addPlace(town.get(), float(i % 5 - 2) * 16.0f, float(i / 5) * 16.0f, 0.0f)->addChild(house.get());
    return town;
}

/// The scene with what changes in it.
class Town
{
public:
    Town() : scene(new tbScene)
    {
        const tbRef<tbModel> town = makeTown();
        scene->addChild(town.get());
        tbTransform* park = addPlace(scene.get(), 0.0f, -300.0f, 0.0f);
        tbModel* ground = addModel(park, "ground", GROUND);
        ground->addChild(makeHill());
        tbModel* things = addModel(park, "things", THINGS);

        walker = addModel(things, "walker", THINGS);
        walker->addChild(makeBoard(0.6f, 1.8f));

        lights = addTo(addPlace(things, 0, 35, 0), new tbSwitch);
        for (int i = 0; i < 3; ++i)
            addPlace(lights, 0, 0, 3.0f - float(i))->addChild(makeBoard(0.5f, 0.5f));
        lights->setTransitionTime(0.005f);
        lights->enableTransition(true);

        auto* statue = addTo(addPlace(things, 39, 0, 0), new tbRangeSwitch);
        statue->addChild(makeHouse(2.0f, 6.0f)); // near
        statue->addChild(makeBoard(2.0f, 6.0f)); // far
        statue->setRange(0, 35.0f);
        statue->setRange(1, 500.0f);
        statue->setTransition(0, 5.0f);
        statue->enableTransition(true);

        for (int i = 0; i < 16; ++i)
        {
            auto* tree = addTo(things, new tbBillboard);
            tree->setXYZ(float(i % 4 - 2) * 18.0f + 9.0f, float(i / 4 - 2) * 18.0f + 9.0f, 0.0f);
            tree->addChild(makeBoard(4.0f, 7.0f));
        }

        fountain = addTo(addPlace(things, 5, 5, 0), new tbEmitter);
        fountain->setWaveName("fountain.wav");
        fountain->enableLooping(true);
        fountain->play();
        scene->update();
    }

    tbRef<tbScene> scene;
    tbModel* walker;
    tbSwitch* lights;
    tbEmitter* fountain;
};
