#include <tests/support/Environment.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <tamber/kernel/tbFilePath.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbSettings.h>
#include <tamber/kernel/tbSqrt.h>
#include <tamber/kernel/tbString.h>
#include <tamber/kernel/tbVersion.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

namespace fs = std::filesystem;

TEST(Version, WordHoldsThreeNumbersAndMasksNone)
{
    EXPECT_EQ(tbGetVersion(), 0x01020000u);
    EXPECT_EQ(tbMakeVersion(1, 2, 0x10000), tbMakeVersion(1, 3, 0));
    EXPECT_EQ(tbMakeVersion(1, 0x100, 5), tbMakeVersion(1, 0, 5) | tbMakeVersion(1, 0, 0));
    EXPECT_EQ(tbGetMinorVersion(tbGetVersion()), 2u);
    EXPECT_STREQ(tbGetSignature(), "Tamber Release 1.2 0 Feb  3 1999");
}

TEST(String, HashXorsByteByByteAndCounts)
{
    EXPECT_EQ(tbStrToInt(nullptr), 0u);
    EXPECT_EQ(tbStrToInt(""), 0u);
    EXPECT_EQ(tbStrToInt("a"), 0x62u);
    EXPECT_EQ(tbStrToInt("ab"), (0x62u ^ 0x6200u) + 1);
    EXPECT_EQ(tbStrToInt("\xff\xff\xff\xff"), 0xFFFFFE03u);
}

TEST(String, ComparesBytesUnsignedOrWithoutCase)
{
    EXPECT_EQ(tbStrcmp(nullptr, nullptr, false), 0);
    EXPECT_EQ(tbStrcmp(nullptr, "x", false), -1);
    EXPECT_EQ(tbStrcmp("x", nullptr, true), -1);
    EXPECT_EQ(tbStrcmp("\x80", "a", false), 1);
    EXPECT_EQ(tbStrcmp("abc", "abd", false), -1);
    EXPECT_EQ(tbStrcmp("TbGroup", "tBgROUP", true), 0);
}

TEST(String, FileNameStandsBehindTheLastSeparatorOfEitherKind)
{
    EXPECT_STREQ(tbGetFileName("dir/sub\\file.ext"), "file.ext");
    EXPECT_STREQ(tbGetFileName("file"), "file");
    EXPECT_EQ(tbGetFileName("dir\\"), nullptr);
    EXPECT_EQ(tbGetFileName("/"), nullptr);
    EXPECT_EQ(tbGetFileName(""), nullptr);
    EXPECT_EQ(tbGetFileName(nullptr), nullptr);
}

TEST(Sqrt, TablesAreExactAtPowersOfFourAndClose)
{
    const std::pair<TBSQRT_METHOD, double> methods[] = {{TBSQRT_TABLE_256, 1.0 / 128},
                                                        {TBSQRT_TABLE_1K, 1.0 / 512},
                                                        {TBSQRT_TABLE_4K, 1.0 / 2048},
                                                        {TBSQRT_TABLE_16K, 1.0 / 8192},
                                                        {TBSQRT_EXACT, 1e-7}};
    for (const auto& [method, tolerance] : methods)
    {
        tbSetSqrtMethod(method);
        EXPECT_EQ(tbGetSqrtMethod(), method);
        EXPECT_EQ(tbSqrt(0.0f), 0.0f);
        EXPECT_EQ(tbSqrt(4.0f), 2.0f);
        EXPECT_EQ(tbSqrt(0.25f), 0.5f);
        for (float x = 1e-30f; x < 1e30f; x *= 1.37f)
            ASSERT_NEAR(double(tbSqrt(x)) / std::sqrt(double(x)), 1.0, tolerance) << x;
    }
    tbSetSqrtMethod(TBSQRT_TABLE_4K);
}

TEST(Message, LongLinesArriveWhole)
{
    const std::string text(5000, 'x');
    tbtest::expectMessage(text);
    tbMessage("%s\n", text.c_str());
}

TEST(FilePath, EndsInASeparatorAndStandsOnce)
{
    tbDeleteFilePaths();
    tbAddFilePath("c:\\data");
    tbAddFilePath("c:\\data\\");
    tbAddFilePath("C:\\data\\"); // case counts
    tbAddFilePath(nullptr);
    tbAddFilePaths("a;b/;");
    ASSERT_EQ(tbGetNumFilePaths(), 4);
    EXPECT_STREQ(tbGetFilePath(0), "c:\\data\\");
    EXPECT_STREQ(tbGetFilePath(2), "a\\");
    EXPECT_STREQ(tbGetFilePath(3), "b/");
    EXPECT_EQ(tbGetFilePath(4), nullptr);
    EXPECT_EQ(tbGetFilePath(-1), nullptr);
    tbDeleteFilePaths();
    EXPECT_EQ(tbGetNumFilePaths(), 0);
}

TEST(FilePath, FindsRegularFilesInTheOrderOfThePaths)
{
    const tbtest::TempDirectory directory;
    const fs::path root = directory.path("");
    for (const char* dir : {"one/models/thing", "two/models"}) // "thing" is a directory in the first path
        fs::create_directories(root / dir);
    std::ofstream(root / "two" / "models" / "thing") << "x";
    tbDeleteFilePaths();
    tbAddFilePath((root / "one").string().c_str());
    tbAddFilePath((root / "two").string().c_str());
    char found[512] = "?";
    const int length = tbFindFile("models\\thing", sizeof found, found);
    EXPECT_EQ(length, int(std::strlen(found)) + 1);
    EXPECT_TRUE(fs::equivalent(found, root / "two" / "models" / "thing"));
    char cut[4] = "???";
    EXPECT_EQ(tbFindFile("models\\thing", sizeof cut, cut), length);
    EXPECT_EQ(std::strlen(cut), 3u);
    std::strcpy(found, "models/thing");
    EXPECT_EQ(tbFindFile(found, sizeof found, found), length); // the name may stand where the path goes
    EXPECT_EQ(tbFindFile("models\\nothing", sizeof found, found), 0);
    EXPECT_STREQ(found, "");
    EXPECT_EQ(tbFindFile("", sizeof found, found), 0);
    EXPECT_EQ(tbFindFile(nullptr, sizeof found, found), 0);
    EXPECT_GT(tbFindFile((root / "two" / "models" / "thing").string().c_str(), 0, nullptr), 0);
    tbDeleteFilePaths();
}

TEST(Settings, KeepNumbersAndTextsByNameWithoutCase)
{
    int number = 5;
    float real = 1.5f;
    char text[256] = "kept";
    EXPECT_FALSE(tbReadRegistry("TestMissing", number));
    EXPECT_FALSE(tbReadRegistry("TestMissing", text));
    tbtest::expectMessage(
        "Cannot read key <TestMissing> from the registry."); // by the reader of floats alone
    EXPECT_FALSE(tbReadRegistry("TestMissing", real));
    EXPECT_EQ(number, 5);
    EXPECT_EQ(real, 1.5f);
    EXPECT_STREQ(text, "kept");
    EXPECT_TRUE(tbWriteRegistry("TestInt", -7) && tbWriteRegistry("testint", -8));
    EXPECT_TRUE(tbWriteRegistry("TestFloat", 2.5f) && tbWriteRegistry("TestText", "a \"quoted\" \\ line"));
    EXPECT_TRUE(tbReadRegistry("TESTINT", number));
    EXPECT_TRUE(tbReadRegistry("TestFloat", real));
    EXPECT_TRUE(tbReadRegistry("TestText", text));
    EXPECT_EQ(number, -8);
    EXPECT_EQ(real, 2.5f);
    EXPECT_STREQ(text, "a \"quoted\" \\ line");
    tbtest::expectMessage("Cannot write key <> to the registry.");
    EXPECT_FALSE(tbWriteRegistry(nullptr, 1));
}

TEST(Settings, WritingKeepsALinkToTheFileAndRefusesWhatIsNoFile)
{
    const char* const former = std::getenv("TAMBER_SETTINGS");
    const std::string kept = former ? former : "";
    const tbtest::TempDirectory directory;
    const fs::path root = directory.path("");
    fs::create_directories(root / "dir");
    std::ofstream(root / "real.ini") << "Old=0x00000003\n";
    tbtest::setVariable("TAMBER_SETTINGS", (root / "real.ini").string());
    int old = 0;
    if (!tbReadRegistry("Old", old))
        GTEST_SKIP() << "the settings of this platform are in no file";
    fs::create_symlink(root / "real.ini", root / "link.ini");
    tbtest::setVariable("TAMBER_SETTINGS", (root / "link.ini").string());
    EXPECT_TRUE(tbWriteRegistry("New", 4));
    EXPECT_TRUE(fs::is_symlink(root / "link.ini"));
    EXPECT_TRUE(tbReadRegistry("Old", old));
    EXPECT_EQ(old, 3);
    tbtest::setVariable("TAMBER_SETTINGS", (root / "dir").string());
    tbtest::expectMessage("Cannot write key <New> to the registry.");
    EXPECT_FALSE(tbWriteRegistry("New", 5));
    tbtest::setVariable("TAMBER_SETTINGS", kept);
}
