#include "mpeg_ts_overview/tables/flat_map.h"

#include <gtest/gtest.h>

namespace {

struct same_place {
    size_t operator()(unsigned) const { return 15; }
};

/// Of a few places, each for many keys: what has no room there finds some when the map grows.
struct few_places {
    size_t operator()(unsigned key) const { return key % 8 * 100; }
};

struct own_place {
    size_t operator()(unsigned key) const { return key; }
};

template <typename map>
void expect_all_found(map &numbers, unsigned count)
{
    for (unsigned i = 0; i < count; ++i) numbers[i] = 2 * i;
    EXPECT_EQ(numbers.size(), count);
    for (unsigned i = 0; i < count; ++i) {
        ASSERT_NE(numbers.find(i), nullptr);
        EXPECT_EQ(*numbers.find(i), 2 * i);
    }
    EXPECT_EQ(numbers.find(count), nullptr);
}

} // namespace

TEST(flat_map, finds_nothing_while_it_is_empty)
{
    flat_map<unsigned, unsigned, own_place> numbers;
    EXPECT_EQ(numbers.find(0), nullptr);
    EXPECT_EQ(numbers.size(), 0u);
}

TEST(flat_map, finds_every_key_after_it_has_grown)
{
    flat_map<unsigned, unsigned, own_place> numbers;
    expect_all_found(numbers, 1000);
}

TEST(flat_map, finds_keys_of_few_places_after_it_has_grown)
{
    flat_map<unsigned, unsigned, few_places> numbers;
    expect_all_found(numbers, 2000);
}

TEST(flat_map, tells_keys_of_one_hash_apart)
{
    flat_map<unsigned, unsigned, same_place> numbers;
    expect_all_found(numbers, 100);
}

TEST(flat_map, finds_keys_that_belong_to_one_place_as_fast_as_a_tree)
{
    // One behind the other they would take some thousand million steps.
    flat_map<unsigned, unsigned, same_place> numbers;
    expect_all_found(numbers, 50000);
}

TEST(flat_map, gives_the_same_value_for_a_key_that_is_there)
{
    flat_map<unsigned, unsigned, own_place> numbers;
    numbers[7] = 1;
    ++numbers[7];
    EXPECT_EQ(*numbers.find(7), 2u);
    EXPECT_EQ(numbers.size(), 1u);
}
