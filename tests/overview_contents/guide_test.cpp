#include "tests/overview_contents/guide_test.h"

#include <gtest/gtest.h>

TEST_F(guide_found, an_event_has_start_duration_texts_and_language)
{
    receive(eit_section(0x50, 9, eit_entry(3, "C079 124500", "014530", short_event("Title", "Text", "fra"))));
    const guide_event event = found();
    EXPECT_EQ(event.service, 9);
    EXPECT_EQ(event.event_id, 3);
    EXPECT_EQ(event.start_utc_s, 750516300) << "1993-10-13 12:45:00";
    EXPECT_EQ(event.duration_s, 6330u);
    EXPECT_EQ(event.title, "Title");
    EXPECT_EQ(event.text, "Text");
    EXPECT_EQ(event.language, "fra");
    EXPECT_STREQ(event.source, "schedule");
    EXPECT_FALSE(event.was_present);
    EXPECT_EQ(event.present_ticks, std::nullopt);
}

TEST_F(guide_found, the_source_is_that_of_the_table_and_section)
{
    for (unsigned table_id = 0x50; table_id <= 0x5F; ++table_id)
        receive(eit_section(table_id, 1, eit_entry(table_id, "C079 000000", "000000")));
    receive(eit_section(0x4E, 1, eit_entry(1, "C079 000000", "000000")));
    receive(following(eit_entry(2, "C079 000000", "000000")));
    const guide_facts facts = guide.finish();
    ASSERT_EQ(facts.events.size(), 18u);
    for (size_t i = 0; i < 16; ++i) EXPECT_STREQ(facts.events[i].source, "schedule");
    EXPECT_STREQ(facts.events[16].source, "present");
    EXPECT_STREQ(facts.events[17].source, "following");
}

TEST_F(guide_found, events_of_other_streams_are_counted_only)
{
    const bytes two = join({eit_entry(1, "C079 000000", "000000"), eit_entry(2, "C079 000000", "000000")});
    for (const unsigned table_id : {0x4Fu, 0x60u, 0x6Fu}) receive(eit_section(table_id, 1, two));
    receive(eit_section(0x4F, 1, two));
    const guide_facts facts = guide.finish();
    EXPECT_TRUE(facts.events.empty());
    EXPECT_EQ(facts.events_of_others, 8u);
}

TEST_F(guide_found, a_changed_event_is_what_came_last)
{
    receive(eit_section(0x50, 1, eit_entry(3, "C079 120000", "010000", short_event("Old", "Long text"))));
    receive(eit_section(0x50, 1, eit_entry(3, "C079 123000", "003000", short_event("New")), version(1)));
    const guide_event event = found();
    EXPECT_EQ(event.start_utc_s, 750513600 + 1800);
    EXPECT_EQ(event.duration_s, 1800u);
    EXPECT_EQ(event.title, "New");
    EXPECT_EQ(event.text, "");
}

TEST_F(guide_found, a_version_that_goes_back_counts_as_any_other)
{
    const bytes old_section =
        eit_section(0x50, 1, eit_entry(3, "C079 120000", "010000", short_event("Old")), version(4));
    receive(old_section);
    receive(eit_section(0x50, 1, eit_entry(3, "C079 120000", "010000", short_event("New")), version(5)));
    receive(old_section);
    EXPECT_EQ(found().title, "Old");
}

TEST_F(guide_found, a_repeated_section_takes_its_event_back_from_another_table)
{
    const bytes schedule =
        eit_section(0x50, 1, eit_entry(3, "C079 120000", "010000", short_event("Schedule")));
    receive(schedule);
    receive(eit_section(0x4E, 1, eit_entry(3, "C079 120100", "010000", short_event("Now"))));
    receive(schedule);
    const guide_event event = found();
    EXPECT_EQ(event.title, "Schedule");
    EXPECT_EQ(event.start_utc_s, 750513600);
    EXPECT_STREQ(event.source, "schedule");
    EXPECT_TRUE(event.was_present);
}

TEST_F(guide_found, an_event_said_again_in_the_same_words_keeps_them_and_takes_the_rest)
{
    const bytes words = short_event("Title", "Text");
    const bytes schedule = eit_section(0x50, 1, eit_entry(3, "C079 120000", "010000", words));
    const bytes present = eit_section(0x4E, 1, eit_entry(3, "C079 120100", "003000", words));
    for (const bytes &section : {schedule, present, schedule, present}) receive(section);
    const guide_event event = found();
    EXPECT_EQ(event.title, "Title");
    EXPECT_EQ(event.text, "Text");
    EXPECT_EQ(event.start_utc_s, 750513600 + 60);
    EXPECT_EQ(event.duration_s, 1800u);
    EXPECT_STREQ(event.source, "present");
}

TEST_F(guide_found, of_two_entries_of_one_event_in_a_section_the_last_stands_always)
{
    const bytes twice = eit_section(0x50, 1,
                                    join({eit_entry(3, "C079 120000", "010000", short_event("One")),
                                          eit_entry(3, "C079 120000", "010000", short_event("Two"))}));
    receive(twice);
    receive(twice);
    EXPECT_EQ(found().title, "Two");
}

TEST_F(guide_found, an_event_is_of_its_service)
{
    receive(eit_section(0x50, 1, eit_entry(3, "C079 120000", "010000", short_event("One"))));
    receive(eit_section(0x50, 2, eit_entry(3, "C079 120000", "010000", short_event("Two"))));
    const guide_facts facts = guide.finish();
    ASSERT_EQ(facts.events.size(), 2u);
    EXPECT_EQ(facts.events[0].title, "One");
    EXPECT_EQ(facts.events[1].title, "Two");
}

TEST_F(guide_found, present_from_is_the_first_reception_as_present)
{
    const bytes event = eit_entry(3, "C079 120000", "010000");
    receive(eit_section(0x50, 1, event), at_packet(1, 1));
    receive(following(event), at_packet(2, 2));
    receive(eit_section(0x4E, 1, event), at_packet(3, 3));
    receive(eit_section(0x4E, 1, event), at_packet(4, 4));
    receive(following(event), at_packet(5, 5));
    receive(eit_section(0x4E, 1, event, version(1)), at_packet(6, 6));
    const guide_event last = found();
    EXPECT_TRUE(last.was_present);
    EXPECT_EQ(last.present_ticks, 3 * ticks_per_second);
}

TEST_F(guide_found, an_event_over_midnight_and_the_end_of_a_month_keeps_its_start)
{
    receive(eit_section(0x50, 1,
                        join({eit_entry(1, "C08A 233000", "020000"), eit_entry(2, "C08B 013000", "000001"),
                              eit_entry(3, "C0C8 235959", "235959")})));
    const guide_facts facts = guide.finish();
    ASSERT_EQ(facts.events.size(), 3u);
    EXPECT_EQ(facts.events[0].start_utc_s, 752023800) << "1993-10-30 23:30:00";
    EXPECT_EQ(facts.events[1].start_utc_s, 752023800 + 7200);
    EXPECT_EQ(facts.events[2].start_utc_s, 757382399) << "1993-12-31 23:59:59";
    EXPECT_EQ(facts.events[2].duration_s, 86399u);
}

TEST_F(guide_found, undefined_times_are_none)
{
    receive(eit_section(0x50, 1,
                        join({eit_entry(1, "FFFFFFFFFF", "010000"), eit_entry(2, "C079 120000", "FFFFFF")})));
    const guide_facts facts = guide.finish();
    ASSERT_EQ(facts.events.size(), 2u);
    EXPECT_EQ(facts.events[0].start_utc_s, std::nullopt);
    EXPECT_EQ(facts.events[0].duration_s, 3600u);
    EXPECT_EQ(facts.events[1].start_utc_s, 750513600);
    EXPECT_EQ(facts.events[1].duration_s, std::nullopt);
}

TEST_F(guide_found, a_duration_of_nothing_is_zero)
{
    receive(eit_section(0x50, 1, eit_entry(1, "C079 120000", "000000")));
    EXPECT_EQ(found().duration_s, 0u);
}

TEST_F(guide_found, at_most_20000_events_are_kept_and_the_rest_is_counted)
{
    for (unsigned id = 0; id < guide_event_limit + 5; ++id)
        receive(eit_section(0x50, 1, eit_entry(id, "C079 120000", "010000", short_event("T"))));
    receive(eit_section(0x50, 1, eit_entry(7, "C079 120000", "010000", short_event("New")), version(1)));
    const guide_facts facts = guide.finish();
    EXPECT_EQ(facts.events.size(), guide_event_limit);
    EXPECT_EQ(facts.not_kept, 5u);
    EXPECT_EQ(facts.text_bytes_not_kept, 0u);
    EXPECT_EQ(facts.events[7].title, "New");
}

TEST_F(guide_found, at_most_8_mib_of_text_are_kept_and_titles_go_on_where_they_have_room)
{
    const std::string part(245, 'x');
    bytes texts_of_event = short_event("Title");
    for (unsigned number = 0; number < 15; ++number)
        texts_of_event = join({texts_of_event, extended_event(number, 14, part)});
    const size_t size_of_event = 3 + 5 + 15 * 245;
    const size_t whole_events = guide_text_limit / size_of_event;

    for (unsigned id = 0; id < whole_events + 10; ++id)
        receive(eit_section(0x50, 1, eit_entry(id, "C079 120000", "010000", texts_of_event)));
    receive(eit_section(0x50, 1, eit_entry(0, "C079 120000", "010000"), version(1)));
    receive(eit_section(0x50, 2, eit_entry(0, "C079 120000", "010000", texts_of_event)));
    const guide_facts facts = guide.finish();
    ASSERT_EQ(facts.events.size(), whole_events + 11);
    EXPECT_EQ(facts.text_bytes_not_kept, 10 * 15 * 245u);
    EXPECT_EQ(facts.events[whole_events - 1].text.size(), 15 * 245u);
    EXPECT_EQ(facts.events[whole_events].title, "Title");
    EXPECT_EQ(facts.events[whole_events].language, "eng");
    EXPECT_EQ(facts.events[whole_events].text, "");
    EXPECT_EQ(facts.events.back().text.size(), 15 * 245u) << "what another event gave up is free again";
}

TEST_F(guide_found, words_that_had_no_room_get_it_when_they_are_said_again)
{
    const std::string part(245, 'x');
    bytes words = short_event("Title");
    for (unsigned number = 0; number < 15; ++number) words = join({words, extended_event(number, 14, part)});
    const size_t size_of_event = 3 + 5 + 15 * 245;
    const unsigned whole_events = guide_text_limit / size_of_event;

    for (unsigned id = 0; id <= whole_events; ++id)
        receive(eit_section(0x50, 1, eit_entry(id, "C079 120000", "010000", words)));
    receive(eit_section(0x4E, 1, eit_entry(whole_events, "C079 120000", "010000", words)));
    receive(eit_section(0x50, 1, eit_entry(0, "C079 120000", "010000"), version(1)));
    receive(eit_section(0x50, 1, eit_entry(whole_events, "C079 120000", "010000", words)));
    const guide_facts facts = guide.finish();
    EXPECT_EQ(facts.text_bytes_not_kept, 2 * 15 * 245u) << "counted each time";
    EXPECT_EQ(facts.events.back().text.size(), 15 * 245u);
}

TEST_F(guide_found, events_that_do_not_fit_their_section_are_not_there)
{
    bytes cut = eit_entry(2, "C079 120000", "010000", short_event("Cut"));
    cut.pop_back();
    receive(eit_section(0x50, 1, join({eit_entry(1, "C079 120000", "010000"), cut})));
    receive(long_section(0x50, 1, hex("0001 2222 00")));
    EXPECT_EQ(found().event_id, 1);
}
