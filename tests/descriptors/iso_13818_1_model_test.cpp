// The descriptors of clocks, rates and buffers: the system target decoder's model.
#include "tests/descriptors/descriptor_test.h"

struct iso_13818_1_model : descriptor_test {};

TEST_F(iso_13818_1_model, system_clock_shifts_the_integer_by_the_exponent)
{
    EXPECT_EQ(contents(0x0B, hex("43 5F")), "        system_clock_descriptor() [ISO/IEC 13818-1 2.6.20]\n"
                                            "            external_clock_reference_indicator=0\n"
                                            "            clock_accuracy_integer=3\n"
                                            "            clock_accuracy_exponent=2\n"
                                            "                accuracy is 12 parts per million\n");
    EXPECT_EQ(contents(0x0B, hex("FF FF")), "        system_clock_descriptor() [ISO/IEC 13818-1 2.6.20]\n"
                                            "            external_clock_reference_indicator=1\n"
                                            "            clock_accuracy_integer=63\n"
                                            "            clock_accuracy_exponent=7\n"
                                            "                accuracy is 8064 parts per million\n");
    EXPECT_EQ(none(0x0B, hex("43 5F")), "");
}

TEST_F(iso_13818_1_model, system_clock_reports_a_reserved_bit_of_0)
{
    EXPECT_EQ(contents(0x0B, hex("83 1F")), "!!! system_clock_descriptor() a reserved bit is 0\n"
                                            "        system_clock_descriptor() [ISO/IEC 13818-1 2.6.20]\n"
                                            "            external_clock_reference_indicator=1\n"
                                            "            clock_accuracy_integer=3\n"
                                            "            clock_accuracy_exponent=0\n"
                                            "                accuracy is 3 parts per million\n");
    EXPECT_EQ(none(0x0B, hex("BF FF")), "!!! system_clock_descriptor() a reserved bit is 0\n");
}

TEST_F(iso_13818_1_model, system_clock_reports_a_reserved_field_with_0_bits)
{
    for (unsigned bit = 0; bit < 5; ++bit)
        EXPECT_EQ(contents(0x0B, join({hex("40"), big_endian(0x3Fu & ~(1u << bit), 1)})),
                  "!!! system_clock_descriptor() a reserved field has 0 bits\n"
                  "        system_clock_descriptor() [ISO/IEC 13818-1 2.6.20]\n"
                  "            external_clock_reference_indicator=0\n"
                  "            clock_accuracy_integer=0\n"
                  "            clock_accuracy_exponent=1\n"
                  "                accuracy is 0 parts per million\n");
    EXPECT_EQ(none(0x0B, hex("00 00")), "!!! system_clock_descriptor() a reserved bit is 0\n"
                                        "!!! system_clock_descriptor() a reserved field has 0 bits\n");
}

TEST_F(iso_13818_1_model, multiplex_buffer_utilization_prints_the_clause_of_the_system_clock)
{
    EXPECT_EQ(contents(0x0C, hex("80 00 FF FF")),
              "        multiplex_buffer_utilization_descriptor() [ISO/IEC 13818-1 2.6.20]\n"
              "            bound_valid_flag=1\n"
              "            LTW_offset_lower_bound=0\n"
              "            LTW_offset_upper_bound=32767\n");
    EXPECT_EQ(contents(0x0C, hex("7F FF 92 34")),
              "        multiplex_buffer_utilization_descriptor() [ISO/IEC 13818-1 2.6.20]\n"
              "            bound_valid_flag=0\n"
              "            LTW_offset_lower_bound=32767\n"
              "            LTW_offset_upper_bound=4660\n");
    EXPECT_EQ(none(0x0C, hex("80 00 FF FF")), "");
}

TEST_F(iso_13818_1_model, multiplex_buffer_utilization_reports_a_reserved_field_of_0)
{
    EXPECT_EQ(contents(0x0C, hex("00 01 00 02")),
              "!!! multiplex_buffer_utilization_descriptor() a reserved field is 0\n"
              "        multiplex_buffer_utilization_descriptor() [ISO/IEC 13818-1 2.6.20]\n"
              "            bound_valid_flag=0\n"
              "            LTW_offset_lower_bound=1\n"
              "            LTW_offset_upper_bound=2\n");
    EXPECT_EQ(none(0x0C, hex("FF FF 7F FF")),
              "!!! multiplex_buffer_utilization_descriptor() a reserved field is 0\n");
}

TEST_F(iso_13818_1_model, maximum_bitrate_counts_units_of_50_bytes_per_second)
{
    EXPECT_EQ(contents(0x0E, hex("C0 30 D4")),
              "        maximum_bitrate_descriptor() [ISO/IEC 13818-1 2.6.26]\n"
              "            maximum_bitrate=5000000 bits/sec\n");
    EXPECT_EQ(contents(0x0E, hex("FF FF FF")),
              "        maximum_bitrate_descriptor() [ISO/IEC 13818-1 2.6.26]\n"
              "            maximum_bitrate=1677721200 bits/sec\n");
    EXPECT_EQ(contents(0x0E, hex("C0 00 00")),
              "        maximum_bitrate_descriptor() [ISO/IEC 13818-1 2.6.26]\n"
              "            maximum_bitrate=0 bits/sec\n");
    EXPECT_EQ(none(0x0E, hex("C0 30 D4")), "");
}

TEST_F(iso_13818_1_model, maximum_bitrate_reports_each_reserved_bit_of_0)
{
    for (const char *body : {"40 00 01", "80 00 01", "00 00 01"}) {
        EXPECT_EQ(contents(0x0E, hex(body)),
                  "!!! maximum_bitrate_descriptor() reserved field contains 0 bits\n"
                  "        maximum_bitrate_descriptor() [ISO/IEC 13818-1 2.6.26]\n"
                  "            maximum_bitrate=400 bits/sec\n");
        EXPECT_EQ(none(0x0E, hex(body)), "!!! maximum_bitrate_descriptor() reserved field contains 0 bits\n");
    }
}

TEST_F(iso_13818_1_model, smoothing_buffer_scales_the_leak_rate_and_not_the_size)
{
    EXPECT_EQ(contents(0x10, hex("C0 00 01 C1 02 03")),
              "        smoothing_buffer_descriptor() [ISO/IEC 13818-1 2.6.30]\n"
              "            sb_leak_rate=400 bits/sec\n"
              "            sb_size=66051 bytes\n");
    EXPECT_EQ(contents(0x10, hex("FF FF FF FF FF FF")),
              "        smoothing_buffer_descriptor() [ISO/IEC 13818-1 2.6.30]\n"
              "            sb_leak_rate=1677721200 bits/sec\n"
              "            sb_size=4194303 bytes\n");
    EXPECT_EQ(none(0x10, hex("C0 00 01 C1 02 03")), "");
}

TEST_F(iso_13818_1_model, smoothing_buffer_reports_either_reserved_field)
{
    const std::string message = "!!! smoothing_buffer_descriptor() reserved field contains 0 bits\n";
    const std::string lines = "        smoothing_buffer_descriptor() [ISO/IEC 13818-1 2.6.30]\n"
                              "            sb_leak_rate=800 bits/sec\n"
                              "            sb_size=3 bytes\n";
    EXPECT_EQ(contents(0x10, hex("40 00 02 C0 00 03")), message + lines);
    EXPECT_EQ(contents(0x10, hex("80 00 02 C0 00 03")), message + lines);
    EXPECT_EQ(contents(0x10, hex("C0 00 02 40 00 03")), message + lines);
    EXPECT_EQ(contents(0x10, hex("C0 00 02 80 00 03")), message + lines);
    EXPECT_EQ(none(0x10, hex("C0 00 02 00 00 03")), message);
}

TEST_F(iso_13818_1_model, smoothing_buffer_reports_both_reserved_fields_with_the_same_message)
{
    EXPECT_EQ(contents(0x10, hex("00 00 02 00 00 03")),
              "!!! smoothing_buffer_descriptor() reserved field contains 0 bits\n"
              "!!! smoothing_buffer_descriptor() reserved field contains 0 bits\n"
              "        smoothing_buffer_descriptor() [ISO/IEC 13818-1 2.6.30]\n"
              "            sb_leak_rate=800 bits/sec\n"
              "            sb_size=3 bytes\n");
    EXPECT_EQ(none(0x10, hex("00 00 02 00 00 03")),
              "!!! smoothing_buffer_descriptor() reserved field contains 0 bits\n"
              "!!! smoothing_buffer_descriptor() reserved field contains 0 bits\n");
}

TEST_F(iso_13818_1_model, STD_prints_the_leak_valid_flag)
{
    EXPECT_EQ(contents(0x11, hex("FE")), "        STD_descriptor() [ISO/IEC 13818-1 2.6.32]\n"
                                         "            leak_valid_flag=0\n");
    EXPECT_EQ(contents(0x11, hex("FF")), "        STD_descriptor() [ISO/IEC 13818-1 2.6.32]\n"
                                         "            leak_valid_flag=1\n");
    EXPECT_EQ(none(0x11, hex("FF")), "");
}

TEST_F(iso_13818_1_model, STD_reports_each_reserved_bit_of_0)
{
    for (unsigned bit = 1; bit < 8; ++bit) {
        const bytes body = big_endian(0xFFu & ~(1u << bit), 1);
        EXPECT_EQ(contents(0x11, body), "!!! STD_descriptor() reserved field contains 0 bits\n"
                                        "        STD_descriptor() [ISO/IEC 13818-1 2.6.32]\n"
                                        "            leak_valid_flag=1\n");
        EXPECT_EQ(none(0x11, body), "!!! STD_descriptor() reserved field contains 0 bits\n");
    }
}
