// The extended event descriptor.
#include "tests/descriptors/descriptor_test.h"

struct dvb_event_extended : descriptor_test {};

namespace {

const std::string heading = "        extended_event_descriptor() [ETSI EN 300 468 (2010-04) 6.2.15]\n";
const std::string untested =
    "!!! WARNING: Untested case: extended_event_descriptor() with item description+item entries\n";

/// The heading and the lines of the 5 fixed bytes 1F 656E67 and length_of_items.
std::string fixed_lines(unsigned length_of_items)
{
    return heading +
           "            descriptor_number=1\n"
           "            last_descriptor_number=15\n"
           "            ISO_639_language_code=eng\n"
           "            length_of_items=" +
           std::to_string(length_of_items) + "\n";
}

std::string leftover(unsigned count)
{
    return "!!! WARNING: extended_event_descriptor() " + std::to_string(count) +
           " bytes leftover/not understood\n";
}

} // namespace

TEST_F(dvb_event_extended, text_that_fills_the_body_gives_no_warning)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 00 05 48656C6C6F")), fixed_lines(0) + "            text=Hello\n");
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 00 00")), fixed_lines(0) + "            text=\n");
}

TEST_F(dvb_event_extended, text_is_raw_bytes_up_to_the_first_zero)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 00 04 0541E900")), fixed_lines(0) + "            text=\x05"
                                                                                "A\xE9\n");
}

TEST_F(dvb_event_extended, numbers_are_the_nibbles_of_the_first_byte)
{
    EXPECT_EQ(contents(0x4E, hex("A3 646575 00 00")), heading + "            descriptor_number=10\n"
                                                                "            last_descriptor_number=3\n"
                                                                "            ISO_639_language_code=deu\n"
                                                                "            length_of_items=0\n"
                                                                "            text=\n");
}

TEST_F(dvb_event_extended, dump_mode_none_prints_the_whole_length_as_leftover)
{
    EXPECT_EQ(none(0x4E, repeated(0x00, 40)), leftover(40));
    EXPECT_EQ(none(0x4E, hex("1F 656E67 00 05 48656C6C6F")), leftover(11));
    EXPECT_EQ(none(0x4E, hex("1F")), leftover(1));
    EXPECT_EQ(none(0x4E, repeated(0xFF, 255)), leftover(255));
    EXPECT_EQ(none(0x4E, {}), "");
}

TEST_F(dvb_event_extended, body_below_5_bytes_is_its_heading)
{
    for (const char *body : {"", "1F", "1F 65", "1F 656E", "1F 656E67"})
        EXPECT_EQ(contents(0x4E, hex(body)), heading);
}

TEST_F(dvb_event_extended, body_of_exactly_5_bytes_ends_with_length_of_items)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 00")), fixed_lines(0));
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 FF")), fixed_lines(255));
}

TEST_F(dvb_event_extended, items_area_past_the_body_ends_the_decoding)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 04 00 00 00")),
              fixed_lines(4) +
                  "!!! extended_event_descriptor() length_of_items is too long. length=4 avail=3\n");
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 FF 00")),
              fixed_lines(255) +
                  "!!! extended_event_descriptor() length_of_items is too long. length=255 avail=1\n");
}

TEST_F(dvb_event_extended, items_are_printed_one_after_the_other)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 0B 02 4142 03 434445 01 46 01 47 02 4849")),
              fixed_lines(11) + untested +
                  "            item:\n"
                  "                item_description=AB\n"
                  "                item=CDE\n"
                  "            item:\n"
                  "                item_description=F\n"
                  "                item=G\n"
                  "            text=HI\n");
}

TEST_F(dvb_event_extended, items_may_be_empty_and_end_at_a_zero)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 08 00 00 02 4100 02 00E9 00")),
              fixed_lines(8) + untested +
                  "            item:\n"
                  "                item_description=\n"
                  "                item=\n"
                  "            item:\n"
                  "                item_description=A\n"
                  "                item=\n"
                  "            text=\n");
}

TEST_F(dvb_event_extended, item_description_past_the_items_area_goes_on_to_the_text)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 03 03 4142 02 4849")),
              fixed_lines(3) + untested +
                  "!!! extended_event_descriptor() item_description_length is too long. length=3 avail=2\n"
                  "            text=HI\n");
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 03 00 00 01 02 4849")),
              fixed_lines(3) + untested +
                  "            item:\n"
                  "                item_description=\n"
                  "                item=\n"
                  "!!! extended_event_descriptor() item_description_length is too long. length=1 avail=0\n"
                  "            text=HI\n");
}

TEST_F(dvb_event_extended, item_past_the_items_area_goes_on_to_the_text)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 05 01 41 FF 4243 02 4849")),
              fixed_lines(5) + untested +
                  "            item:\n"
                  "                item_description=A\n"
                  "!!! extended_event_descriptor() item_length is too long. length=255 avail=2\n"
                  "            text=HI\n");
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 03 01 41 01 02 4849")),
              fixed_lines(3) + untested +
                  "            item:\n"
                  "                item_description=A\n"
                  "!!! extended_event_descriptor() item_length is too long. length=1 avail=0\n"
                  "            text=HI\n");
}

TEST_F(dvb_event_extended, item_description_that_ends_with_the_items_area_has_no_item)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 03 02 4142 02 4849")), fixed_lines(3) + untested +
                                                                       "            item:\n"
                                                                       "                item_description=AB\n"
                                                                       "            text=HI\n");
}

TEST_F(dvb_event_extended, items_area_that_ends_with_the_body_leaves_the_text_absent)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 04 01 41 01 42")), fixed_lines(4) + untested +
                                                                   "            item:\n"
                                                                   "                item_description=A\n"
                                                                   "                item=B\n");
}

TEST_F(dvb_event_extended, text_past_the_body_ends_the_decoding)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 00 03 4142")),
              fixed_lines(0) + "!!! extended_event_descriptor() text_length is too long. length=3 avail=2\n");
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 02 00 00 01")),
              fixed_lines(2) + untested +
                  "            item:\n"
                  "                item_description=\n"
                  "                item=\n"
                  "!!! extended_event_descriptor() text_length is too long. length=1 avail=0\n");
}

TEST_F(dvb_event_extended, bytes_behind_the_text_are_leftover)
{
    EXPECT_EQ(contents(0x4E, hex("1F 656E67 00 01 41 FF")),
              fixed_lines(0) + "            text=A\n" + leftover(1));
    EXPECT_EQ(contents(0x4E, join({hex("1F 656E67 00 00"), repeated(0, 200)})),
              fixed_lines(0) + "            text=\n" + leftover(200));
}
