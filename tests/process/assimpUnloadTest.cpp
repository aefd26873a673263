// The loader's module stays while what it made lives, and goes afterwards.

#include <tamber/graph/tbGroup.h>
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/volume/tbSphere.h>

#include <tests/support/Messages.h>

#include <fstream>

#include <gtest/gtest.h>

namespace
{
constexpr const char* TRIANGLE = "v 0 0 0\nv 2 0 0\nv 0 0 2\nf 1 2 3\n";
}

TEST(AssimpLoader, ModuleStaysWhileItsObjectsLive)
{
    tbtest::allowMessages("plug-in");
    tbInit(nullptr);
    std::ofstream("triangle.obj") << TRIANGLE;
    tbRef<tbGroup> model = static_cast<tbGroup*>(tbLoader::importFile("triangle.obj"));
    if (!model && tbLoader::getError() == tbLoader::LOADER_UNKNOWN_FORMAT)
        GTEST_SKIP() << "built without the loader";
    ASSERT_TRUE(model);

    tbPlugIn::unloadAll();
    EXPECT_TRUE(tbPlugIn::find("tbAssimpLoader.dll"));
    tbSphere sphere;
    model->getBoundingVolume(sphere);
    EXPECT_FALSE(sphere.isEmpty());

    model.reset();
    tbPlugIn::unloadAll();
    EXPECT_FALSE(tbPlugIn::find("tbAssimpLoader.dll"));
    EXPECT_FALSE(tbPlugIn::find("tbPortableKernel.dll"));
    EXPECT_EQ(tbType::findType("tbMesh"), nullptr);

    model = static_cast<tbGroup*>(tbLoader::importFile("triangle.obj"));
    EXPECT_TRUE(model);
}
