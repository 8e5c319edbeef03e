// The walk over a loop, the raw dump and the table of tags.
#include "tests/descriptors/descriptor_test.h"

#include <algorithm>
#include <cstdio>

struct descriptor_loop_walk : descriptor_test {
    /// Every context that a tag needs is given: the ATSC mode is on, tag 0x83 is on an Australian PID.
    void decode_everything(unsigned tag)
    {
        settings.atsc_mode = 1;
        track(descriptor_pid, TRACK_PMT, 1)->private_data_specifier = tag == 0x83 ? 0x3200 : 0;
    }
};

namespace {

struct tag_row {
    unsigned tag;
    unsigned least_length; ///< below it nothing is printed
    const char *heading;
};

const tag_row tag_table[] = {
    {0x02, 1,  "video_stream_descriptor() [ISO/IEC 13818-1 2.6.2]"                           },
    {0x03, 1,  "audio_stream_descriptor() [ISO/IEC 13818-1 2.6.4]"                           },
    {0x05, 4,  "registration_descriptor() [ISO/IEC 13818-1 2.6.8]"                           },
    {0x06, 1,  "data_stream_alignment_descriptor() [ISO/IEC 13818-1 2.6.10]"                 },
    {0x09, 4,  "CA_descriptor() [ISO/IEC 13818-1 2.6.16]"                                    },
    {0x0A, 0,  "ISO_639_language_descriptor() [ISO/IEC 13818-1 2.6.18]. 0 entries"           },
    {0x0B, 2,  "system_clock_descriptor() [ISO/IEC 13818-1 2.6.20]"                          },
    {0x0C, 4,  "multiplex_buffer_utilization_descriptor() [ISO/IEC 13818-1 2.6.20]"          },
    {0x0E, 3,  "maximum_bitrate_descriptor() [ISO/IEC 13818-1 2.6.26]"                       },
    {0x0F, 4,  "private_data_indicator_descriptor() [ISO/IEC 13818-1 2.6.28]"                },
    {0x10, 6,  "smoothing_buffer_descriptor() [ISO/IEC 13818-1 2.6.30]"                      },
    {0x11, 1,  "STD_descriptor() [ISO/IEC 13818-1 2.6.32]"                                   },
    {0x13, 5,  "carousel_identifier_descriptor() [ETSI TR 101 202 4.7.7.1]"                  },
    {0x28, 0,  "AVC_video_descriptor() [SCTE 187-2 2012 8.2]"                                },
    {0x2A, 0,  "AVC_timing_and_HRD_descriptor() [ISO/IEC 13818-1:2000/Amd.3:2004 (E) 2.6.66]"},
    {0x40, 0,  "network_name_descriptor() [DVB A38 6.2.27]"                                  },
    {0x41, 0,  "service_list_descriptor() [DVB A38 6.2.35]"                                  },
    {0x43, 11, "satellite_delivery_system_descriptor() [DVB A38 6.2.13.2]"                   },
    {0x48, 2,  "service_descriptor() [DVB A38 6.2.33]"                                       },
    {0x4A, 7,  "linkage_descriptor() [DVB A38 6.2.19]"                                       },
    {0x4D, 0,  "short_event_descriptor() [DVB A38 6.2.37]"                                   },
    {0x4E, 0,  "extended_event_descriptor() [ETSI EN 300 468 (2010-04) 6.2.15]"              },
    {0x50, 0,  "component_descriptor() [ETSI EN 300 468 (2010-04) 6.2.8]"                    },
    {0x52, 1,  "stream_identifier_descriptor() [DVB A38 6.2.39]"                             },
    {0x53, 0,  "CA_identifier_descriptor() [DVB A38 6.2.5]"                                  },
    {0x54, 0,  "content_descriptor() [DVB A38 6.2.9]"                                        },
    {0x55, 0,  "parental_rating_descriptor() [DVB A38 6.2.28]"                               },
    {0x56, 0,  "teletext_descriptor() [DVB A38 6.2.43]. 0 entries."                          },
    {0x5A, 11, "terrestrial_delivery_system_descriptor() [DVB A38 6.2.13.4]"                 },
    {0x5F, 4,  "private_data_specifier_descriptor() [DVB A38 6.2.31]"                        },
    {0x66, 2,  "data_broadcast_id_descriptor() [DVB A38 6.2.12]"                             },
    {0x6A, 1,  "AC-3_descriptor() [DVB A38 D.3]"                                             },
    {0x73, 0,  "default_authority_descriptor() [ETSI TR 102 323 6.3.3]"                      },
    {0x76, 0,  "content_identifier_descriptor() [ETSI TR 102 323 12.1.4]"                    },
    {0x81, 0,  "AC-3_audio_stream_descriptor() [ATSC A/52:2012 A4.3]"                        },
    {0x83, 0,  "logical_channel_descriptor() [Australia: Free TV OP 41 LCN Descriptor]"      },
    {0x86, 0,  "caption_service_descriptor() [ATSC A/65:2009 6.9.2]"                         },
    {0x87, 0,  "content_advisory_descriptor() [ATSC A/65:2009 6.9.3]"                        },
    {0x88, 0,  "ATSC_CA_descriptor() [ATSC A/70:2010 Part 1 4.1.3.5]"                        },
    {0x8A, 1,  "cue_identifier_descriptor() [SCTE-35 (2020) 8.2]"                            },
    {0xA0, 0,  "extended_channel_name_descriptor() [ATSC A/65:2009 6.9.4]"                   },
    {0xA1, 0,  "service_location_descriptor() [ATSC A/65:2009 6.9.5]"                        },
    {0xA3, 0,  "component_name_descriptor() [ATSC A/65:2009 6.9.7]"                          },
    {0xAA, 0,  "rc_descriptor() [ATSC A/65:2009 6.9.7]"                                      },
};

bool is_in_table(unsigned tag)
{
    return std::any_of(std::begin(tag_table), std::end(tag_table),
                       [tag](const tag_row &row) { return row.tag == tag; });
}

/// The one line of a stream_identifier_descriptor behind its heading.
std::string stream_identifier(const char *component_tag)
{
    return std::string("        stream_identifier_descriptor() [DVB A38 6.2.39]\n"
                       "            component_tag=") +
           component_tag + "\n";
}

} // namespace

TEST_F(descriptor_loop_walk, loop_below_2_bytes_is_ignored)
{
    for (const uint8_t mode : {dump_descriptors_none, dump_descriptors_contents, dump_descriptors_raw}) {
        settings.dump_descriptors_mode = mode;
        EXPECT_EQ(report_of_descriptors({}), "");
        EXPECT_EQ(report_of_descriptors(hex("52")), "");
        EXPECT_EQ(report_of_descriptors(hex("FF")), "");
    }
}

TEST_F(descriptor_loop_walk, descriptors_are_printed_in_their_order)
{
    EXPECT_EQ(report_of_descriptors(hex("52 01 02  52 01 01  FF 02 00 00  52 01 03")),
              stream_identifier("0x02") + stream_identifier("0x01") +
                  "        Unknown descriptor tag=0xff, len=2\n" + stream_identifier("0x03"));
}

TEST_F(descriptor_loop_walk, single_trailing_byte_is_ignored)
{
    EXPECT_EQ(report_of_descriptors(hex("52 01 02  52")), stream_identifier("0x02"));
    EXPECT_EQ(report_of_descriptors(hex("52 01 02  FF")), stream_identifier("0x02"));
}

TEST_F(descriptor_loop_walk, first_descriptor_past_the_fence_is_reported_in_every_dump_mode)
{
    for (const uint8_t mode : {dump_descriptors_none, dump_descriptors_contents, dump_descriptors_raw}) {
        settings.dump_descriptors_mode = mode;
        EXPECT_EQ(report_of_descriptors(hex("52 01")), "!!!! descriptor too long\n");
        EXPECT_EQ(report_of_descriptors(hex("FF FF 00 00")), "!!!! descriptor too long\n");
    }
}

TEST_F(descriptor_loop_walk, descriptor_past_the_fence_abandons_the_rest_of_the_loop)
{
    EXPECT_EQ(report_of_descriptors(hex("52 01 02  52 04 52 01 03")),
              stream_identifier("0x02") + "!!!! descriptor too long\n");
    EXPECT_EQ(report_of_descriptors(hex("52 01 02  52 01")),
              stream_identifier("0x02") + "!!!! descriptor too long\n");
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_descriptors(hex("52 01 02  52 02 00")), "!!!! descriptor too long\n");
}

TEST_F(descriptor_loop_walk, descriptor_of_255_bytes_may_end_at_the_fence)
{
    EXPECT_EQ(contents(0xFE, repeated(0x00, 255)), "        Unknown descriptor tag=0xfe, len=255\n");
}

TEST_F(descriptor_loop_walk, loop_of_2_bytes_is_a_descriptor_of_length_0)
{
    EXPECT_EQ(contents(0x52, {}), "");
    EXPECT_EQ(raw(0x52, {}), "        TAG 0x52 LEN 00:\n");
    EXPECT_EQ(none(0x52, {}), "");
}

TEST_F(descriptor_loop_walk, raw_dump_follows_the_decoded_lines)
{
    EXPECT_EQ(raw(0x52, hex("0A FF")), stream_identifier("0x0a") + "        TAG 0x52 LEN 02:\n"
                                                                   "            0x0a 0xff \n");
}

TEST_F(descriptor_loop_walk, raw_dump_follows_each_descriptor)
{
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_descriptors(hex("52 01 02  FE 01 0F  52 00  00 01")),
              stream_identifier("0x02") + "        TAG 0x52 LEN 01:\n"
                                          "            0x02 \n"
                                          "        Unknown descriptor tag=0xfe, len=1\n"
                                          "        TAG 0xfe LEN 01:\n"
                                          "            0x0f \n"
                                          "        TAG 0x52 LEN 00:\n"
                                          "!!!! descriptor too long\n");
}

TEST_F(descriptor_loop_walk, raw_dump_of_16_bytes_is_one_line)
{
    EXPECT_EQ(raw(0xFF, repeated(0xAB, 16)), "        Unknown descriptor tag=0xff, len=16\n"
                                             "        TAG 0xff LEN 10:\n"
                                             "            0xab 0xab 0xab 0xab 0xab 0xab 0xab 0xab "
                                             "0xab 0xab 0xab 0xab 0xab 0xab 0xab 0xab \n");
}

TEST_F(descriptor_loop_walk, raw_dump_of_17_bytes_is_two_lines)
{
    EXPECT_EQ(raw(0xFF, join({repeated(0x00, 16), hex("C1")})),
              "        Unknown descriptor tag=0xff, len=17\n"
              "        TAG 0xff LEN 11:\n"
              "            0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 "
              "0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
              "            0xc1 \n");
}

TEST_F(descriptor_loop_walk, raw_dump_goes_up_to_255_bytes)
{
    std::string expected = "        Unknown descriptor tag=0x00, len=255\n"
                           "        TAG 0x00 LEN ff:\n";
    bytes body;
    for (unsigned i = 0; i < 255; ++i) {
        char digits[8];
        std::snprintf(digits, sizeof digits, "0x%02x ", i);
        if (i % 16 == 0) expected += "            ";
        expected += digits;
        if (i % 16 == 15 || i == 254) expected += "\n";
        body.push_back(static_cast<uint8_t>(i));
    }
    EXPECT_EQ(raw(0x00, body), expected);
}

TEST_F(descriptor_loop_walk, tag_outside_the_table_is_unknown_unless_the_dump_mode_is_none)
{
    for (unsigned tag = 0; tag <= 0xFF; ++tag) {
        if (is_in_table(tag)) continue;
        decode_everything(tag);
        char line[64], dump[64];
        std::snprintf(line, sizeof line, "        Unknown descriptor tag=0x%02x, len=2\n", tag);
        std::snprintf(dump, sizeof dump, "        TAG 0x%02x LEN 02:\n            0x01 0x20 \n", tag);
        EXPECT_EQ(contents(tag, hex("0120")), line);
        EXPECT_EQ(raw(tag, hex("0120")), std::string(line) + dump);
        EXPECT_EQ(none(tag, hex("0120")), "");
    }
}

TEST_F(descriptor_loop_walk, every_tag_of_the_table_prints_its_heading)
{
    EXPECT_EQ(std::size(tag_table), 44u);
    for (const tag_row &row : tag_table) {
        decode_everything(row.tag);
        const std::string report = contents(row.tag, repeated(0xFF, row.least_length));
        EXPECT_EQ(report.substr(0, report.find('\n')), std::string("        ") + row.heading);
    }
}

TEST_F(descriptor_loop_walk, descriptor_below_its_least_length_is_skipped_but_for_its_raw_dump)
{
    for (const tag_row &row : tag_table)
        for (unsigned length = 0; length < row.least_length; ++length) {
            decode_everything(row.tag);
            char dump[32];
            std::snprintf(dump, sizeof dump, "        TAG 0x%02x LEN %02x:\n", row.tag, length);
            std::string expected = dump;
            if (length > 0) expected += "            ";
            for (unsigned i = 0; i < length; ++i) expected += "0x00 ";
            if (length > 0) expected += "\n";

            EXPECT_EQ(none(row.tag, repeated(0x00, length)), "");
            EXPECT_EQ(contents(row.tag, repeated(0x00, length)), "");
            EXPECT_EQ(raw(row.tag, repeated(0x00, length)), expected);
        }
}
