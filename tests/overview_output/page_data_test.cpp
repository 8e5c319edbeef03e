#include "mpeg_ts_overview/output/page_data.h"

#include <gtest/gtest.h>

TEST(page_data, escapes_what_could_end_its_element)
{
    EXPECT_EQ(escaped_for_page(R"({"a":"</script><!--"})"), R"({"a":"\u003c/script>\u003c!--"})");
    EXPECT_EQ(escaped_for_page("a\xE2\x80\xA8"
                               "b\xE2\x80\xA9"
                               "c\xE2\x80\xA6"),
              "a\\u2028b\\u2029c\xE2\x80\xA6");
}

TEST(page_data, cuts_texts_between_characters)
{
    const std::string three = "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\xBA"; // of 2, 3 and 4 bytes
    EXPECT_EQ(cut_text(three, 3), three);
    EXPECT_EQ(cut_text(three, 2), "\xC3\xA4\xE2\x80\xA6");
    EXPECT_EQ(cut_text(three, 1), "\xE2\x80\xA6");
    EXPECT_EQ(cut_text("", 1), "");
}

TEST(page_data, cuts_texts_of_more_than_300_characters_at_any_depth)
{
    ordered_json value = {
        {"a", std::string(300, 'x')},
        {"rows",   {std::string(301, 'y'), {std::string(400, 'z')}}            }
    };
    EXPECT_EQ(cut_texts(value), 2U);
    EXPECT_EQ(value["a"], std::string(300, 'x'));
    EXPECT_EQ(value["rows"][0], std::string(299, 'y') + "\xE2\x80\xA6");
    EXPECT_EQ(value["rows"][1][0], std::string(299, 'z') + "\xE2\x80\xA6");
}

TEST(page_data, rounds_to_three_decimals)
{
    ordered_json value = {
        1.23456, {-0.0001, 7},
         nullptr, "1.23456"
    };
    round_numbers(value);
    EXPECT_EQ(value.dump(), R"([1.235,[0.0,7],null,"1.23456"])");
}

TEST(page_data, lists_end_when_their_budget_is_used_and_say_so)
{
    std::string written;
    const std::function<bool(std::string_view)> write = [&](std::string_view text) {
        written += text;
        return true;
    };
    json_stream out(write);
    page_lists lists(out);
    const std::vector<std::string> rows = {"abc", "def", "<", "ghi"};
    const auto same = [](const std::string &row) { return ordered_json(row); };
    lists.put("all", "letters", rows, 100, same);
    EXPECT_EQ(lists.unused_bytes(), 100U - 7 - 7 - 10 - 7);
    lists.put_at_most("some", "letters", rows, 24, same); // as many as 7 + 7 + 10 bytes
    EXPECT_EQ(lists.unused_bytes(), 100U - 7 - 7 - 10 - 7);
    out.end();
    const ordered_json value = ordered_json::parse(written);
    EXPECT_EQ(value["all"].size(), 4U);
    EXPECT_EQ(value["some"].size(), 3U);
    EXPECT_EQ(lists.notes(), std::vector<std::string>{"letters: 3 of 4 are on this page"});
}

TEST(page_data, a_list_takes_what_those_before_left)
{
    std::string written;
    const std::function<bool(std::string_view)> write = [&](std::string_view text) {
        written += text;
        return true;
    };
    json_stream out(write);
    page_lists lists(out);
    const auto same = [](const std::string &row) { return ordered_json(row); };
    lists.put("short", "letters", std::vector<std::string>{"abc"}, 21, same);
    lists.put("long", "letters", std::vector<std::string>{"abc", "def", "ghi", "jkl"}, 7, same);
    out.end();
    EXPECT_EQ(ordered_json::parse(written)["long"].size(), 3U);
    EXPECT_EQ(lists.unused_bytes(), 0U);
}

TEST(page_data, says_how_many_texts_were_cut)
{
    const std::function<bool(std::string_view)> write = [](std::string_view) { return true; };
    json_stream out(write);
    page_lists lists(out);
    const std::vector<std::string> rows = {std::string(301, 'x'), "y", std::string(500, 'z')};
    lists.put("rows", "rows", rows, 10000, [](const std::string &row) { return ordered_json(row); });
    EXPECT_EQ(lists.notes(), std::vector<std::string>{"texts of more than 300 characters are cut: 2"});
}
