#include <gtest/gtest.h>

#include <tests/support/Messages.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    tbtest::watchMessages();
    return RUN_ALL_TESTS();
}
