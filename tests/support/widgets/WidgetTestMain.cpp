#include "tests/support/TestSandbox.h"

#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
    testing::InitGoogleTest(&argc, argv);
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const orlimo::TestSandbox sandbox;
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
