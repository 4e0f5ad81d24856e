#include "base/MainQueue.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    volvelle::mainQueue();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
