#include "tests/support/report_test.h"

struct ac3_dvb : report_test {};

TEST_F(ac3_dvb, length_0_prints_nothing_at_all)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x6A, {})), "");
}

TEST_F(ac3_dvb, length_0_is_dumped_in_raw_mode)
{
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_descriptors(descriptor(0x6A, {})), "        TAG 0x6a LEN 00:\n");
}

TEST_F(ac3_dvb, dump_mode_none_prints_nothing_not_even_the_faults)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_descriptors(descriptor(0x6A, hex("FF 01 02"))), "");
}

TEST_F(ac3_dvb, no_flags_and_no_bytes_print_the_flags)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x6A, hex("00"))), "        AC-3_descriptor() [DVB A38 D.3]\n"
                                                                  "            component_type_flag=0\n"
                                                                  "            bsid_flag=0\n"
                                                                  "            mainid_flag=0\n"
                                                                  "            asvc_flag=0\n");
}

TEST_F(ac3_dvb, every_flag_brings_its_byte_in_order)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x6A, hex("F0 44 08 01 80"))),
              "        AC-3_descriptor() [DVB A38 D.3]\n"
              "            component_type_flag=1\n"
              "            bsid_flag=1\n"
              "            mainid_flag=1\n"
              "            asvc_flag=1\n"
              "            component_type=0x44\n"
              "            bsid=0x08\n"
              "            mainid=0x01\n"
              "            asvc=0x80\n");
}

TEST_F(ac3_dvb, each_flag_alone_brings_its_own_byte)
{
    const struct {
        unsigned flags;
        const char *lines;
    } cases[] = {
        {0x80, "            component_type_flag=1\n"
               "            bsid_flag=0\n"
               "            mainid_flag=0\n"
               "            asvc_flag=0\n"
               "            component_type=0x5a\n"},
        {0x40, "            component_type_flag=0\n"
               "            bsid_flag=1\n"
               "            mainid_flag=0\n"
               "            asvc_flag=0\n"
               "            bsid=0x5a\n"          },
        {0x20, "            component_type_flag=0\n"
               "            bsid_flag=0\n"
               "            mainid_flag=1\n"
               "            asvc_flag=0\n"
               "            mainid=0x5a\n"        },
        {0x10, "            component_type_flag=0\n"
               "            bsid_flag=0\n"
               "            mainid_flag=0\n"
               "            asvc_flag=1\n"
               "            asvc=0x5a\n"          },
    };
    for (const auto &[flags, lines] : cases)
        EXPECT_EQ(report_of_descriptors(descriptor(0x6A, join({big_endian(flags, 1), hex("5A")}))),
                  std::string("        AC-3_descriptor() [DVB A38 D.3]\n") + lines);
}

TEST_F(ac3_dvb, a_set_flag_without_its_byte_is_reported_and_stops)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x6A, hex("80"))),
              "        AC-3_descriptor() [DVB A38 D.3]\n"
              "            component_type_flag=1\n"
              "            bsid_flag=0\n"
              "            mainid_flag=0\n"
              "            asvc_flag=0\n"
              "!!! flag implies field that does not exist in tag\n");
    EXPECT_EQ(report_of_descriptors(descriptor(0x6A, hex("F0 44 08"))),
              "        AC-3_descriptor() [DVB A38 D.3]\n"
              "            component_type_flag=1\n"
              "            bsid_flag=1\n"
              "            mainid_flag=1\n"
              "            asvc_flag=1\n"
              "            component_type=0x44\n"
              "            bsid=0x08\n"
              "!!! flag implies field that does not exist in tag\n");
}

TEST_F(ac3_dvb, reserved_bits_are_reported_behind_the_flags)
{
    for (const unsigned reserved : {1u, 2u, 4u, 8u, 15u})
        EXPECT_EQ(report_of_descriptors(descriptor(0x6A, join({big_endian(0x40 | reserved, 1), hex("08")}))),
                  "        AC-3_descriptor() [DVB A38 D.3]\n"
                  "            component_type_flag=0\n"
                  "            bsid_flag=1\n"
                  "            mainid_flag=0\n"
                  "            asvc_flag=0\n"
                  "!!! reserved field has nonzero bits\n"
                  "            bsid=0x08\n");
}

TEST_F(ac3_dvb, bytes_left_are_listed)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x6A, hex("40 08 01 FE"))),
              "        AC-3_descriptor() [DVB A38 D.3]\n"
              "            component_type_flag=0\n"
              "            bsid_flag=1\n"
              "            mainid_flag=0\n"
              "            asvc_flag=0\n"
              "            bsid=0x08\n"
              "            additional_info_byte=[0x01 0xfe]\n");
}
