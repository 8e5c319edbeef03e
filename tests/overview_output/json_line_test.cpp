#include "mpeg_ts_overview/output/json_line.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>

TEST(json_line, numbers_are_shortest_where_the_library_adds_digits)
{
    EXPECT_EQ(json_line(18.080152), "18.080152");
    EXPECT_EQ(json_line(2850995609.009691), "2850995609.009691");
    EXPECT_EQ(json_line(0.002877), "0.002877");
    EXPECT_EQ(json_line(-0.02133), "-0.02133");
}

TEST(json_line, times_of_any_tick_have_six_decimals_at_most)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const auto ticks = static_cast<int64_t>(random() >> (20 + i % 36));
        const std::string text = json_line(seconds_of(ticks));
        EXPECT_EQ(std::stod(text), seconds_of(ticks));
        if (text.find('e') != std::string::npos) continue;
        const size_t point = text.find('.');
        ASSERT_NE(point, std::string::npos) << text;
        EXPECT_LE(text.size() - point - 1, 6U) << text;
    }
}

TEST(json_line, whole_numbers_of_a_fraction_say_that_they_are_one)
{
    EXPECT_EQ(json_line(0.0), "0.0");
    EXPECT_EQ(json_line(-3.0), "-3.0");
    EXPECT_EQ(json_line(100000.0), "100000.0");
    EXPECT_EQ(json_line(1e-6), "1e-06");
    EXPECT_EQ(json_line(1e18), "1e+18");
}

TEST(json_line, integers_stay_integers)
{
    EXPECT_EQ(json_line(std::numeric_limits<uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(json_line(std::numeric_limits<int64_t>::min()), "-9223372036854775808");
}

TEST(json_line, what_is_no_number_is_null)
{
    EXPECT_EQ(json_line(std::numeric_limits<double>::infinity()), "null");
    EXPECT_EQ(json_line(std::numeric_limits<double>::quiet_NaN()), "null");
}

TEST(json_line, texts_are_escaped_as_the_library_does)
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text = {'a', static_cast<char>(byte), 'b'};
        EXPECT_EQ(json_line(text),
                  ordered_json(text).dump(-1, ' ', false, ordered_json::error_handler_t::replace));
    }
}

TEST(json_line, lists_and_objects_keep_their_order)
{
    const ordered_json value = {
        {"b",     {1, 2.5, nullptr}        },
        {"a",     {{"x", true}}            },
        {"empty", ordered_json::array()    },
        {"none",  ordered_json::object()   },
        {"\"",    "line\n\xFF\xE4\xBD.\x1B"}
    };
    EXPECT_EQ(json_line(value), "{\"b\":[1,2.5,null],\"a\":{\"x\":true},\"empty\":[],\"none\":{},"
                                "\"\\\"\":\"line\\n\xEF\xBF\xBD\xEF\xBF\xBD.\\u001b\"}");
}
