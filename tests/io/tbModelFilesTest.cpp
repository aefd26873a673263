#include <tamber/io/tbModelFiles.h>
#include <tamber/kernel/tbFilePath.h>

#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace
{
using tbtest::TempDirectory;
using tbtest::writeAll;

struct ModelFiles : testing::Test
{
    ModelFiles()
    {
        std::filesystem::create_directories(top.path("models/sub"));
        std::filesystem::create_directories(top.path("models2"));
        std::filesystem::create_directories(top.path("found"));
        for (const char* name :
             {"models/m.obj", "models/sub/near.mtl", "models2/a.mtl", "secret", "found/f.mtl"})
            writeAll(top.path(name), name);
    }

    ~ModelFiles() override
    {
        tbDeleteFilePaths();
        tbModelFiles::enableOpenAnywhere(false);
    }

    TempDirectory top;
    std::string model = top.path("models/m.obj");
};

bool opens(tbModelFiles& files, const std::string& name)
{
    const char* path = files.open(name.c_str());
    if (path)
        files.close(std::string(path).c_str());
    return path != nullptr;
}
} // namespace

TEST_F(ModelFiles, AreBelowTheModelOrTheSearchPaths)
{
    tbtest::allowMessages("is not opened");
    tbAddFilePath(top.path("found").c_str());
    const std::pair<std::string, bool> rows[] = {
        {"m.obj", true},
        {"sub/near.mtl", true},
        {"sub\\near.mtl", true},
        {"sub/../m.obj", true},
        {"../models/m.obj", true},
        {"../found/f.mtl", true},
        {"sub/..\\../models\\sub//near.mtl", true},
        {"missing.mtl", false},
        {"sub", false},
        {"", false},
        {"../secret", false},
        {"..\\secret", false},
        {"sub/../../secret", false},
        {"../models2/a.mtl", false}, // whose beginning is that of the model's directory
        {"../../../../../../../../etc/passwd", false},
    };
    for (const bool isAbsolute : {true, false})
    {
        const std::string relative = std::filesystem::relative(model).string();
        tbModelFiles files(isAbsolute ? model.c_str() : relative.c_str());
        const std::string directory =
            isAbsolute ? top.path("models/") : "./" + relative.substr(0, relative.size() - 5);
        for (const auto& [name, isOpened] : rows)
            EXPECT_EQ(opens(files, name.empty() ? "" : directory + name), isOpened) << directory << name;
        EXPECT_EQ(files.exists((directory + "../secret").c_str()), false);
    }
}

TEST_F(ModelFiles, AreNoOtherMachinesAndNoDevices)
{
    tbtest::allowMessages("is not opened");
    tbModelFiles files(model.c_str());
    for (const char* name : {"\\\\machine\\share\\x", "//machine/share/x", "\\\\?\\UNC\\machine\\share\\x",
                             "\\\\.\\pipe\\x", "/dev/zero", "C:\\Windows\\win.ini", "CON", "NUL", "\x1B[2J"})
    {
        EXPECT_FALSE(opens(files, name)) << name;
        EXPECT_FALSE(files.exists(name)) << name;
    }
#ifdef _WIN32
    EXPECT_FALSE(opens(files, top.path("models\\NUL")));
    EXPECT_FALSE(opens(files, model + ":stream"));
#endif
}

TEST_F(ModelFiles, LinksAreJudgedByWhereTheyLead)
{
    std::error_code error;
    std::filesystem::create_symlink(top.path("secret"), top.path("models/out"), error);
    std::filesystem::create_directory_symlink(top.path(""), top.path("models/up"), error);
    std::filesystem::create_symlink(top.path("models/sub/near.mtl"), top.path("models/in"), error);
    std::filesystem::create_directory_symlink(top.path("models"), top.path("alias"), error);
    if (error)
        GTEST_SKIP() << "no links here: " << error.message();
    tbtest::allowMessages("is not opened");
    tbModelFiles files(model.c_str());
    EXPECT_FALSE(opens(files, top.path("models/out")));
    EXPECT_FALSE(opens(files, top.path("models/up/secret")));
    EXPECT_TRUE(opens(files, top.path("models/in")));
    tbModelFiles aliased(top.path("alias/m.obj").c_str());
    EXPECT_TRUE(opens(aliased, top.path("alias/sub/near.mtl")));
    EXPECT_TRUE(opens(aliased, top.path("models/sub/near.mtl")));
    EXPECT_FALSE(opens(aliased, top.path("alias/../secret")));
}

TEST_F(ModelFiles, AreOpenOnceAndNestToALimit)
{
    tbtest::allowMessages("is not opened");
    tbModelFiles files(model.c_str());
    std::string first;
    for (int i = 0; i < tbModelFiles::MAX_OPEN; ++i)
    {
        const std::string name = top.path("models/" + std::to_string(i));
        writeAll(name, "x");
        const char* path = files.open(name.c_str());
        ASSERT_TRUE(path);
        if (i == 0)
            first = path;
        EXPECT_FALSE(files.open(name.c_str()));
    }
    EXPECT_FALSE(files.open(model.c_str()));
    EXPECT_NE(std::string(files.getRefusal()).find("deeper than 16"), std::string::npos);
    files.close(first.c_str());
    EXPECT_TRUE(files.open(model.c_str()));
}

TEST_F(ModelFiles, RefusalsAreSaidOnceAndCanBeSwitchedOff)
{
    tbModelFiles files(model.c_str());
    tbtest::expectMessage("m.obj: \"" + top.path("secret") + "\" is not opened: it lies outside");
    EXPECT_FALSE(files.exists(top.path("secret").c_str()));
    EXPECT_FALSE(files.open(top.path("secret").c_str()));
    tbModelFiles::enableOpenAnywhere(true);
    EXPECT_TRUE(opens(files, top.path("secret")));
    tbtest::expectMessage("no regular file");
    EXPECT_FALSE(opens(files, top.path("models")));
}
