#include "support/queue_order.h"

#include <gtest/gtest.h>

int main(int argc, char *argv[])
{
    const tally::test::OrderedApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
