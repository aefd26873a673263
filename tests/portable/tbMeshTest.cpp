#include <portable/tbMesh.h>

#include <tamber/graph/tbTransform.h>

#include <tests/support/Near.h>
#include <tests/support/Vertices.h>

#include <cmath>

#include <gtest/gtest.h>

using tbtest::makeVertices;

namespace
{
/// A triangle, and a fourth vertex far off that it does not use.
tbRef<tbMesh> makeTriangle()
{
    const unsigned int indices[] = {0, 1, 2};
    tbRef<tbMesh> mesh = new tbMesh;
    mesh->set(tbMesh::TRIANGLES, makeVertices({{-1, 0, 0}, {3, 0, 0}, {1, 2, 0}, {100, 0, 0}}), indices, 3);
    return mesh;
}
} // namespace

TEST(Mesh, SetRefusesWhatCannotBeDrawn)
{
    const tbRef<tbMesh> mesh = makeTriangle();
    tbVertexArray* before = mesh->getVertexArray();
    const unsigned int beyond[] = {0, 1, 4};

    EXPECT_FALSE(mesh->setIndices(tbMesh::TRIANGLES, beyond, 3));
    EXPECT_FALSE(mesh->setIndices(tbMesh::TRIANGLES, beyond, 2));
    EXPECT_FALSE(mesh->setIndices(tbMesh::TRIANGLES, nullptr, 3));
    EXPECT_FALSE(mesh->setIndices(tbMesh::POINTS, beyond, -1));
    EXPECT_FALSE(mesh->setIndices(tbMesh::PRIMITIVE(3), beyond, 0));
    EXPECT_FALSE(mesh->setVertexArray(nullptr));

    EXPECT_EQ(mesh->getVertexArray(), before);
    EXPECT_EQ(mesh->getNumPrimitives(), 1);
    EXPECT_EQ(mesh->getIndices()[2], 2u);

    before->setNum(2, before->getVertexType());
    mesh->changed();
    EXPECT_EQ(mesh->getNumPrimitives(), 0);
    EXPECT_TRUE(mesh->getBoundingBox().isEmpty());
}

TEST(Mesh, BoundsCoverTheVerticesInUseThatAreNumbers)
{
    const tbRef<tbTransform> transform = new tbTransform;
    transform->setXYZ(10, 0, 0);
    const tbRef<tbMesh> mesh = makeTriangle();
    transform->addChild(mesh.get());
    EXPECT_TRUE(tbtest::near(*mesh->getBoundingSphere().getCenter(), tbVec3(1, 1, 0)));
    EXPECT_NEAR(mesh->getBoundingSphere().getRadius(), 2.236068f, 1e-5f);
    tbBox box;
    mesh->getBoundingVolume(box);
    EXPECT_TRUE(tbtest::near(*box.getMin(), tbVec3(-1, 0, 0)));
    EXPECT_TRUE(tbtest::near(*box.getMax(), tbVec3(3, 2, 0)));
    tbSphere sphere;
    transform->getBoundingVolume(sphere);
    EXPECT_TRUE(tbtest::near(*sphere.getCenter(), tbVec3(11, 1, 0)));

    const unsigned int overAndOver[] = {0, 1, 2, 2, 1, 0, 0, 2, 1};
    mesh->setIndices(tbMesh::TRIANGLES, overAndOver, 9);
    EXPECT_EQ(mesh->getBoundingSphere(), tbSphere(tbVec3(1, 1, 0), std::sqrt(5.0f)));
    EXPECT_TRUE(tbtest::near(*mesh->getBoundingBox().getMax(), tbVec3(3, 2, 0)));

    mesh->set(tbMesh::LINES, makeVertices({{0, 0, 0}, {0, 0, 4}, {0, 0, 9}}), nullptr, 0); // all, in order
    EXPECT_EQ(mesh->getNumPrimitives(), 1);
    EXPECT_TRUE(tbtest::near(*mesh->getBoundingBox().getMax(), tbVec3(0, 0, 9)));
    mesh->set(tbMesh::POINTS, makeVertices({{NAN, 0, 0}, {INFINITY, 0, 0}}), nullptr, 0);
    EXPECT_TRUE(mesh->getBoundingBox().isEmpty());
    EXPECT_TRUE(mesh->getBoundingSphere().isEmpty());
}

TEST(Mesh, CopiesOwnTheirVerticesAndClonesShareThem)
{
    const tbRef<tbMesh> mesh = makeTriangle();
    const tbRef<tbGroup> copy = mesh->makeCopy();
    const tbRef<tbGroup> clone = mesh->makeClone();
    auto* copied = static_cast<tbMesh*>(copy.get());
    auto* cloned = static_cast<tbMesh*>(clone.get());

    EXPECT_NE(copied->getVertexArray(), mesh->getVertexArray());
    EXPECT_NE(copied->getIndices(), mesh->getIndices());
    EXPECT_EQ(copied->getNumPrimitives(), 1);
    EXPECT_EQ(cloned->getVertexArray(), mesh->getVertexArray());
    EXPECT_EQ(cloned->getIndices(), mesh->getIndices());
    EXPECT_TRUE(cloned->anyTravFlags(tbGroup::TF_HAS_GEOMETRY));
    EXPECT_EQ(cloned->getBoundingSphere(), mesh->getBoundingSphere());
}
