#include <portable/tbFaceCull.h>
#include <portable/tbMaterial.h>
#include <portable/tbMesh.h>
#include <portable/tbTexture.h>
#include <tamber/graph/tbModel.h>
#include <tamber/io/tbLoader.h>
#include <tamber/io/tbModelFiles.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbStyle.h>
#include <tamber/render/tbVertexArray.h>

#include <tests/support/Messages.h>
#include <tests/support/Near.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

namespace
{
/// One triangle that two nodes use: "left" at (1, 2, 3), "right" turned by 90 degrees about the file's Y.
constexpr const char* TWO_NODES = R"({
 "asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
 "nodes": [{"name": "top", "children": [1, 2]},
           {"name": "left", "mesh": 0, "translation": [1, 2, 3]},
           {"name": "right", "mesh": 0, "rotation": [0, 0.70710678, 0, 0.70710678]}],
 "meshes": [{"name": "triangle", "primitives": [{"attributes": {"POSITION": 0}, "indices": 1, "material": 0}]}],
 "materials": [{"name": "paint", "doubleSided": true,
                "pbrMetallicRoughness": {"baseColorFactor": [0.25, 0.5, 0.75, 1]}}],
 "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
                "min": [0, 0, 0], "max": [2, 1, 0]},
               {"bufferView": 1, "componentType": 5123, "count": 3, "type": "SCALAR"}],
 "bufferViews": [{"buffer": 0, "byteOffset": 0, "byteLength": 36},
                 {"buffer": 0, "byteOffset": 36, "byteLength": 6}],
 "buffers": [{"byteLength": 42, "uri":
  "data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAAAAQAAAAAAAAAAAAAAAAAAAgD8AAAAAAAABAAIA"}]
})";

constexpr const char* TEXTURED_SQUARE = "mtllib square.mtl\n"
                                        "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
                                        "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
                                        "usemtl brick\nf 1/1 2/2 3/3 4/4\n";
constexpr const char* TEXTURED_SQUARE_MATERIAL = "newmtl brick\nKd 0.5 0.25 0.125\nd 0.5\nmap_Kd brick.png\n";

constexpr const char* STANDING_TRIANGLE =
    "solid s\nfacet normal 0 1 0\nouter loop\nvertex 0 0 0\nvertex 0 0 5\n"
    "vertex 1 0 0\nendloop\nendfacet\nendsolid s\n";

/// Writes a file and imports it.
tbRef<tbModel> import(const std::string& name, const char* text)
{
    tbtest::allowMessages("plug-in");
    tbPlugIn::load("tbAssimpLoader.dll");
    std::ofstream(name) << text;
    return static_cast<tbModel*>(tbLoader::importFile(name.c_str()));
}

template <class Trait>
Trait* findTrait(const tbStyle& style)
{
    for (int i = 0; i < style.getNumVisualTraits(); ++i)
        if (style.getVisualTrait(i)->isOfType(Trait::getClassType()))
            return static_cast<Trait*>(style.getVisualTrait(i));
    return nullptr;
}

/// The only style below `node`.
tbStyle* styleBelow(const tbGroup* node)
{
    while (!node->isOfType(tbStyle::getClassType()))
        node = node->getChild(0);
    return const_cast<tbStyle*>(static_cast<const tbStyle*>(node));
}
} // namespace

TEST(AssimpLoader, TakesNamesHierarchyAndPlacementsAndTurnsYUpIntoZUp)
{
    const tbRef<tbModel> model = import("nodes.gltf", TWO_NODES);
    ASSERT_TRUE(model && model->isOfType(tbModel::getClassType()));
    auto* top = model->findGroup("top");
    ASSERT_TRUE(top && top->getNumChildren() == 2);
    tbVec3 place;
    auto* left = static_cast<tbTransform*>(top->getChild(0));
    left->getXYZ(place);
    EXPECT_STREQ(left->getName(), "left");
    EXPECT_EQ(place, tbVec3(1, 2, 3));

    // The file's X, turned by 90 degrees about its Y, is its -Z.
    auto* right = static_cast<tbTransform*>(top->getChild(1));
    tbVec3 x;
    x.xformVec(tbVec3(1, 0, 0), *right->getMatrix());
    EXPECT_TRUE(tbtest::near(x, tbVec3(0, 0, -1)));

    // (1, 2, 3) and a triangle of width 2 and height 1 have become (1, -3, 2), the height now along Z.
    right->detach();
    tbBox box;
    model->getBoundingVolume(box);
    box.getCenter(place);
    EXPECT_TRUE(tbtest::near(place, tbVec3(2.0f, -3.0f, 2.5f)));
}

TEST(AssimpLoader, LeavesZUpFormatsAlone)
{
    const tbRef<tbModel> model = import("standing.stl", STANDING_TRIANGLE);
    ASSERT_TRUE(model);
    tbBox box;
    auto* style = styleBelow(model.get());
    style->getChild(0)->getBoundingVolume(box);
    EXPECT_TRUE(tbtest::near(*box.getMax(), tbVec3(1, 0, 5)));
    for (const tbGroup* node = style->getParent(0); node != model.get(); node = node->getParent(0))
        EXPECT_TRUE(static_cast<const tbTransform*>(node)->isIdentity());
}

TEST(AssimpLoader, NodesShareMeshesWithTheirMaterials)
{
    const tbRef<tbModel> model = import("shared.gltf", TWO_NODES);
    ASSERT_TRUE(model);
    tbStyle* style = styleBelow(model->findGroup("left"));
    EXPECT_EQ(style, styleBelow(model->findGroup("right")));
    model->updateSharedInstances();
    EXPECT_EQ(style->getNumParents(), 2);
    auto* mesh = static_cast<tbMesh*>(style->getChild(0));
    EXPECT_EQ(mesh->getPrimitive(), tbMesh::TRIANGLES);
    EXPECT_EQ(mesh->getNumPrimitives(), 1);
    EXPECT_TRUE(mesh->getVertexArray()->getVertexType() & tbVertexArray::VT_NORMAL);

    const auto* material = findTrait<tbMaterial>(*style);
    const auto* cull = findTrait<tbFaceCull>(*style);
    ASSERT_TRUE(material && cull);
    EXPECT_STREQ(material->getName(), "paint");
    EXPECT_TRUE(tbtest::near(material->getDiffuse(), tbVec3(0.25f, 0.5f, 0.75f)));
    EXPECT_EQ(material->getOpacity(), 1.0f);
    EXPECT_EQ(cull->getFace(), tbFaceCull::CULL_NONE);
}

TEST(AssimpLoader, TakesTexturesByPathAndTriangulates)
{
    std::ofstream("square.mtl") << TEXTURED_SQUARE_MATERIAL;
    const tbRef<tbModel> model = import("square.obj", TEXTURED_SQUARE);
    ASSERT_TRUE(model);
    const tbStyle& style = *styleBelow(model.get());
    const auto* texture = findTrait<tbTexture>(style);
    ASSERT_TRUE(texture);
    EXPECT_STREQ(texture->getFileName(), "brick.png");
    EXPECT_EQ(findTrait<tbMaterial>(style)->getOpacity(), 0.5f);
    const auto* mesh = static_cast<const tbMesh*>(style.getChild(0));
    EXPECT_EQ(mesh->getNumPrimitives(), 2);
    EXPECT_EQ(mesh->getVertexArray()->getNumTexCoordSets(), 1);
}

TEST(AssimpLoader, OpensNoFilesOutsideTheModelsDirectory)
{
    std::filesystem::create_directories("inside");
    std::ofstream("secret.mtl") << TEXTURED_SQUARE_MATERIAL;
    std::ofstream("inside/own.mtl") << TEXTURED_SQUARE_MATERIAL;
    const std::string outside = std::filesystem::absolute("secret.mtl").string();
    std::error_code error;
    std::filesystem::create_symlink(outside, "inside/link.mtl", error);
    const auto opacityWith = [](const std::string& library)
    {
        std::string text = TEXTURED_SQUARE;
        text.replace(text.find("square.mtl"), 10, library);
        const tbRef<tbModel> model = import("inside/m.obj", text.c_str());
        return model ? findTrait<tbMaterial>(*styleBelow(model.get()))->getOpacity() : -1.0f;
    };
    EXPECT_EQ(opacityWith("own.mtl"), 0.5f);
    tbtest::allowMessages("is not opened: it lies outside");
    for (const std::string& library : {std::string("../secret.mtl"), outside, std::string("link.mtl")})
        EXPECT_EQ(opacityWith(library), 1.0f) << library; // the model comes without its material
    EXPECT_FALSE(tbtest::takeMessages().empty());
    tbModelFiles::enableOpenAnywhere(true);
    EXPECT_EQ(opacityWith("../secret.mtl"), 0.5f);
    tbModelFiles::enableOpenAnywhere(false);
}

TEST(AssimpLoader, ScenesThatNameThemselvesComeToAnEnd)
{
    constexpr const char* SCENE = "LWSC\n3\n\nLoadObjectLayer 1 self.lws\nShowObject 7 1\n";
    tbtest::allowMessages("it is being read already");
    import("self.lws", SCENE);
    EXPECT_FALSE(tbtest::takeMessages().empty());
}
