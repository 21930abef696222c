// Cases that once went wrong or surprised someone, kept so that they stay as they are now.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "BreltList.h"
#include "ZentuCmdAutoItem.h"

namespace {

// A range far beyond the list bound used to be built value by value before it was refused,
// which took most of a second and hundreds of megabytes for a single automatically typed item
// (bench/brelt_list_bench.cpp measures the refusal). What it reads must not change.
TEST(Regression, AHugeRangeGivesNoIntegerListReading) {
    const ZentuCmdAutoItem item("GROUP", "1-2000000000", {});
    EXPECT_FALSE(item.HasBreltList());
    EXPECT_TRUE(item.GetBreltList().elements.empty());
    EXPECT_EQ(item.GetList(), std::vector<std::string>{"1-2000000000"});
}

// The integer-list reader follows stream extraction: a number out of range that runs into the
// end of the text ends the reading quietly, so such a text has an (empty) integer-list reading.
TEST(Regression, AnOutOfRangeNumberAtTheEndEndsTheListQuietly) {
    BreltList<int> list;
    EXPECT_TRUE(try_read_brelt_list("1,99999999999", list));
    EXPECT_EQ(list.elements, (std::set<int>{1}));
    EXPECT_TRUE(ZentuCmdAutoItem("VALUE", "2147483648", {}).HasBreltList());
}

}  // namespace
