#include "tests/support/report_test.h"

struct ac3 : report_test {
    /// The report of an A/52 descriptor of this body without its heading.
    std::string A52_fields(const bytes &body)
    {
        const std::string heading = "        AC-3_audio_stream_descriptor() [ATSC A/52:2012 A4.3]\n";
        const std::string text = report_of_descriptors(descriptor(0x81, body));
        EXPECT_EQ(text.substr(0, heading.size()), heading);
        return text.substr(std::min(heading.size(), text.size()));
    }
};

/// The lines of the three bytes 08 20 44.
static const char *const three_bytes =
    "            sample_rate_code=0 (48KHz)\n"
    "            bsid=8\n"
    "            bit_rate_code=8 (128 kbit/sec exact)\n"
    "            surround_mode=0 (Not indicated)\n"
    "            bsmod=2\n"
    "            num_channels=2 ( 2/0 )\n"
    "            full_svc=0                            # Full service suitable for presentation\n";

TEST_F(ac3, A52_below_3_bytes_prints_only_its_heading)
{
    for (unsigned length = 0; length < 3; ++length) EXPECT_EQ(A52_fields(repeated(0x08, length)), "");
}

TEST_F(ac3, A52_of_exactly_3_bytes_prints_the_first_three_steps)
{
    EXPECT_EQ(A52_fields(hex("08 20 44")), three_bytes);
}

TEST_F(ac3, A52_names_every_sample_rate)
{
    const char *const names[] = {"48KHz",
                                 "44.1KHz",
                                 "32KHz",
                                 "Reserved",
                                 "48KHz or 44.1KHz",
                                 "48KHz or 32KHz",
                                 "44.1KHz or 32KHz",
                                 "48KHz, 44.1KHz or 32KHz"};
    for (unsigned code = 0; code < 8; ++code) {
        const std::string fields = A52_fields(join({big_endian(code << 5 | 0x1F, 1), hex("20 44")}));
        const std::string expected = "            sample_rate_code=" + std::to_string(code) + " (" +
                                     names[code] + ")\n            bsid=31\n            bit_rate_code=8 (";
        EXPECT_EQ(fields.substr(0, expected.size()), expected);
    }
}

TEST_F(ac3, A52_bit_rate_goes_by_the_low_5_bits_and_the_limit_by_the_lowest)
{
    const unsigned rates[32] = {32,  40,  48,  56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, 448,
                                512, 576, 640, 0,  0,  0,  0,  0,   0,   0,   0,   0,   0,   0,   0,   0};
    for (unsigned code = 0; code < 64; ++code) {
        const std::string expected = "            sample_rate_code=0 (48KHz)\n"
                                     "            bsid=8\n"
                                     "            bit_rate_code=" +
                                     std::to_string(code) + " (" + std::to_string(rates[code % 32]) +
                                     " kbit/sec " + (code % 2 == 1 ? "upper limit" : "exact") +
                                     ")\n            surround_mode=0 (";
        EXPECT_EQ(
            A52_fields(join({hex("08"), big_endian(code << 2, 1), hex("44")})).substr(0, expected.size()),
            expected);
    }
}

TEST_F(ac3, A52_byte_0x24_is_an_upper_limit_and_0x20_is_exact)
{
    EXPECT_EQ(A52_fields(hex("08 24 44")),
              "            sample_rate_code=0 (48KHz)\n"
              "            bsid=8\n"
              "            bit_rate_code=9 (160 kbit/sec upper limit)\n"
              "            surround_mode=0 (Not indicated)\n"
              "            bsmod=2\n"
              "            num_channels=2 ( 2/0 )\n"
              "            full_svc=0                            # Full service suitable for presentation\n");
    EXPECT_EQ(A52_fields(hex("08 20 44")), three_bytes);
}

TEST_F(ac3, A52_names_every_surround_mode)
{
    const char *const names[] = {"Not indicated", "NOT Dobly surround encoded", "Dobly surround encoded",
                                 "Reserved"};
    for (unsigned mode = 0; mode < 4; ++mode)
        EXPECT_EQ(A52_fields(join({hex("08"), big_endian(0xFC | mode, 1), hex("E5")})),
                  std::string("            sample_rate_code=0 (48KHz)\n"
                              "            bsid=8\n"
                              "            bit_rate_code=63 (0 kbit/sec upper limit)\n"
                              "            surround_mode=") +
                      std::to_string(mode) + " (" + names[mode] +
                      ")\n"
                      "            bsmod=7\n"
                      "            num_channels=2 ( 2/0 )\n"
                      "            full_svc=1                            # Full service suitable for "
                      "presentation\n");
}

TEST_F(ac3, A52_names_every_number_of_channels)
{
    const char *const names[] = {"1+1", "1/0",  "2/0",  "3/0",  "2/1",  "3/1",  "2/2",      "3/2",
                                 "1",   "<= 2", "<= 3", "<= 4", "<= 5", "<= 6", "Reserved", "Reserved"};
    for (unsigned code = 0; code < 16; ++code)
        EXPECT_EQ(A52_fields(join({hex("08 20"), big_endian(0x40 | code << 1, 1)})),
                  std::string("            sample_rate_code=0 (48KHz)\n"
                              "            bsid=8\n"
                              "            bit_rate_code=8 (128 kbit/sec exact)\n"
                              "            surround_mode=0 (Not indicated)\n"
                              "            bsmod=2\n"
                              "            num_channels=") +
                      std::to_string(code) + " ( " + names[code] +
                      " )\n"
                      "            full_svc=0                            # Full service suitable for "
                      "presentation\n");
}

TEST_F(ac3, A52_langcod_is_the_fourth_byte)
{
    EXPECT_EQ(A52_fields(hex("08 20 44 09")), std::string(three_bytes) + "            langcod=0x09\n");
}

TEST_F(ac3, A52_of_two_mono_channels_has_a_second_language)
{
    const std::string first = "            sample_rate_code=0 (48KHz)\n"
                              "            bsid=8\n"
                              "            bit_rate_code=8 (128 kbit/sec exact)\n"
                              "            surround_mode=0 (Not indicated)\n"
                              "            bsmod=2\n"
                              "            num_channels=0 ( 1+1 )\n"
                              "            full_svc=0                            # Full service suitable for "
                              "presentation\n"
                              "            langcod=0x09\n";

    EXPECT_EQ(A52_fields(hex("08 20 40 09")), first);
    EXPECT_EQ(A52_fields(hex("08 20 40 09 0A")), first + "            langcod2=0x0a\n");
    EXPECT_EQ(A52_fields(hex("08 20 40 09 0A 81")), first + "            langcod2=0x0a\n"
                                                            "            asvcflags=0x81\n");
}

TEST_F(ac3, A52_of_a_main_service_names_its_priority)
{
    const char *const names[] = {"Reserved", "Primary Audio", "Other Audio", "Not specified"};
    for (unsigned bsmod = 0; bsmod < 2; ++bsmod)
        for (unsigned priority = 0; priority < 4; ++priority)
            EXPECT_EQ(A52_fields(join({hex("08 20"), big_endian(bsmod << 5 | 0x04, 1), hex("FF"),
                                       big_endian(5 << 5 | priority << 3 | 6, 1)})),
                      std::string("            sample_rate_code=0 (48KHz)\n"
                                  "            bsid=8\n"
                                  "            bit_rate_code=8 (128 kbit/sec exact)\n"
                                  "            surround_mode=0 (Not indicated)\n"
                                  "            bsmod=") +
                          std::to_string(bsmod) +
                          "\n"
                          "            num_channels=2 ( 2/0 )\n"
                          "            full_svc=0                            # Full service suitable for "
                          "presentation\n"
                          "            langcod=0xff\n"
                          "            mainid=5\n"
                          "            priority=" +
                          std::to_string(priority) + " (" + names[priority] +
                          ")\n"
                          "            reserved=6\n");
}

static const std::string up_to_asvcflags =
    std::string(three_bytes) + "            langcod=0xff\n            asvcflags=0x80\n";

TEST_F(ac3, A52_text_is_printed_as_it_is)
{
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80  07 41 E9 43")), up_to_asvcflags +
                                                                  "            textlen=3\n"
                                                                  "            text_code=1 (ISO 8859-1)\n"
                                                                  "            text=A\xE9"
                                                                  "C\n");
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80  06 41 42 43")), up_to_asvcflags +
                                                                  "            textlen=3\n"
                                                                  "            text_code=0 (Unicode UCS-16)\n"
                                                                  "            text=ABC\n");
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80  01")), up_to_asvcflags +
                                                         "            textlen=0\n"
                                                         "            text_code=1 (ISO 8859-1)\n"
                                                         "            text=\n");
}

TEST_F(ac3, A52_text_of_127_bytes_is_the_longest)
{
    EXPECT_EQ(A52_fields(join({hex("08 20 44 FF 80  FF"), repeated('x', 127)})),
              up_to_asvcflags +
                  "            textlen=127\n"
                  "            text_code=1 (ISO 8859-1)\n"
                  "            text=" +
                  std::string(127, 'x') + "\n");
}

TEST_F(ac3, A52_text_that_does_not_fit_stops_the_decoding)
{
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80  09 41 42 43")), up_to_asvcflags +
                                                                  "            textlen=4\n"
                                                                  "            text_code=1 (ISO 8859-1)\n"
                                                                  "!!! A/52 AC-3 Text length too long\n");
}

static const std::string up_to_text = up_to_asvcflags + "            textlen=0\n"
                                                        "            text_code=1 (ISO 8859-1)\n"
                                                        "            text=\n";

TEST_F(ac3, A52_languages_follow_their_flags)
{
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80 01  3F")), up_to_text + "            language_flag=0\n"
                                                                     "            language_flag_2=0\n");
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80 01  BF 65 6E 67")), up_to_text +
                                                                     "            language_flag=1\n"
                                                                     "            language_flag_2=0\n"
                                                                     "            language=eng\n");
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80 01  7F 66 72 61")), up_to_text +
                                                                     "            language_flag=0\n"
                                                                     "            language_flag_2=1\n"
                                                                     "            language_2=fra\n");
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80 01  FF 65 6E 67 66 72 61")),
              up_to_text + "            language_flag=1\n"
                           "            language_flag_2=1\n"
                           "            language=eng\n"
                           "            language_2=fra\n");
}

TEST_F(ac3, A52_languages_that_do_not_fit_stop_the_decoding)
{
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80 01  BF 65 6E")), up_to_text + "            language_flag=1\n"
                                                                           "            language_flag_2=0\n");
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80 01  FF 65 6E 67 66 72")), up_to_text +
                                                                           "            language_flag=1\n"
                                                                           "            language_flag_2=1\n"
                                                                           "            language=eng\n");
}

TEST_F(ac3, A52_reserved_field_behind_the_flags_is_shown)
{
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80 01  8A 65 6E 67")),
              up_to_text + "            language_flag=1\n"
                           "            language_flag_2=0\n"
                           "!!! A/52 AC-3 reserved field (after language_flag) is not 0x3F. Is 0x0a\n"
                           "            language=eng\n");
}

TEST_F(ac3, A52_bytes_left_are_listed)
{
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80 01 3F  0A")), up_to_text +
                                                               "            language_flag=0\n"
                                                               "            language_flag_2=0\n"
                                                               "            additional_info_byte=[0x0a]\n");
    EXPECT_EQ(A52_fields(hex("08 20 44 FF 80 01 3F  0A FF 00")),
              up_to_text + "            language_flag=0\n"
                           "            language_flag_2=0\n"
                           "            additional_info_byte=[0x0a 0xff 0x00]\n");
}

TEST_F(ac3, A52_prints_its_fields_in_dump_mode_none)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_descriptors(descriptor(0x81, hex("08 20 44"))), three_bytes);
}

TEST_F(ac3, A52_is_dumped_in_raw_mode_and_needs_no_ATSC_mode)
{
    settings.atsc_mode = 0;
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_descriptors(descriptor(0x81, hex("08 20"))),
              "        AC-3_audio_stream_descriptor() [ATSC A/52:2012 A4.3]\n"
              "        TAG 0x81 LEN 02:\n"
              "            0x08 0x20 \n");
}

/// At every length, from blocks of exactly that size.
TEST_F(ac3, no_decoder_reads_past_its_body)
{
    for (unsigned length = 0; length <= 0xFF; ++length)
        for (const uint8_t byte : hex("00 01 7F C0 FF")) {
            report_of_descriptors(descriptor(0x81, repeated(byte, length)));
            report_of_descriptors(descriptor(0x6A, repeated(byte, length)));
            report_of_descriptors(
                descriptor(0x81, join({hex("08 20 44 FF 80"), repeated(byte, length % 250)})));
        }
}
