// What broken, lost and scrambled packets do to pages.
#include "tests/overview_contents/teletext_stream.h"

#include <gtest/gtest.h>
#include <random>

struct teletext_loss : testing::Test {
    teletext_pages pages;
    teletext_sender stream{pages};

    std::vector<teletext_page> found() { return pages.finish().pages; }
};

TEST_F(teletext_loss, a_reception_that_the_recording_cuts_short_does_not_count)
{
    stream.send({header(0x100), row(1, 1, "whole"), header(0x100), row(1, 1, "cut short")});
    const auto pages_found = found();
    ASSERT_EQ(pages_found.size(), 1u);
    EXPECT_EQ(pages_found[0].count, 1u);
    EXPECT_EQ(pages_found[0].rows[1], text_row("whole"));
}

TEST_F(teletext_loss, a_break_of_the_sequence_ends_what_is_in_hand)
{
    stream.send({header(0x100), header(0x200), row(1, 1, "lost")});
    stream.sequence.broken = true;
    stream.send({row(1, 2, "of no page"), header(0x1FF), header(0x2FF)});
    EXPECT_TRUE(found().empty());
}

TEST_F(teletext_loss, a_pes_packet_with_a_gap_is_taken_up_at_the_next_unit_start)
{
    const bytes pes = teletext_pes_of({header(0x100), row(1, 1, "one"), row(1, 2, "two"), header(0x1FF)});
    stream.send_payload(bytes(pes.begin(), pes.begin() + 184), true);
    stream.sequence.broken = true;
    stream.send_payload(bytes(pes.begin() + 184, pes.end()), false);
    EXPECT_TRUE(found().empty());
}

TEST_F(teletext_loss, a_packet_with_transport_error_ends_what_is_in_hand)
{
    stream.send({header(0x100)});
    stream.next.transport_error_indicator = true;
    stream.send({header(0x1FF)});
    stream.send({header(0x1FF)});
    EXPECT_TRUE(found().empty());
}

TEST_F(teletext_loss, a_scrambled_packet_ends_what_is_in_hand)
{
    stream.send({header(0x100)});
    stream.next.transport_scrambling_control = 2;
    stream.send({header(0x1FF)});
    stream.send({header(0x1FF)});
    EXPECT_TRUE(found().empty());
}

TEST_F(teletext_loss, lost_sync_ends_what_is_in_hand)
{
    stream.send({header(0x100)});
    pages.on_sync_loss();
    stream.send({header(0x1FF)});
    EXPECT_TRUE(found().empty());
}

TEST_F(teletext_loss, other_contents_of_the_pid_end_what_is_in_hand)
{
    stream.send({header(0x100)});
    pages.on_other_contents(0x1FFF);
    pages.on_other_contents(0x0200);
    stream.send({row(1, 1, "of no page"), header(0x1FF)});
    EXPECT_TRUE(found().empty());
}

TEST_F(teletext_loss, a_duplicate_gives_nothing)
{
    stream.send({header(0x100), row(1, 1, "one")});
    stream.sequence.duplicate = true;
    stream.send({header(0x100), row(1, 1, "one")});
    EXPECT_TRUE(found().empty());
}

TEST_F(teletext_loss, wrong_parity_spoils_a_character_only)
{
    bytes spoiled = row(1, 1, "abc");
    spoiled[5] ^= 0x10;
    stream.send({header(0x100), spoiled, header(0x1FF)});
    ASSERT_EQ(found().size(), 1u);
    EXPECT_EQ(found()[0].rows[1], "a\uFFFDc" + std::string(37, ' '));
}

TEST_F(teletext_loss, one_wrong_bit_in_an_address_or_a_page_number_is_put_right)
{
    bytes first = header(0x100);
    first[2] ^= 0x01;
    first[4] ^= 0x40;
    first[11] ^= 0x02;
    stream.send({first, header(0x1FF)});
    ASSERT_EQ(found().size(), 1u);
    EXPECT_EQ(found()[0].page, 0x100u);
}

TEST_F(teletext_loss, a_header_that_cannot_be_read_ends_a_page_and_begins_none)
{
    bytes unreadable = header(0x101);
    unreadable[4] ^= 0x03;
    stream.send({header(0x100), unreadable, row(1, 1, "of which page?"), header(0x1FF)});
    ASSERT_EQ(found().size(), 1u);
    EXPECT_EQ(found()[0].page, 0x100u);
    EXPECT_EQ(found()[0].rows[1], text_row(""));
}

TEST_F(teletext_loss, a_packet_whose_address_cannot_be_read_is_passed_over)
{
    bytes unreadable = row(1, 1, "of which row?");
    unreadable[3] ^= 0x03;
    bytes framed_otherwise = row(1, 1, "no teletext");
    framed_otherwise[1] = 0xFF;
    stream.send({header(0x100), unreadable, framed_otherwise, row(1, 2, "two"), header(0x1FF)});
    ASSERT_EQ(found().size(), 1u);
    EXPECT_EQ(found()[0].rows[1], text_row(""));
    EXPECT_EQ(found()[0].rows[2], text_row("two"));
}

TEST_F(teletext_loss, any_bytes_give_pages_of_25_rows_of_40_characters)
{
    std::mt19937 random(1);
    const bytes pes = teletext_pes_of({header(0x100), row(1, 1, "one"), row(1, 2, "two"), header(0x101)});
    for (unsigned i = 0; i < 20000; ++i) {
        bytes spoiled = pes;
        for (unsigned change = 0; change < 8; ++change)
            spoiled[random() % spoiled.size()] = static_cast<uint8_t>(random());
        spoiled.resize(random() % spoiled.size() + 1);
        stream.send_pes(spoiled);
    }
    const auto pages_found = found();
    EXPECT_GT(pages_found.size(), 1u);
    for (const teletext_page &page : pages_found)
        for (const std::string &text : page.rows)
            EXPECT_EQ(std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }), 40);
}
