#include "tests/overview_contents/teletext_stream.h"

#include <gtest/gtest.h>

struct teletext_pages_found : testing::Test {
    teletext_pages pages;
    teletext_sender stream{pages};

    /// The only page.
    teletext_page page()
    {
        const teletext_facts facts = pages.finish();
        EXPECT_EQ(facts.pages.size(), 1u);
        return facts.pages.empty() ? teletext_page{} : facts.pages.front();
    }
};

TEST_F(teletext_pages_found, a_page_is_what_comes_from_its_header_to_the_next)
{
    stream.send({header(0x123, 0x0045, {}, "News"), row(1, 1, "one"), row(1, 24, "last"), header(0x1FF)});
    const teletext_page found = page();
    EXPECT_EQ(found.pid, 0x0200);
    EXPECT_EQ(found.page, 0x123u);
    EXPECT_EQ(found.subcode, 0x0045u);
    EXPECT_EQ(found.count, 1u);
    EXPECT_EQ(found.rows[0], text_row("        News"));
    EXPECT_EQ(found.rows[1], text_row("one"));
    EXPECT_EQ(found.rows[2], text_row(""));
    EXPECT_EQ(found.rows[24], text_row("last"));
}

TEST_F(teletext_pages_found, magazine_0_is_8)
{
    stream.send({header(0x800), header(0x801)});
    EXPECT_EQ(page().page, 0x800u);
}

TEST_F(teletext_pages_found, rows_come_in_any_order_and_the_last_of_a_number_stands)
{
    stream.send({header(0x100), row(1, 20, "twenty"), row(1, 3, "first"), row(1, 3, "three"), header(0x1FF)});
    const teletext_page found = page();
    EXPECT_EQ(found.rows[3], text_row("three"));
    EXPECT_EQ(found.rows[20], text_row("twenty"));
}

TEST_F(teletext_pages_found, packets_beyond_row_24_are_no_rows)
{
    for (unsigned number = 25; number < 32; ++number)
        stream.send({header(0x100), row(1, number, "not shown"), header(0x1FF)});
    for (unsigned number = 1; number < 25; ++number) EXPECT_EQ(page().rows[number], text_row(""));
}

TEST_F(teletext_pages_found, rows_before_a_header_belong_to_nothing)
{
    stream.send({row(1, 1, "lost"), header(0x100), header(0x1FF), row(1, 2, "lost")});
    const teletext_page found = page();
    EXPECT_EQ(found.rows[1], text_row(""));
    EXPECT_EQ(found.rows[2], text_row(""));
}

TEST_F(teletext_pages_found, receptions_are_counted_with_the_first_and_the_last_time)
{
    stream.send({header(0x100), row(1, 1, "old")});
    stream.send({header(0x100), row(1, 1, "new")});
    stream.send({header(0x100), row(1, 1, "newer")});
    const teletext_page found = page();
    EXPECT_EQ(found.count, 2u);
    EXPECT_EQ(found.first_ticks, 0 * ticks_per_second);
    EXPECT_EQ(found.last_ticks, 1 * ticks_per_second);
    EXPECT_EQ(found.rows[1], text_row("new"));
}

TEST_F(teletext_pages_found, rows_that_do_not_come_stay)
{
    stream.send({header(0x100), row(1, 1, "one"), row(1, 2, "two")});
    stream.send({header(0x100), row(1, 2, "TWO"), header(0x1FF)});
    const teletext_page found = page();
    EXPECT_EQ(found.rows[1], text_row("one"));
    EXPECT_EQ(found.rows[2], text_row("TWO"));
}

TEST_F(teletext_pages_found, an_erased_page_has_only_the_rows_that_come)
{
    page_controls erase;
    erase.erase = true;
    stream.send({header(0x100), row(1, 1, "one"), row(1, 2, "two")});
    stream.send({header(0x100, 0, erase), row(1, 2, "TWO"), header(0x1FF)});
    const teletext_page found = page();
    EXPECT_EQ(found.rows[1], text_row(""));
    EXPECT_EQ(found.rows[2], text_row("TWO"));
}

TEST_F(teletext_pages_found, subpages_are_pages_of_their_own)
{
    stream.send({header(0x100, 0x0002), row(1, 1, "second"), header(0x100, 0x0001), row(1, 1, "first")});
    stream.send({header(0x1FF)});
    const teletext_facts facts = pages.finish();
    ASSERT_EQ(facts.pages.size(), 2u);
    EXPECT_EQ(facts.pages[0].subcode, 1u);
    EXPECT_EQ(facts.pages[0].rows[1], text_row("first"));
    EXPECT_EQ(facts.pages[1].subcode, 2u);
    EXPECT_EQ(facts.pages[1].rows[1], text_row("second"));
}

TEST_F(teletext_pages_found, control_bits_are_no_part_of_the_subcode)
{
    page_controls all;
    all.erase = true;
    all.serial = true;
    all.national_option = 7;
    stream.send({header(0x100, 0x3F7F, all), header(0x1FF)});
    EXPECT_EQ(page().subcode, 0x3F7Fu);
}

TEST_F(teletext_pages_found, pids_have_pages_of_their_own)
{
    teletext_sender other(pages, 0x0100);
    stream.send({header(0x100), row(1, 1, "here")});
    other.send({header(0x100), row(1, 1, "there")});
    stream.send({header(0x1FF)});
    other.send({header(0x1FF)});
    const teletext_facts facts = pages.finish();
    ASSERT_EQ(facts.pages.size(), 2u);
    EXPECT_EQ(facts.pages[0].pid, 0x0100);
    EXPECT_EQ(facts.pages[0].rows[1], text_row("there"));
    EXPECT_EQ(facts.pages[1].rows[1], text_row("here"));
}

TEST_F(teletext_pages_found, parallel_magazines_do_not_end_each_others_pages)
{
    stream.send({header(0x100), header(0x200), row(1, 1, "of one"), row(2, 1, "of two"), header(0x201)});
    const teletext_facts facts = pages.finish();
    ASSERT_EQ(facts.pages.size(), 1u);
    EXPECT_EQ(facts.pages[0].page, 0x200u);
    EXPECT_EQ(facts.pages[0].rows[1], text_row("of two"));
}

TEST_F(teletext_pages_found, in_serial_mode_any_header_ends_a_page)
{
    page_controls serial;
    serial.serial = true;
    stream.send({header(0x100, 0, serial), row(1, 1, "of one"), header(0x200, 0, serial),
                 row(1, 2, "too late"), row(2, 1, "of two")});
    const teletext_page found = page();
    EXPECT_EQ(found.page, 0x100u);
    EXPECT_EQ(found.rows[1], text_row("of one"));
    EXPECT_EQ(found.rows[2], text_row(""));
}

TEST_F(teletext_pages_found, pages_with_hexadecimal_digits_end_a_page_and_are_none)
{
    for (const unsigned other : {0x1FFu, 0x1A0u, 0x10Fu}) {
        stream.send({header(0x100), row(1, 1, "shown"), header(other), row(1, 1, "hidden")});
    }
    stream.send({header(0x1FF)});
    const teletext_page found = page();
    EXPECT_EQ(found.count, 3u);
    EXPECT_EQ(found.rows[1], text_row("shown"));
}

TEST_F(teletext_pages_found, the_national_option_of_the_last_reception_holds)
{
    page_controls german;
    german.national_option = 1;
    stream.send({header(0x100, 0, german), row(1, 1, "[\\]"), header(0x1FF)});
    const teletext_page found = page();
    EXPECT_EQ(found.national_option, 1u);
    EXPECT_EQ(found.rows[1].substr(0, 6), "\u00C4\u00D6\u00DC");
}

TEST_F(teletext_pages_found, at_most_2000_are_kept_and_the_rest_is_counted)
{
    for (unsigned subcode = 0; subcode < 0x80; ++subcode)
        for (unsigned units = 0; units < 16; ++units)
            stream.send(
                {header(0x100 + units % 10, (subcode & 0x70) << 4 | (subcode & 0xF) | units / 10 << 12)});
    stream.send({header(0x1FF)});
    const teletext_facts facts = pages.finish();
    EXPECT_EQ(facts.pages.size(), teletext_page_limit);
    EXPECT_EQ(facts.not_kept, 16u * 0x80 - teletext_page_limit);
}
