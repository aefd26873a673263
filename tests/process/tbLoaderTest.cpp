// Plug-ins and loaders as programs meet them: found, loaded, unloaded and loaded again.
#include <tamber/io/tbLoader.h>

#include <tamber/graph/tbModel.h>
#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/volume/tbSphere.h>
#include <tests/support/Environment.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

using tbtest::buildFile;
using tbtest::Record;

namespace
{

const std::filesystem::path loaderFile = std::filesystem::absolute(TEST_LOADER_FILE);

class Loader : public testing::Test
{
protected:
    Loader()
    {
        tbtest::allowMessages();
        tbtest::setVariable("TAMBER_PLUGIN_PATH", loaderFile.parent_path().string());
    }
    /// Has a file load its list of plug-ins, which has these module names.
    void loadListed(const std::vector<std::string>& modules)
    {
        const std::string record = Record().plugIns(modules, int(modules.size()));
        tbFile list;
        ASSERT_TRUE(list.open(directory.write("list.tb", buildFile({{"tbPlugIns", record}})).c_str(), "r"));
        tbPlugIn::loadPlugIns(&list);
    }
    /// The object that a file becomes.
    static tbRef<tbBase> import(const std::string& path) { return tbLoader::importFile(path.c_str()); }

    tbtest::TempDirectory directory;
};

int countLines(const std::string& part)
{
    int number = 0;
    for (const std::string& line : tbtest::takeMessages())
        number += line.find(part) != std::string::npos ? 1 : 0;
    return number;
}

} // namespace

TEST_F(Loader, IsUnloadedAfterTheSearchAndComesBackForItsFiles)
{
    tbInit(nullptr);
    EXPECT_EQ(tbPlugIn::find("tbTestLoader.dll"), nullptr);
    const std::string path = directory.write("thing.TST", "a thing");
    for (int round = 0; round < 2; ++round)
    {
        tbRef<tbBase> thing = import(path);
        ASSERT_TRUE(thing);
        EXPECT_STREQ(thing->getName(), "a thing");
        tbPlugIn::unloadAll();
        const tbPlugIn* plugIn = tbPlugIn::find("TBTESTLOADER.DLL");
        ASSERT_TRUE(plugIn) << "one of its objects lives";
        EXPECT_EQ(plugIn->getVersion(), 0x03020001u);
        EXPECT_EQ(plugIn->getRefCount(), 1);
        EXPECT_EQ(thing->getType()->getPlugIn(), plugIn);
        thing.reset();
        tbPlugIn::unloadAll();
        EXPECT_EQ(tbPlugIn::find("tbTestLoader.dll"), nullptr);
        EXPECT_EQ(tbType::findType("tbTestLoaded"), nullptr);
    }
    EXPECT_FALSE(import(directory.write("empty.tst", "")));
    EXPECT_EQ(tbLoader::getError(), tbLoader::LOADER_UNKNOWN_FORMAT);
    EXPECT_STREQ(tbLoader::getErrorMessage(), "an empty file");
}

TEST_F(Loader, DebugBuildStandsForTheReleaseBuild)
{
    const std::string debug = directory.path("tbTestLoader-dbg" + loaderFile.extension().string());
    std::filesystem::copy_file(loaderFile, debug);
    const int before = tbPlugIn::getNum();
    tbtest::takeMessages();
    tbPlugIn* plugIn = tbPlugIn::load(debug.c_str());
    ASSERT_TRUE(plugIn);
    const std::vector<std::string> lines = tbtest::takeMessages();
    EXPECT_EQ(lines, (std::vector<std::string>{"Attempting to load plug-in: TBTESTLOADER.DLL ",
                                               "Loading plug-in:   TBTESTLOADER.DLL"}));
    EXPECT_EQ(tbPlugIn::load("tbtestloader.dll"), plugIn);
    EXPECT_EQ(tbPlugIn::getNum(), before + 1);
    EXPECT_EQ(tbPlugIn::find(plugIn->getModule()), plugIn);
    EXPECT_TRUE(plugIn->unload());
    EXPECT_EQ(tbPlugIn::getNum(), before);
}

TEST_F(Loader, WhatCannotBeImportedSaysWhy)
{
    tbInit(nullptr);
    const std::pair<std::string, tbLoader::LOADER_ERROR> files[] = {
        {"", tbLoader::LOADER_FILE_NOT_FOUND},
        {directory.path("absent.tst"), tbLoader::LOADER_FILE_NOT_FOUND},
        {directory.write("noextension", "x"), tbLoader::LOADER_NO_EXTENSION},
        {directory.write("strange.xyz", "x"), tbLoader::LOADER_UNKNOWN_FORMAT}};
    for (const auto& [path, error] : files)
    {
        EXPECT_EQ(tbLoader::importFile(path.empty() ? nullptr : path.c_str()), nullptr) << path;
        EXPECT_EQ(tbLoader::getError(), error) << path;
    }
    const std::string message = tbLoader::getErrorMessage();
    EXPECT_NE(message.find(" tst"), std::string::npos) << message;
    EXPECT_NE(message.find(loaderFile.parent_path().string()), std::string::npos) << message;
    EXPECT_FALSE(import(directory.write("root.tb", buildFile({{"tbNobodysClass", "data"}}))));
    EXPECT_EQ(tbLoader::getError(), tbLoader::LOADER_UNKNOWN_FORMAT);
    const std::string group = buildFile({{"tbGroup", Record().object().word(1).word(1).list({})}});
    EXPECT_EQ(tbModel::import(directory.write("group.tb", group).c_str()), nullptr) << "of another class";
}

TEST_F(Loader, GroupsAreExportedNativelyWithTheirPlugIns)
{
    tbInit(nullptr);
    tbRef<tbModel> model = new tbModel;
    model->setName("town");
    tbLoader::setSaveDirectory(directory.path("").c_str());
    ASSERT_TRUE(tbLoader::exportFile(model.get(), "scene")) << tbLoader::getErrorMessage();
    tbLoader::setSaveDirectory(nullptr);
    tbFile saved;
    ASSERT_TRUE(saved.open(directory.path("scene.tb").c_str(), "r"));
    tbEntry* list = saved.findEntry("tbPlugIns");
    ASSERT_TRUE(list && saved.readEntry(list));
    EXPECT_EQ(list->readInt(), tbPlugIn::getNum());
    saved.close();
    const tbRef<tbBase> read = import(directory.path("scene.tb"));
    ASSERT_TRUE(read);
    EXPECT_STREQ(read->getName(), "town");
    EXPECT_EQ(read->getRefCount(), 1);

    EXPECT_TRUE(tbLoader::exportFile(model.get(), directory.path("foreign.tst").c_str()));
    EXPECT_EQ(tbtest::readAll(directory.path("foreign.tst")), "town");
    tbLoader::setSaveDirectory(std::filesystem::path(directory.path("x")).parent_path().string().c_str());
    EXPECT_TRUE(tbLoader::exportFile(model.get(), "below.tst"));
    tbLoader::setSaveDirectory(nullptr);
    EXPECT_EQ(tbtest::readAll(directory.path("below.tst")), "town");
    EXPECT_FALSE(tbLoader::exportFile(model.get(), directory.path("absent/scene.tb").c_str()));
    EXPECT_EQ(tbLoader::getError(), tbLoader::LOADER_FILE_NOT_FOUND);
    EXPECT_FALSE(tbLoader::exportFile(nullptr, "scene"));
}

TEST_F(Loader, OtherClassesNeedAFileTypeOfTheirOwn)
{
    tbInit(nullptr);
    tbRef<tbBase> thing = import(directory.write("thing.tst", "a thing"));
    ASSERT_TRUE(thing);
    EXPECT_FALSE(tbLoader::exportFile(thing.get(), directory.path("thing").c_str()));
    EXPECT_EQ(tbLoader::getError(), tbLoader::LOADER_NO_FILE_TYPE);
    EXPECT_TRUE(tbLoader::addTamberFileType(thing->getType(), "thing"));
    EXPECT_FALSE(tbLoader::addTamberFileType(thing->getType(), "more"));
    EXPECT_FALSE(tbLoader::addTamberFileType(tbGroup::getClassType(), "THING"));
    EXPECT_TRUE(tbLoader::exportFile(thing.get(), directory.path("thing").c_str()));
    EXPECT_TRUE(tbFile::isTamberFormat(directory.path("thing.thing").c_str()));
    thing.reset();
    tbPlugIn::unloadAll();
    EXPECT_EQ(tbLoader::getNumTamberFileTypes(), 0) << "a class that went is no file type";
    const tbRef<tbBase> again = import(directory.path("thing.thing"));
    ASSERT_TRUE(again) << "the file brought its plug-in in";
    EXPECT_STREQ(again->getName(), "a thing");
}

TEST_F(Loader, FilesLoadOnlyBareNamesOfPlugInsAndEachOnce)
{
    loadListed({"libc.so.6", "notaplugin.dll", "tbAbsent.dll", "TBABSENT.dll", "dir/tbAbsent.so", ""});
    EXPECT_EQ(countLines("Attempting to load plug-in: TBABSENT.DLL"), 1);
    tbPlugIn::enableDynamicPlugIns(false);
    loadListed({"tbTestLoader.dll"});
    EXPECT_EQ(countLines("plug-in"), 0);
    tbPlugIn::enableDynamicPlugIns(true);
    // A file of that name beside the list is not what is loaded: a list names modules, not places.
    directory.write("tbTestLoader" + loaderFile.extension().string(), "no module");
    loadListed({directory.path("tbTestLoader.so")});
    EXPECT_NE(tbPlugIn::find("tbTestLoader.dll"), nullptr);
    loadListed(std::vector<std::string>(300, "tbAbsent.dll"));
    EXPECT_EQ(countLines("more plug-ins than a file may list"), 1);
}

TEST_F(Loader, ThatWasFoundOnceComesBackOnlyWhereThePolicyLetsIt)
{
    const std::string thing = directory.write("thing.tst", "a thing");
    tbInit(nullptr);
    tbPlugIn::setSearchPolicy(tbPlugIn::SEARCH_NONE);
    EXPECT_FALSE(import(thing));
    EXPECT_STREQ(tbLoader::getErrorMessage(),
                 "the loader TBTESTLOADER.DLL cannot be loaded any more: it is in none "
                 "of the plug-in directories");
    tbPlugIn::load(loaderFile.string().c_str());
    tbPlugIn::unloadAll();
    const tbRef<tbBase> object = import(thing);
    EXPECT_TRUE(object) << "the application has named the path itself";
}

TEST_F(Loader, OfForeignFilesStaysWhileWhatItMadeLives)
{
    tbInit(nullptr);
    const std::string triangle = directory.write("triangle.obj", "v 0 0 0\nv 2 0 0\nv 0 0 2\nf 1 2 3\n");
    tbRef<tbGroup> model = static_cast<tbGroup*>(tbLoader::importFile(triangle.c_str()));
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
    model = static_cast<tbGroup*>(tbLoader::importFile(triangle.c_str()));
    EXPECT_TRUE(model);
}
