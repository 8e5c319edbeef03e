#include "tests/support/report_test.h"

struct scte_35_cue : report_test {
    scte_35_cue() { settings.atsc_mode = 1; }
};

TEST_F(scte_35_cue, every_cue_stream_type_is_named)
{
    const char *const names[] = {"splice_insert, splice_null, splice_schedule", "All Commands",
                                 "Segmentation", "Tiered Splicing", "Tiered Segmentation"};
    const char digits[] = "0123456789abcdef";

    for (unsigned type = 0; type <= 0xFF; ++type)
        EXPECT_EQ(report_of_descriptors(descriptor(0x8A, big_endian(type, 1))),
                  std::string("        cue_identifier_descriptor() [SCTE-35 (2020) 8.2]\n"
                              "            cue_stream_type=0x") +
                      digits[type / 16] + digits[type % 16] + " " + (type < 5 ? names[type] : "?") + "\n");
}

TEST_F(scte_35_cue, only_the_first_byte_counts)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x8A, hex("05 01 02"))),
              "        cue_identifier_descriptor() [SCTE-35 (2020) 8.2]\n"
              "            cue_stream_type=0x05 ?\n");
}

TEST_F(scte_35_cue, length_0_prints_nothing)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x8A, {})), "");
}

TEST_F(scte_35_cue, dump_mode_none_prints_nothing)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_descriptors(descriptor(0x8A, hex("01"))), "");
}

TEST_F(scte_35_cue, raw_mode_dumps_it)
{
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_descriptors(descriptor(0x8A, hex("01"))),
              "        cue_identifier_descriptor() [SCTE-35 (2020) 8.2]\n"
              "            cue_stream_type=0x01 All Commands\n"
              "        TAG 0x8a LEN 01:\n"
              "            0x01 \n");
    EXPECT_EQ(report_of_descriptors(descriptor(0x8A, {})), "        TAG 0x8a LEN 00:\n");
}

TEST_F(scte_35_cue, it_is_unknown_unless_the_ATSC_mode_is_on)
{
    for (const int32_t mode : {-1, 0}) {
        settings.atsc_mode = mode;
        EXPECT_EQ(report_of_descriptors(descriptor(0x8A, hex("01"))),
                  "        Unknown descriptor tag=0x8a, len=1\n");
    }
}

TEST_F(scte_35_cue, it_is_unknown_under_a_private_data_specifier)
{
    EXPECT_EQ(
        report_of_descriptors(join({descriptor(0x5F, hex("00 00 00 01")), descriptor(0x8A, hex("01"))})),
        "        private_data_specifier_descriptor() [DVB A38 6.2.31]\n"
        "            private_data_specifier=0x00000001\n"
        "        Unknown descriptor tag=0x8a, len=1\n");
}
