#include <portable/tbBlend.h>
#include <portable/tbFaceCull.h>
#include <portable/tbKeyFrameAction.h>
#include <portable/tbMaterial.h>
#include <portable/tbMesh.h>
#include <portable/tbTexture.h>
#include <tamber/graph/tbModel.h>
#include <tamber/graph/tbSwitch.h>
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbStyle.h>
#include <tamber/render/tbVertexArray.h>

#include <tests/support/Messages.h>
#include <tests/support/Near.h>
#include <tests/support/TempFile.h>

#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{
using tbtest::readAll;
using tbtest::TempDirectory;

constexpr unsigned EVERYTHING = tbVertexArray::VT_POSITION | unsigned(tbVertexArray::VT_NORMAL) |
                                unsigned(tbVertexArray::VT_TEXCOORD1) | unsigned(tbVertexArray::VT_COLOR) |
                                unsigned(tbVertexArray::COLOR_ABGR);

/// `count` vertices whose numbers are all different, and such that 1 - (1 - x) is x.
tbRef<tbVertexArray> makeVertices(int count, unsigned type)
{
    tbRef<tbVertexArray> vertices = new tbVertexArray(count, type);
    const int color = vertices->getOffset(tbVertexArray::VT_COLOR);
    auto* data = static_cast<unsigned char*>(vertices->getData());
    for (int i = 0; i * 4 < count * vertices->getVertexSize(); ++i)
    {
        const float value = float(i * i % 64) / 16.0f - 1.0f;
        const std::uint32_t packed = 0xFF102030u + std::uint32_t(i);
        const bool isColor = color >= 0 && i * 4 % vertices->getVertexSize() == color;
        std::memcpy(data + i * 4, isColor ? static_cast<const void*>(&packed) : &value, 4);
    }
    return vertices;
}

tbRef<tbStyle> makePart(tbMesh::PRIMITIVE primitive, int count, unsigned type, const char* name)
{
    tbRef<tbMesh> mesh = new tbMesh;
    std::vector<unsigned> indices;
    for (int i = 0; i < count; ++i)
        indices.push_back(unsigned(count - 1 - i));
    EXPECT_TRUE(mesh->set(primitive, makeVertices(count, type).get(), indices.data(), count));
    mesh->setName(name);
    mesh->setNodeFlags(tbGroup::NODE_SHARE);
    tbRef<tbStyle> style = new tbStyle;
    style->setNodeFlags(tbGroup::NODE_SHARE);
    style->addChild(mesh.get());
    return style;
}

void addLook(tbStyle& style)
{
    tbRef<tbMaterial> material = new tbMaterial;
    material->setName("gr\xFCn \"1\""); // no UTF-8
    material->setSpecular({0.1f, 2.5f, 0.3f});
    material->setShininess(20);
    material->setOpacity(0.3f);
    tbRef<tbTexture> texture = new tbTexture;
    const unsigned char pixels[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    texture->setPixels(3, 1, pixels);
    texture->setWrap(tbTexture::WRAP_CLAMP, tbTexture::WRAP_MIRROR);
    texture->setFilter(tbTexture::FILTER_NEAREST);
    tbRef<tbBlend> blend = new tbBlend;
    blend->enable(true);
    blend->setFactors(tbBlend::ONE, tbBlend::DST_COLOR);
    tbRef<tbFaceCull> cull = new tbFaceCull;
    cull->setFace(tbFaceCull::CULL_FRONT);
    for (tbVisualTrait* trait :
         {static_cast<tbVisualTrait*>(material.get()), static_cast<tbVisualTrait*>(texture.get()),
          static_cast<tbVisualTrait*>(blend.get()), static_cast<tbVisualTrait*>(cull.get())})
        style.addTrait(trait);
}

tbRef<tbKeyFrameAction> makeMotion(const char* name)
{
    tbRef<tbKeyFrameAction> motion = new tbKeyFrameAction;
    motion->setName(name);
    for (int i = 0; i < 3; ++i)
        motion->getRotations().addKey(float(i) * 0.3f, tbQuat(0.6f, 0, 0, i == 1 ? -0.8f : 0.8f));
    motion->getScales().addKey(0.125f, tbVec3(1, 2, 3));
    motion->setExtrapolation(name ? tbExtrapolation::PING_PONG : tbExtrapolation::LOOP);
    motion->getScales().setExtrapolation(tbExtrapolation::CLAMP);
    motion->getPositions().addKey(0.5f, tbVec3(4, 5, 6));
    motion->getPositions().setInterpolation(name ? tbInterpolation::CATMULL_ROM : tbInterpolation::STEP);
    motion->setSpeed(name ? -1.75f : 1.0f);
    motion->pause(!name);
    return motion;
}

/// A model as importing makes them, with everything that a file of ours keeps.
tbRef<tbModel> makeModel()
{
    tbtest::allowMessages("plug-in");
    tbPlugIn::load("tbAssimpLoader.dll");
    tbMatrix matrix;
    matrix.makeRot(90.0f, 1.0f, 0.0f, 0.0f);
    tbRef<tbModel> model = new tbModel;
    model->setName("model");
    tbRef<tbTransform> turn = new tbTransform(matrix);
    turn->setName("Y-up to Z-up");
    tbRef<tbTransform> top = new tbTransform;
    const tbRef<tbStyle> shared = makePart(tbMesh::TRIANGLES, 6, EVERYTHING, "triangles");
    addLook(*shared);
    const tbRef<tbStyle> plain = makePart(tbMesh::LINES, 4, tbVertexArray::VT_POSITION, nullptr);
    for (const char* name : {"same", "same", static_cast<const char*>(nullptr)})
    {
        matrix.makeHPR(10.0f + float(top->getNumChildren()), 20, 30);
        matrix.setXYZ(float(top->getNumChildren()), 2, 3);
        matrix.preScale(1, 2, 0.5f);
        tbRef<tbTransform> node = new tbTransform(matrix);
        node->setName(name);
        node->addChild(shared.get());
        node->addChild(plain.get());
        top->addChild(node.get());
    }
    for (int i = 0; i < 10; ++i) // names that are made of those before
    {
        tbRef<tbTransform> node = new tbTransform;
        node->setName(("same#" + std::to_string(i)).c_str());
        top->addChild(node.get());
    }
    top->getChild(1)->addChild(makeMotion("walk").get());
    top->getChild(1)->addChild(makeMotion(nullptr).get());
    top->getChild(2)->addChild(makeMotion("walk").get());
    turn->addChild(top.get());
    model->addChild(turn.get());
    return model;
}

tbRef<tbGroup> read(const std::string& path)
{
    const tbRef<tbGroup> model = static_cast<tbGroup*>(tbLoader::importFile(path.c_str()));
    EXPECT_TRUE(model) << path << ": " << tbLoader::getErrorMessage();
    return model;
}

std::string nativeBytes(const TempDirectory& folder, const tbBase& object)
{
    EXPECT_TRUE(tbLoader::exportFile(&object, folder.path("bytes.tb").c_str()));
    return readAll(folder.path("bytes.tb"));
}

void expectFailure(const tbBase& object, const std::string& path, const char* why)
{
    EXPECT_FALSE(tbLoader::exportFile(&object, path.c_str())) << path;
    EXPECT_NE(tbLoader::getError(), tbLoader::LOADER_OK);
    const std::string message = tbLoader::getErrorMessage() ? tbLoader::getErrorMessage() : "";
    EXPECT_NE(message.find(why), std::string::npos) << path << ": " << message;
}
} // namespace

TEST(AssimpExport, GltfBringsBackWhatWasWritten)
{
    const TempDirectory folder;
    const tbRef<tbModel> model = makeModel();
    auto* moved = static_cast<tbTransform*>(model->getChild(0)->getChild(0)->getChild(1));
    moved->setXYZ(-4294967296.0f, 2, 3); // whole, and beyond what 32 bits hold
    const std::string before = nativeBytes(folder, *model);
    for (const char* extension : {"glb", "gltf", "GLB"})
    {
        const std::string path = folder.path(std::string("m.") + extension);
        ASSERT_TRUE(tbLoader::exportFile(model.get(), path.c_str())) << tbLoader::getErrorMessage();
        EXPECT_TRUE(nativeBytes(folder, *read(path)) == before) << extension;
    }
}

TEST(AssimpExport, GltfHasNoMatrixWhereANodeMoves)
{
    const TempDirectory folder;
    makeModel();
    const std::string path = folder.path("moved.gltf");
    const auto expectScale = [&path](tbMatrix matrix, const char* scale)
    {
        matrix.setXYZ(7, 8, 9);
        {
            tbRef<tbTransform> root = new tbTransform;
            tbRef<tbTransform> node = new tbTransform(matrix);
            node->addChild(makeMotion("moves").get());
            root->addChild(node.get());
            ASSERT_TRUE(tbLoader::exportFile(root.get(), path.c_str())) << tbLoader::getErrorMessage();
        }
        const std::string text = readAll(path);
        const std::size_t start = text.find("[7,8,9]");
        const std::string given = text.substr(start, text.find("extras", start) - start);
        EXPECT_NE(given.find(std::string("\"scale\":") + scale), std::string::npos) << given;
        EXPECT_EQ(given.find("matrix"), std::string::npos) << given;
        const tbRef<tbGroup> back = read(path); // our own file says it exactly
        EXPECT_EQ(*tbKeyFrameAction::find("moves", nullptr, true)->getTarget()->getMatrix(), matrix);
    };
    tbMatrix matrix = tbMatrix::identity();
    matrix.preScale(2, 3, -4);
    expectScale(matrix, "[2,3,-4]");
    matrix.setRow(1, 6, 3, 0, 0, tbMatrix::MATRIX_ROT);
    expectScale(matrix, "[2,3,-4]"); // skewed
    matrix.setRow(0, 0, 0, 0, 0, tbMatrix::MATRIX_ROT);
    matrix.setRow(1, 0, 0, 0, 0, tbMatrix::MATRIX_ROT);
    expectScale(matrix, "[0,0,4]");
}

TEST(AssimpExport, EveryFormatKeepsShapeAndPlace)
{
    const TempDirectory folder;
    const tbRef<tbModel> model = makeModel();
    tbBox box;
    model->getBoundingVolume(box);
    for (const char* extension : {"glb", "gltf", "obj", "ply", "stl", "3mf", "dae", "x", "fbx"})
    {
        const std::string path = folder.path(std::string("shape.") + extension);
        ASSERT_TRUE(tbLoader::exportFile(model.get(), path.c_str()))
            << extension << tbLoader::getErrorMessage();
        // What comes back is brought to one form: triangles where they are.
        const std::string flat = folder.path(std::string(extension) + ".stl");
        ASSERT_TRUE(tbLoader::exportFile(read(path).get(), flat.c_str()));
        const std::string bytes = readAll(flat);
        ASSERT_EQ(bytes.size(), 84u + 50u * 6u) << extension;
        tbBox flatBox;
        tbBox firstBox;
        read(flat)->getBoundingVolume(flatBox);
        read(folder.path("glb.stl"))->getBoundingVolume(firstBox);
        EXPECT_TRUE(tbtest::near(*flatBox.getMin(), *firstBox.getMin())) << extension;
        EXPECT_TRUE(tbtest::near(*flatBox.getMax(), *firstBox.getMax())) << extension;
    }
    EXPECT_EQ(readAll(folder.path("shape-1.png")).substr(1, 3), "PNG"); // the image that the graph carries
    EXPECT_NE(readAll(folder.path("shape.mtl")).find("shape-1.png"), std::string::npos);
}

TEST(AssimpExport, FailuresLeaveOldFilesAndSayWhy)
{
    const TempDirectory folder;
    const tbRef<tbModel> model = makeModel();
    tbRef<tbModel> empty = new tbModel;
    tbRef<tbGroup> points = new tbGroup;
    points->addChild(makePart(tbMesh::POINTS, 3, tbVertexArray::VT_POSITION, "points").get());
    const tbRef<tbMaterial> material = new tbMaterial;
    for (const char* old : {"old.stl", "old.obj"})
        folder.write(old, "old");
    std::filesystem::create_directory(folder.path("taken.mtl")); // where a side file would go
    expectFailure(*points, folder.path("old.stl"), "no triangles");
    expectFailure(*empty, folder.path("old.obj"), "nothing to draw");
    expectFailure(*model, folder.path("no/where.glb"), "where.glb");
    expectFailure(*model, folder.path("m.blend"), "not written");
    expectFailure(*material, folder.path("m.glb"), "tbMaterial is no model");
    expectFailure(*model, folder.path("taken.obj"), "");
    EXPECT_EQ(readAll(folder.path("old.stl")) + readAll(folder.path("old.obj")), "oldold");
    EXPECT_EQ(folder.count(), 3);
}

TEST(AssimpExport, TheMaterialThatIsInEffectCounts)
{
    const TempDirectory folder;
    makeModel();
    using Mode = tbTrait::MODE;
    const std::tuple<Mode, Mode, const char*> cases[] = {
        {tbTrait::ON, tbTrait::ON, "below"},       {tbTrait::ON, tbTrait::OFF, "above"},
        {tbTrait::OVERRIDE, tbTrait::ON, "above"}, {tbTrait::OVERRIDE, tbTrait::FORCE, "below"},
        {tbTrait::OFF, tbTrait::OFF, ""},          {tbTrait::FORCE, tbTrait::ON, "below"},
    };
    const std::string path = folder.path("modes.obj");
    for (const auto& [aboveMode, belowMode, inEffect] : cases)
    {
        tbRef<tbStyle> above = new tbStyle;
        const tbRef<tbStyle> below = makePart(tbMesh::TRIANGLES, 3, tbVertexArray::VT_POSITION, "part");
        above->addChild(below.get());
        for (const auto& [style, mode, name] :
             {std::tuple{above.get(), aboveMode, "above"}, std::tuple{below.get(), belowMode, "below"}})
        {
            tbRef<tbMaterial> material = new tbMaterial;
            material->setName(name);
            material->setApplyMode(mode);
            style->addTrait(material.get());
        }
        ASSERT_TRUE(tbLoader::exportFile(above.get(), path.c_str())) << tbLoader::getErrorMessage();
        const std::string text = readAll(path) + readAll(folder.path("modes.mtl"));
        for (const std::string name : {"above", "below"})
            EXPECT_EQ(text.find("usemtl " + name) != std::string::npos, name == inEffect)
                << aboveMode << belowMode << '\n'
                << text;
    }
}

TEST(AssimpExport, TakesWhatASwitchShowsAndEndsOnLattices)
{
    const TempDirectory folder;
    makeModel();
    tbRef<tbSwitch> choice = new tbSwitch;
    for (const int count : {3, 6})
        choice->addChild(makePart(tbMesh::TRIANGLES, count, tbVertexArray::VT_POSITION, "part").get());
    choice->selectChild(1);
    ASSERT_TRUE(tbLoader::exportFile(choice.get(), folder.path("choice.stl").c_str()));
    EXPECT_EQ(readAll(folder.path("choice.stl")).size(), 84u + 50u * 2u);

    tbRef<tbGroup> below = new tbGroup;
    for (int level = 0; level < 40; ++level) // two ways down at each level
    {
        tbRef<tbGroup> above = new tbGroup;
        for (int side = 0; side < 2; ++side)
        {
            tbRef<tbGroup> way = new tbGroup;
            way->addChild(below.get());
            above->addChild(way.get());
        }
        below = above;
    }
    expectFailure(*below, folder.path("lattice.glb"), "paths");
}
