#include "tests/overview_contents/guide_test.h"

struct atsc_guide_found : guide_found {};

TEST_F(atsc_guide_found, an_event_has_its_source_start_length_and_title)
{
    receive(stt_section(1000000000, 18));
    receive(atsc_eit_section(9, {atsc_eit_entry(5, 1000003600, 1800, multiple_string("News", "spa"))}));
    const guide_event event = found();
    EXPECT_EQ(event.service, 9);
    EXPECT_EQ(event.event_id, 5);
    EXPECT_EQ(event.start_utc_s, 315964800 + 1000003600 - 18);
    EXPECT_EQ(event.duration_s, 1800u);
    EXPECT_EQ(event.title, "News");
    EXPECT_EQ(event.language, "spa");
    EXPECT_STREQ(event.source, "atsc");
    EXPECT_FALSE(event.was_present);
}

TEST_F(atsc_guide_found, the_start_waits_for_the_time_that_tells_how_far_gps_is_ahead)
{
    receive(atsc_eit_section(9, {atsc_eit_entry(5, 1000003600, 1800, multiple_string("News"))}));
    receive(stt_section(1000000000, 17));
    EXPECT_EQ(found().start_utc_s, 315964800 + 1000003600 - 17);
}

TEST_F(atsc_guide_found, without_that_there_is_no_start)
{
    receive(atsc_eit_section(9, {atsc_eit_entry(5, 1000003600, 1800, multiple_string("News"))}));
    EXPECT_EQ(found().start_utc_s, std::nullopt);
}

TEST_F(atsc_guide_found, several_events_and_empty_titles_are_read)
{
    receive(stt_section(0, 0));
    receive(atsc_eit_section(
        9, {atsc_eit_entry(1, 10, 0xFFFFF, {}), atsc_eit_entry(0x3FFF, 20, 0, multiple_string("B"))}));
    const guide_facts facts = guide.finish();
    ASSERT_EQ(facts.events.size(), 2u);
    EXPECT_EQ(facts.events[0].title, "");
    EXPECT_EQ(facts.events[0].duration_s, 0xFFFFFu);
    EXPECT_EQ(facts.events[1].event_id, 0x3FFF);
    EXPECT_EQ(facts.events[1].title, "B");
    EXPECT_EQ(facts.events[1].duration_s, 0u);
}

TEST_F(atsc_guide_found, an_extended_text_is_of_its_event_in_the_language_of_the_title)
{
    receive(atsc_eit_section(9, {atsc_eit_entry(5, 0, 0, multiple_string("News", "spa"))}));
    const bytes two_strings = join({hex("02"), text_bytes("eng"), hex("01 00 00 03"), text_bytes("one"),
                                    text_bytes("spa"), hex("01 00 00 03"), text_bytes("uno")});
    receive(ett_section(9u << 16 | 5 << 2 | 2, two_strings));
    const guide_event event = found();
    EXPECT_EQ(event.title, "News");
    EXPECT_EQ(event.text, "uno");
    EXPECT_EQ(event.language, "spa");
}

TEST_F(atsc_guide_found, a_title_in_another_language_has_the_extended_text_follow)
{
    const bytes two_strings = join({hex("02"), text_bytes("eng"), hex("01 00 00 03"), text_bytes("one"),
                                    text_bytes("spa"), hex("01 00 00 03"), text_bytes("uno")});
    const bytes extended = ett_section(9u << 16 | 5 << 2 | 2, two_strings);
    receive(atsc_eit_section(9, {atsc_eit_entry(5, 0, 0, multiple_string("News", "eng"))}));
    receive(extended);
    receive(atsc_eit_section(9, {atsc_eit_entry(5, 0, 0, multiple_string("Noticias", "spa"))}, version(1)));
    receive(extended);
    EXPECT_EQ(found().text, "uno");
}

TEST_F(atsc_guide_found, an_extended_text_in_another_language_is_better_than_none)
{
    receive(atsc_eit_section(9, {atsc_eit_entry(5, 0, 0, multiple_string("News", "spa"))}));
    receive(ett_section(9u << 16 | 5 << 2 | 2, multiple_string("text", "eng")));
    EXPECT_EQ(found().text, "text");
}

TEST_F(atsc_guide_found, texts_of_channels_and_of_unknown_events_are_passed_over)
{
    receive(atsc_eit_section(9, {atsc_eit_entry(5, 0, 0, multiple_string("News"))}));
    receive(ett_section(9u << 16 | 5 << 2, multiple_string("channel")));
    receive(ett_section(9u << 16 | 6 << 2 | 2, multiple_string("other")));
    receive(ett_section(8u << 16 | 5 << 2 | 2, multiple_string("other")));
    EXPECT_EQ(found().text, "");
}

TEST_F(atsc_guide_found, a_changed_event_keeps_its_text_and_a_changed_text_its_event)
{
    receive(atsc_eit_section(9, {atsc_eit_entry(5, 0, 60, multiple_string("Old"))}));
    receive(ett_section(9u << 16 | 5 << 2 | 2, multiple_string("first")));
    receive(atsc_eit_section(9, {atsc_eit_entry(5, 0, 90, multiple_string("New"))}, version(1)));
    receive(ett_section(9u << 16 | 5 << 2 | 2, multiple_string("second")));
    receive(ett_section(9u << 16 | 5 << 2 | 2, multiple_string("second")));
    const guide_event event = found();
    EXPECT_EQ(event.title, "New");
    EXPECT_EQ(event.duration_s, 90u);
    EXPECT_EQ(event.text, "second");
}

TEST_F(atsc_guide_found, what_is_cut_off_is_not_there)
{
    receive(long_section(0xCB, 9, hex("00 02 C001 00000000 D00000 05 01")));
    receive(long_section(0xCC, 9, hex("00 0009")));
    receive(long_section(0xCD, 9, hex("00 0009")));
    EXPECT_TRUE(guide.finish().events.empty());
}
