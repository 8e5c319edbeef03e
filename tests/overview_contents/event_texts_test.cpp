#include "tests/overview_contents/si_sections.h"

#include "mpeg_ts_overview/contents/event_texts.h"

#include <gtest/gtest.h>

namespace {

event_texts texts_of(const bytes &descriptors)
{
    dvb_text_converter texts;
    return read_event_texts({descriptors.data(), descriptors.data() + descriptors.size()}, texts);
}

} // namespace

TEST(event_texts, the_short_text_comes_before_the_extended_one)
{
    const event_texts found = texts_of(
        join({extended_event(0, 1, "Exten"), extended_event(1, 1, "ded"), short_event("Title", "Short")}));
    EXPECT_EQ(found.title, "Title");
    EXPECT_EQ(found.text, "Short\nExtended");
    EXPECT_EQ(found.language, "eng");
}

TEST(event_texts, there_is_no_line_end_without_both_texts)
{
    EXPECT_EQ(texts_of(join({short_event("T", ""), extended_event(0, 0, "Long")})).text, "Long");
    EXPECT_EQ(texts_of(join({short_event("T", "Short"), extended_event(0, 0, "")})).text, "Short");
}

TEST(event_texts, extended_parts_go_by_their_number)
{
    EXPECT_EQ(
        texts_of(join({extended_event(2, 2, "C"), extended_event(0, 2, "A"), extended_event(1, 2, "B")}))
            .text,
        "ABC");
}

TEST(event_texts, each_part_has_its_own_character_table)
{
    EXPECT_EQ(texts_of(join({extended_event(0, 1, "\x05\xE4"), extended_event(1, 1, "\x15\xC3\xB6")})).text,
              "\xC3\xA4\xC3\xB6");
}

TEST(event_texts, the_first_language_is_the_only_one)
{
    const event_texts found =
        texts_of(join({short_event("Titre", "Court", "fra"), short_event("Title", "Short", "eng"),
                       extended_event(0, 0, "English", "eng"), extended_event(0, 0, "Francais", "fra")}));
    EXPECT_EQ(found.title, "Titre");
    EXPECT_EQ(found.text, "Court\nFrancais");
    EXPECT_EQ(found.language, "fra");
}

TEST(event_texts, items_are_passed_over)
{
    const bytes items = join({counted_text("Director"), counted_text("Name")});
    EXPECT_EQ(texts_of(extended_event(0, 0, "Text", "eng", items)).text, "Text");
}

TEST(event_texts, without_a_short_event_there_is_no_title)
{
    const event_texts found = texts_of(extended_event(0, 0, "Text", "deu"));
    EXPECT_EQ(found.title, "");
    EXPECT_EQ(found.text, "Text");
    EXPECT_EQ(found.language, "deu");
}

TEST(event_texts, no_descriptors_are_no_texts)
{
    const event_texts found = texts_of({});
    EXPECT_EQ(found.title + found.text + found.language, "");
}

TEST(event_texts, cut_descriptors_give_what_is_there)
{
    EXPECT_EQ(texts_of(descriptor(0x4D, hex("656E67 09 4142"))).title, "AB");
    EXPECT_EQ(texts_of(descriptor(0x4D, hex("656E67 01 41 09 42"))).text, "B");
    EXPECT_EQ(texts_of(descriptor(0x4D, hex("656E"))).language, "en");
    EXPECT_EQ(texts_of(descriptor(0x4E, hex("00 656E67 09 41"))).text, "");
    EXPECT_EQ(texts_of(descriptor(0x4E, hex("00 656E67 00 05 4142"))).text, "AB");
    EXPECT_EQ(texts_of(descriptor(0x4E, {})).text, "");
}
