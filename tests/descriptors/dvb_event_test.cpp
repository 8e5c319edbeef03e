// Short events, parental ratings and the two descriptors of ETSI TR 102 323.
#include "tests/descriptors/descriptor_test.h"

#include <cstdio>

struct dvb_event : descriptor_test {};

namespace {

const std::string short_event_heading = "        short_event_descriptor() [DVB A38 6.2.37]\n";
const std::string short_event_overrun =
    "!!! One or more fields of the short event descriptor extend past the descriptor\n";
const std::string identifier_heading = "        content_identifier_descriptor() [ETSI TR 102 323 12.1.4]\n";

} // namespace

TEST_F(dvb_event, short_event_prints_language_name_and_text)
{
    const bytes body =
        join({text_bytes("eng"), hex("04"), text_bytes("News"), hex("05"), text_bytes("Today")});
    EXPECT_EQ(contents(0x4D, body), short_event_heading + "            ISO_639_language_code=eng\n"
                                                          "            event_name=News\n"
                                                          "            text=Today\n");
    EXPECT_EQ(none(0x4D, body), "");
}

TEST_F(dvb_event, short_event_texts_are_raw_bytes_up_to_the_first_zero)
{
    EXPECT_EQ(contents(0x4D, hex("646575 03 05 C4 21 05 41 0A 42 00 43")),
              short_event_heading + "            ISO_639_language_code=deu\n"
                                    "            event_name=\x05\xC4!\n"
                                    "            text=A\nB\n");
    EXPECT_EQ(contents(0x4D, hex("646575 00 00")), short_event_heading +
                                                       "            ISO_639_language_code=deu\n"
                                                       "            event_name=\n"
                                                       "            text=\n");
}

TEST_F(dvb_event, short_event_ignores_bytes_behind_the_text)
{
    EXPECT_EQ(contents(0x4D, hex("646575 01 41 01 42 FF FF")), short_event_heading +
                                                                   "            ISO_639_language_code=deu\n"
                                                                   "            event_name=A\n"
                                                                   "            text=B\n");
}

TEST_F(dvb_event, short_event_below_3_bytes_prints_the_warning_alone)
{
    for (const char *body : {"", "65", "656E"}) {
        EXPECT_EQ(contents(0x4D, hex(body)), short_event_heading + short_event_overrun);
        EXPECT_EQ(none(0x4D, hex(body)), short_event_overrun);
    }
}

TEST_F(dvb_event, short_event_of_length_3_prints_the_language_and_then_the_warning)
{
    EXPECT_EQ(contents(0x4D, hex("656E67")),
              short_event_heading + "            ISO_639_language_code=eng\n" + short_event_overrun);
    EXPECT_EQ(none(0x4D, hex("656E67")), short_event_overrun);
}

TEST_F(dvb_event, short_event_name_past_the_body_ends_the_decoding)
{
    for (const char *body : {"656E67 01", "656E67 03 41 42"}) {
        EXPECT_EQ(contents(0x4D, hex(body)),
                  short_event_heading + "            ISO_639_language_code=eng\n" + short_event_overrun);
        EXPECT_EQ(none(0x4D, hex(body)), short_event_overrun);
    }
}

TEST_F(dvb_event, short_event_name_that_ends_with_the_body_is_printed_before_the_warning)
{
    EXPECT_EQ(contents(0x4D, hex("656E67 02 41 42")), short_event_heading +
                                                          "            ISO_639_language_code=eng\n"
                                                          "            event_name=AB\n" +
                                                          short_event_overrun);
    EXPECT_EQ(none(0x4D, hex("656E67 00")), short_event_overrun);
}

TEST_F(dvb_event, short_event_text_past_the_body_ends_the_decoding)
{
    for (const char *body : {"656E67 01 41 01", "656E67 01 41 03 42 43"}) {
        EXPECT_EQ(contents(0x4D, hex(body)), short_event_heading +
                                                 "            ISO_639_language_code=eng\n"
                                                 "            event_name=A\n" +
                                                 short_event_overrun);
        EXPECT_EQ(none(0x4D, hex(body)), short_event_overrun);
    }
}

TEST_F(dvb_event, parental_rating_of_1_to_15_is_a_minimum_age)
{
    for (unsigned rating = 0; rating <= 0xFF; ++rating) {
        char digits[8];
        std::snprintf(digits, sizeof digits, "0x%02x", rating);
        std::string expected = std::string("        parental_rating_descriptor() [DVB A38 6.2.28]\n"
                                           "            country=GBR rating=") +
                               digits + "\n";
        if (rating >= 1 && rating <= 15)
            expected += "                minimum age: " + std::to_string(rating + 3) + " years or older\n";
        EXPECT_EQ(contents(0x55, join({text_bytes("GBR"), big_endian(rating, 1)})), expected);
    }
}

TEST_F(dvb_event, parental_rating_prints_every_complete_entry)
{
    EXPECT_EQ(contents(0x55, hex("474252 0C 465241 10 444555 01 4553")),
              "        parental_rating_descriptor() [DVB A38 6.2.28]\n"
              "            country=GBR rating=0x0c\n"
              "                minimum age: 15 years or older\n"
              "            country=FRA rating=0x10\n"
              "            country=DEU rating=0x01\n"
              "                minimum age: 4 years or older\n");
    EXPECT_EQ(none(0x55, hex("474252 0C")), "");
}

TEST_F(dvb_event, parental_rating_below_4_bytes_is_its_heading)
{
    for (const char *body : {"", "47", "4742", "474252"})
        EXPECT_EQ(contents(0x55, hex(body)), "        parental_rating_descriptor() [DVB A38 6.2.28]\n");
}

TEST_F(dvb_event, content_identifier_of_an_empty_body_is_its_heading)
{
    EXPECT_EQ(contents(0x76, {}), identifier_heading);
    EXPECT_EQ(none(0x76, {}), "");
}

TEST_F(dvb_event, content_identifier_prints_a_CRID_as_raw_text)
{
    EXPECT_EQ(contents(0x76, join({hex("04 05"), text_bytes("/a.b\xE9"), hex("08 00")})),
              identifier_heading +
                  "            crid_type=0x01 [CRID references the item that this event is an instance of] "
                  "crid_location=0 [Carried within this descriptor]\n"
                  "            CRID: /a.b\xE9\n"
                  "            crid_type=0x02 [CRID references a series that this event belongs to] "
                  "crid_location=0 [Carried within this descriptor]\n"
                  "            CRID: \n");
    EXPECT_EQ(none(0x76, hex("04 02 41 42")), "");
}

TEST_F(dvb_event, content_identifier_names_crid_types_0_to_3_only)
{
    const char *const names[] = {
        "No type defined", "CRID references the item that this event is an instance of",
        "CRID references a series that this event belongs to", "CRID references a recommendation"};
    for (unsigned crid_type = 0; crid_type < 64; ++crid_type) {
        char digits[8];
        std::snprintf(digits, sizeof digits, "0x%02x", crid_type);
        EXPECT_EQ(contents(0x76, join({big_endian(crid_type << 2 | 1, 1), hex("ABCD")})),
                  identifier_heading + "            crid_type=" + digits + " [" +
                      (crid_type < 4 ? names[crid_type] : "?") +
                      "] crid_location=1 [Carried in Content Identifier Table (CIT)]\n"
                      "            CRID reference: 0xabcd\n");
    }
}

TEST_F(dvb_event, content_identifier_of_location_2_is_followed_by_the_next_entry)
{
    EXPECT_EQ(contents(0x76, hex("02 05 00 01 0F 0D FF FE")),
              identifier_heading +
                  "            crid_type=0x00 [No type defined] crid_location=2 [?]\n"
                  "            crid_type=0x01 [CRID references the item that this event is an instance of] "
                  "crid_location=1 [Carried in Content Identifier Table (CIT)]\n"
                  "            CRID reference: 0x0001\n"
                  "            crid_type=0x03 [CRID references a recommendation] crid_location=3 [?]\n"
                  "            crid_type=0x03 [CRID references a recommendation] "
                  "crid_location=1 [Carried in Content Identifier Table (CIT)]\n"
                  "            CRID reference: 0xfffe\n");
}

TEST_F(dvb_event, content_identifier_stops_silently_where_a_field_is_missing)
{
    for (const char *body : {"00", "00 01", "00 03 41 42"})
        EXPECT_EQ(contents(0x76, hex(body)), identifier_heading +
                                                 "            crid_type=0x00 [No type defined] "
                                                 "crid_location=0 [Carried within this descriptor]\n");
    for (const char *body : {"01", "01 12"})
        EXPECT_EQ(contents(0x76, hex(body)),
                  identifier_heading + "            crid_type=0x00 [No type defined] "
                                       "crid_location=1 [Carried in Content Identifier Table (CIT)]\n");
}

TEST_F(dvb_event, default_authority_prints_the_whole_body)
{
    EXPECT_EQ(contents(0x73, text_bytes("www.example.com")),
              "        default_authority_descriptor() [ETSI TR 102 323 6.3.3]\n"
              "            default_authority=www.example.com\n");
    EXPECT_EQ(contents(0x73, hex("41 FF 00 42")),
              "        default_authority_descriptor() [ETSI TR 102 323 6.3.3]\n"
              "            default_authority=A\xFF\n");
    EXPECT_EQ(contents(0x73, {}), "        default_authority_descriptor() [ETSI TR 102 323 6.3.3]\n"
                                  "            default_authority=\n");
    EXPECT_EQ(none(0x73, text_bytes("www.example.com")), "");
}
