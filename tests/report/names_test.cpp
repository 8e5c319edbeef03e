#include "mpeg_ts_analysis/report/names.h"

#include <gtest/gtest.h>

namespace {

constexpr const char *dense[] = {"zero", nullptr, "two"};
constexpr named_value sparse[] = {
    {0x00,       "none" },
    {0x10,       "first"},
    {0xFFFFFFFF, "last" }
};
constexpr named_value twice[] = {
    {1, "a"},
    {1, "b"}
};
constexpr named_value falling[] = {
    {2, "a"},
    {1, "b"}
};

} // namespace

TEST(names, a_dense_table_names_its_codes)
{
    EXPECT_STREQ(name_of(dense, 0), "zero");
    EXPECT_STREQ(name_of(dense, 2, "?"), "two");
}

TEST(names, a_dense_table_has_no_name_for_its_gaps_and_what_lies_behind_it)
{
    EXPECT_STREQ(name_of(dense, 1), "");
    EXPECT_STREQ(name_of(dense, 1, "(null)"), "(null)");
    EXPECT_STREQ(name_of(dense, 3, "?"), "?");
    EXPECT_STREQ(name_of(dense, 0xFFFFFFFF, "?"), "?");
}

TEST(names, a_sparse_table_names_its_codes_and_no_others)
{
    EXPECT_STREQ(name_of(sparse, 0x00), "none");
    EXPECT_STREQ(name_of(sparse, 0x10), "first");
    EXPECT_STREQ(name_of(sparse, 0xFFFFFFFF), "last");
    EXPECT_STREQ(name_of(sparse, 0x0F), "");
    EXPECT_STREQ(name_of(sparse, 0x11, "?"), "?");
}

TEST(names, only_a_rising_table_is_ascending)
{
    EXPECT_TRUE(is_ascending(sparse));
    EXPECT_FALSE(is_ascending(twice));
    EXPECT_FALSE(is_ascending(falling));
}
