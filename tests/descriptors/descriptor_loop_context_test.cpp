// What the ATSC mode and the private data specifier make of a tag.
#include "tests/descriptors/descriptor_test.h"

#include <cstdio>
#include <tuple>

namespace {

constexpr uint32_t no_specifier = 0;
constexpr uint32_t foreign_specifier = 0x00000028;
constexpr uint32_t australian_specifier = 0x00003200;

struct conditional_tag {
    unsigned tag;
    const char *body;
    const char *lines; ///< where the tag is decoded
};

constexpr conditional_tag logical_channel = {
    0x83, "0261 FC02",
    "        logical_channel_descriptor() [Australia: Free TV OP 41 LCN Descriptor]\n"
    "            Channel 2:\n"
    "                visible_service_flag=1\n"
    "                service_id=0x0261\n"};

constexpr conditional_tag atsc_tags[] = {
    {0x88, "0B07",
     "        ATSC_CA_descriptor() [ATSC A/70:2010 Part 1 4.1.3.5]\n"
     "            CA_System_ID=0x0b07\n"                              },
    {0x8A, "01",
     "        cue_identifier_descriptor() [SCTE-35 (2020) 8.2]\n"
     "            cue_stream_type=0x01 All Commands\n"                },
    {0xA0, "",
     "        extended_channel_name_descriptor() [ATSC A/65:2009 6.9.4]\n"
     "            multiple_string_structure() [ATSC A/65:2009 6.39]\n"},
    {0xA1, "FFF1 00",
     "        service_location_descriptor() [ATSC A/65:2009 6.9.5]\n"
     "            PCR_PID=0x1ff1\n"
     "            number_elements=0\n"                                },
    {0xA3, "",
     "        component_name_descriptor() [ATSC A/65:2009 6.9.7]\n"
     "            multiple_string_structure() [ATSC A/65:2009 6.39]\n"},
    {0xAA, "0A FF",
     "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
     "            RAW DATA: 0a ff \n"                                 },
};

constexpr unsigned unconditional_tags[] = {0x02, 0x03, 0x05, 0x06, 0x09, 0x0A, 0x0B, 0x0C, 0x0E, 0x0F,
                                           0x10, 0x11, 0x13, 0x28, 0x2A, 0x40, 0x41, 0x43, 0x48, 0x4A,
                                           0x4D, 0x4E, 0x50, 0x52, 0x53, 0x54, 0x55, 0x56, 0x5A, 0x5F,
                                           0x66, 0x6A, 0x73, 0x76, 0x81, 0x86, 0x87};

std::string unknown(const conditional_tag &row)
{
    char line[64];
    std::snprintf(line, sizeof line, "        Unknown descriptor tag=0x%02x, len=%zu\n", row.tag,
                  hex(row.body).size());
    return line;
}

} // namespace

struct descriptor_loop_state : descriptor_test {
    std::string report_of(const conditional_tag &row) { return contents(row.tag, hex(row.body)); }

    std::string report_of(const conditional_tag &row, int32_t atsc_mode, uint32_t private_data_specifier)
    {
        enter(atsc_mode, private_data_specifier);
        return report_of(row);
    }

    static void enter(int32_t atsc_mode, uint32_t private_data_specifier)
    {
        settings.atsc_mode = atsc_mode;
        track(descriptor_pid, TRACK_PMT, 1)->private_data_specifier = private_data_specifier;
    }

    static uint32_t specifier() { return mpeg_ts_pid_tracking_get(descriptor_pid)->private_data_specifier; }
};

/// ATSC mode and private data specifier.
struct descriptor_loop_context : descriptor_loop_state,
                                 testing::WithParamInterface<std::tuple<int32_t, uint32_t>> {
    int32_t atsc_mode() const { return std::get<0>(GetParam()); }
    uint32_t private_data_specifier() const { return std::get<1>(GetParam()); }

    void expect_decoded_when(bool condition, const conditional_tag &row)
    {
        EXPECT_EQ(report_of(row, atsc_mode(), private_data_specifier()),
                  condition ? row.lines : unknown(row));
    }

    void expect_atsc_tag(const conditional_tag &row)
    {
        expect_decoded_when(atsc_mode() == 1 && private_data_specifier() == no_specifier, row);
    }
};

TEST_P(descriptor_loop_context, tag_83_needs_an_Australian_specifier)
{
    expect_decoded_when(private_data_specifier() == australian_specifier, logical_channel);
}

TEST_P(descriptor_loop_context, tag_88_needs_ATSC_and_no_specifier)
{
    expect_atsc_tag(atsc_tags[0]);
}
TEST_P(descriptor_loop_context, tag_8A_needs_ATSC_and_no_specifier)
{
    expect_atsc_tag(atsc_tags[1]);
}
TEST_P(descriptor_loop_context, tag_A0_needs_ATSC_and_no_specifier)
{
    expect_atsc_tag(atsc_tags[2]);
}
TEST_P(descriptor_loop_context, tag_A1_needs_ATSC_and_no_specifier)
{
    expect_atsc_tag(atsc_tags[3]);
}
TEST_P(descriptor_loop_context, tag_A3_needs_ATSC_and_no_specifier)
{
    expect_atsc_tag(atsc_tags[4]);
}
TEST_P(descriptor_loop_context, tag_AA_needs_ATSC_and_no_specifier)
{
    expect_atsc_tag(atsc_tags[5]);
}

TEST_P(descriptor_loop_context, all_other_tags_are_decoded_in_every_context)
{
    EXPECT_EQ(std::size(unconditional_tags) + 1 + std::size(atsc_tags), 44u);
    for (const unsigned tag : unconditional_tags) {
        const bytes body = repeated(0x00, 12);
        enter(-1, no_specifier);
        const std::string report = contents(tag, body);
        EXPECT_NE(report.find("() ["), std::string::npos) << "tag " << tag;
        enter(atsc_mode(), private_data_specifier());
        EXPECT_EQ(contents(tag, body), report) << "tag " << tag;
    }
}

INSTANTIATE_TEST_SUITE_P(all, descriptor_loop_context,
                         testing::Combine(testing::Values(-1, 0, 1),
                                          testing::Values(no_specifier, foreign_specifier,
                                                          australian_specifier)),
                         [](const auto &context) {
                             const int32_t atsc_mode = std::get<0>(context.param);
                             const uint32_t specifier = std::get<1>(context.param);
                             return std::string(atsc_mode > 0    ? "ATSC"
                                                : atsc_mode == 0 ? "no_ATSC"
                                                                 : "ATSC_unknown") +
                                    (specifier == no_specifier        ? "_unprivate"
                                     : specifier == foreign_specifier ? "_foreign"
                                                                      : "_Australian");
                         });

TEST_F(descriptor_loop_state, Australian_range_is_the_second_lowest_byte)
{
    for (const uint32_t inside : {0x3200u, 0x3201u, 0x32FFu, 0x000132ABu, 0xFFFF3200u, 0x32323232u})
        EXPECT_EQ(report_of(logical_channel, -1, inside), logical_channel.lines);
    for (const uint32_t outside :
         {0x0u, 0x32u, 0x31FFu, 0x3300u, 0x320000u, 0x32000000u, 0x0000B200u, 0xFFFFCDFFu})
        EXPECT_EQ(report_of(logical_channel, 1, outside), unknown(logical_channel));
}

TEST_F(descriptor_loop_state, any_bit_of_the_specifier_makes_ATSC_tags_unknown)
{
    for (const conditional_tag &row : atsc_tags)
        for (unsigned bit = 0; bit < 32; ++bit) EXPECT_EQ(report_of(row, 1, 1u << bit), unknown(row));
}

TEST_F(descriptor_loop_state, tag_whose_condition_fails_is_dumped_like_an_unknown_one)
{
    EXPECT_EQ(raw(0xA0, hex("00")), "        Unknown descriptor tag=0xa0, len=1\n"
                                    "        TAG 0xa0 LEN 01:\n"
                                    "            0x00 \n");
    EXPECT_EQ(raw(0x83, {}), "        Unknown descriptor tag=0x83, len=0\n"
                             "        TAG 0x83 LEN 00:\n");
    EXPECT_EQ(none(0xA0, hex("00")), "");
}

TEST_F(descriptor_loop_state, specifier_is_kept_in_every_dump_mode)
{
    for (const uint8_t mode : {dump_descriptors_none, dump_descriptors_contents, dump_descriptors_raw}) {
        enter(-1, no_specifier);
        settings.dump_descriptors_mode = mode;
        report_of_descriptors(hex("5F 04 89ABCDEF"));
        EXPECT_EQ(specifier(), 0x89ABCDEFu);
    }
}

TEST_F(descriptor_loop_state, specifier_below_4_bytes_is_not_kept)
{
    for (const char *loop : {"5F 00", "5F 01 00", "5F 02 0000", "5F 03 000000"}) {
        enter(-1, foreign_specifier);
        report_of_descriptors(hex(loop));
        EXPECT_EQ(specifier(), foreign_specifier);
    }
}

TEST_F(descriptor_loop_state, specifier_past_the_fence_is_not_kept)
{
    enter(-1, foreign_specifier);
    report_of_descriptors(hex("5F 05 00003200"));
    EXPECT_EQ(specifier(), foreign_specifier);
}

TEST_F(descriptor_loop_state, specifier_holds_from_its_descriptor_on)
{
    EXPECT_EQ(report_of_descriptors(hex("83 04 0261FC02  5F 04 000032FF  83 04 0261FC02  5F 04 00000028  "
                                        "83 04 0261FC02")),
              unknown(logical_channel) +
                  "        private_data_specifier_descriptor() [DVB A38 6.2.31]\n"
                  "            private_data_specifier=0x000032ff\n" +
                  logical_channel.lines +
                  "        private_data_specifier_descriptor() [DVB A38 6.2.31]\n"
                  "            private_data_specifier=0x00000028\n" +
                  unknown(logical_channel));
}

TEST_F(descriptor_loop_state, specifier_holds_in_later_loops_of_the_PID)
{
    settings.atsc_mode = 1;
    EXPECT_EQ(report_of(atsc_tags[2]), atsc_tags[2].lines);
    contents(0x5F, hex("00000001"));
    EXPECT_EQ(report_of(atsc_tags[2]), unknown(atsc_tags[2]));
    EXPECT_EQ(report_of(atsc_tags[2]), unknown(atsc_tags[2]));
    contents(0x5F, hex("00000000"));
    EXPECT_EQ(report_of(atsc_tags[2]), atsc_tags[2].lines);
}

TEST_F(descriptor_loop_state, specifier_holds_in_later_sections_of_the_PID_and_on_no_other)
{
    track(0x0200, TRACK_PMT, 1);
    track(0x0201, TRACK_PMT, 2);
    report_of_section(0x0200, pmt_section(1, 0x1FFF, hex("5F 04 00003200"), {}));
    report_of_section(0x0200, pmt_section(1, 0x1FFF, hex("52 01 00"), {}));
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0200)->private_data_specifier, australian_specifier);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0201)->private_data_specifier, no_specifier);
}

TEST_F(descriptor_loop_state, assumed_country_holds_from_the_start_until_a_specifier_says_otherwise)
{
    settings.assume_country = australian_specifier;
    EXPECT_EQ(report_of(logical_channel), logical_channel.lines);
    EXPECT_EQ(contents(0x5F, hex("00000028")),
              "        private_data_specifier_descriptor() [DVB A38 6.2.31]\n"
              "            private_data_specifier=0x00000028\n");
    EXPECT_EQ(report_of(logical_channel), unknown(logical_channel));
    EXPECT_EQ(report_of(logical_channel), unknown(logical_channel));
}
