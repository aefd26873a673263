#include <tamber/platform/tbiProcess.h>

#include <tests/support/TempFile.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

namespace
{

tbiProcessOrder order(std::vector<std::string> arguments)
{
    tbiProcessOrder made;
    made.program = TEST_CHILD;
    made.arguments = std::move(arguments);
    made.time = 60;
    return made;
}

// A child that the system stops; of other crashes sanitizers make an exit.
tbiProcessOrder crash()
{
#if defined(_WIN32)
    return order({"exception", "0"});
#else
    return order({"crash"});
#endif
}

} // namespace

TEST(Process, ArgumentsArriveAsTheyAre)
{
    const tbtest::TempDirectory directory;
    const std::vector<std::string> nasty = {
        "plain", "two words", "",       "\"",    "a\"b",  "\\",       "tail\\",   "a\\\"b",     "\\\\srv\\",
        "x y\\", "$HOME",     "%PATH%", "*.cpp", "a'b`c", "--flag=v", "tab\tend", "two\\\\\"s", "^&|<>"};
    std::vector<std::string> arguments = {"arguments", directory.path("out")};
    std::string expected;
    for (const std::string& argument : nasty)
    {
        arguments.push_back(argument);
        expected += std::to_string(argument.size()) + ":" + argument;
    }
    const tbiProcessEnd end = tbiRunProcess(order(arguments));
    ASSERT_EQ(end.how, tbiProcessEnd::EXITED) << end.text;
    EXPECT_EQ(end.code, 0u);
    EXPECT_EQ(tbtest::readAll(directory.path("out")), expected);
}

TEST(Process, EndsAreToldApart)
{
    EXPECT_EQ(tbiRunProcess(order({"exit", "0"})).code, 0u);
    const tbiProcessEnd left = tbiRunProcess(order({"exit", "77"}));
    EXPECT_EQ(left.how, tbiProcessEnd::EXITED);
    EXPECT_EQ(left.code, 77u);
    EXPECT_GT(left.seconds, 0);
    EXPECT_EQ(tbiRunProcess(order({"streams"})).code, 0u);

    tbiProcessOrder absent = order({});
    absent.program += ".absent";
    const tbiProcessEnd none = tbiRunProcess(absent);
    EXPECT_EQ(none.how, tbiProcessEnd::NOT_STARTED);
    EXPECT_NE(none.text, "");

    const tbiProcessEnd crashed = tbiRunProcess(crash());
#if defined(_WIN32)
    EXPECT_EQ(crashed.text, "exception 0xC0000005");
#else
    EXPECT_EQ(crashed.text, "signal 6");
#endif
    EXPECT_EQ(crashed.how, tbiProcessEnd::STOPPED);
}

TEST(Process, SeveralAtOnceDoNotDisturbEachOther)
{
    std::atomic<int> right = 0;
    tbtest::startThreads(
        6,
        [&right](int i)
        {
            const bool crashes = i % 2 != 0;
            const tbiProcessEnd end = tbiRunProcess(crashes ? crash() : order({"exit", std::to_string(i)}));
            right += end.how == (crashes ? tbiProcessEnd::STOPPED : tbiProcessEnd::EXITED) &&
                     (crashes || end.code == unsigned(i));
        });
    EXPECT_EQ(right, 6);
}

TEST(Process, PrivateDirectoriesAreOnesOwn)
{
    const std::string first = tbiMakePrivateDirectory();
    const std::string second = tbiMakePrivateDirectory();
    ASSERT_TRUE(std::filesystem::is_directory(first));
    EXPECT_NE(first, second);
#if !defined(_WIN32)
    EXPECT_EQ(std::filesystem::status(first).permissions(), std::filesystem::perms::owner_all);
#endif
    tbtest::writeAll(first + "/file", "text");
    for (const std::string& directory : {first, second, std::string()})
        tbiRemovePrivateDirectory(directory);
    EXPECT_FALSE(std::filesystem::exists(first));
    EXPECT_FALSE(std::filesystem::exists(second));
}
