#include <gtest/gtest.h>

#include <tests/support/Messages.h>
#include <tests/support/WorkFolder.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const tbtest::WorkFolder folder;
    tbtest::watchMessages();
    return RUN_ALL_TESTS();
}
