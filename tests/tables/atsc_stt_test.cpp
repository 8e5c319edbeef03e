#include "tests/support/report_test.h"
#include "tests/support/time_zone.h"

struct atsc_stt : report_test {
    atsc_stt() { settings.atsc_mode = 1; }

    std::string report_of(const bytes &body, section_fields fields = {})
    {
        return report_of_section(0x1FFB, long_section(0xCD, 0x0000, body, fields));
    }

    const time_zone zone{"UTC"};
};

static bytes system_time(unsigned long long time, unsigned GPS_UTC_offset)
{
    return join({hex("00"), big_endian(time, 4), big_endian(GPS_UTC_offset, 1), hex("60 00")});
}

static const std::string head = "* ATSC 0x1FFB\n"
                                "    system_time_table_section() [ATSC A/65:2009 6.1]\n"
                                "        Table ID extension:               0x0000\n"
                                "        Version:                          0\n"
                                "        Section:                          0 / 0\n";

TEST_F(atsc_stt, time_0_is_the_GPS_epoch)
{
    EXPECT_EQ(report_of(system_time(0, 0)),
              head + "        protocol_version=0\n"
                     "        system_time=0 (NTS: This is GPS seconds not UTC time)\n"
                     "        GPS_UTC_offset=0\n"
                     "        daylight_saving=0x6000\n"
                     "        The current local time is: 1980-01-06 00:00:00\n"
                     "\n");
}

TEST_F(atsc_stt, every_field_of_the_head_is_printed)
{
    section_fields fields;
    fields.version_number = 21;
    fields.section_number = 3;
    fields.last_section_number = 4;
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xCD, 0xABCD, hex("07 3B9ACA00 12 8F12"), fields)),
              "* ATSC 0x1FFB\n"
              "    system_time_table_section() [ATSC A/65:2009 6.1]\n"
              "        Table ID extension:               0xabcd\n"
              "        Version:                          21\n"
              "        Section:                          3 / 4\n"
              "        protocol_version=7\n"
              "        system_time=1000000000 (NTS: This is GPS seconds not UTC time)\n"
              "        GPS_UTC_offset=18\n"
              "        daylight_saving=0x8f12\n"
              "        The current local time is: 2011-09-14 01:46:22\n"
              "\n");
    EXPECT_EQ(atsc_gps_utc_offset, 18);
}

TEST_F(atsc_stt, the_largest_time_is_unsigned)
{
    EXPECT_EQ(report_of(system_time(0xFFFFFFFF, 255)),
              head + "        protocol_version=0\n"
                     "        system_time=4294967295 (NTS: This is GPS seconds not UTC time)\n"
                     "        GPS_UTC_offset=255\n"
                     "        daylight_saving=0x6000\n"
                     "        The current local time is: 2116-02-12 06:24:00\n"
                     "\n");
}

TEST_F(atsc_stt, fewer_than_8_bytes_print_the_head_and_set_no_offset)
{
    for (unsigned length = 0; length < 8; ++length) {
        EXPECT_EQ(report_of(repeated(0x11, length)), head);
        EXPECT_EQ(atsc_gps_utc_offset, -1);
    }
}

TEST_F(atsc_stt, each_STT_replaces_the_offset)
{
    EXPECT_EQ(atsc_gps_utc_offset, -1);
    report_of(system_time(0, 16));
    EXPECT_EQ(atsc_gps_utc_offset, 16);
    report_of(system_time(0, 255));
    EXPECT_EQ(atsc_gps_utc_offset, 255);
    report_of(system_time(0, 0));
    EXPECT_EQ(atsc_gps_utc_offset, 0);
}

TEST_F(atsc_stt, an_STT_that_is_not_current_yet_counts_too)
{
    section_fields fields;
    fields.current_next_indicator = 0;
    report_of(system_time(0, 18), fields);
    EXPECT_EQ(atsc_gps_utc_offset, 18);
}

TEST_F(atsc_stt, the_descriptors_fill_the_rest_of_the_body)
{
    EXPECT_EQ(report_of(join({system_time(0, 0), descriptor(0xAA, hex("01 02")), descriptor(0xFF, {})})),
              head + "        protocol_version=0\n"
                     "        system_time=0 (NTS: This is GPS seconds not UTC time)\n"
                     "        GPS_UTC_offset=0\n"
                     "        daylight_saving=0x6000\n"
                     "        The current local time is: 1980-01-06 00:00:00\n"
                     "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
                     "            RAW DATA: 01 02 \n"
                     "        Unknown descriptor tag=0xff, len=0\n"
                     "\n");
    EXPECT_EQ(report_of(join({system_time(0, 0), hex("AA 02 01")})),
              head + "        protocol_version=0\n"
                     "        system_time=0 (NTS: This is GPS seconds not UTC time)\n"
                     "        GPS_UTC_offset=0\n"
                     "        daylight_saving=0x6000\n"
                     "        The current local time is: 1980-01-06 00:00:00\n"
                     "!!!! descriptor too long\n"
                     "\n");
}

TEST_F(atsc_stt, dump_mode_none_prints_all_but_the_heading)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of(system_time(0, 0)), "* ATSC 0x1FFB\n"
                                            "        Table ID extension:               0x0000\n"
                                            "        Version:                          0\n"
                                            "        Section:                          0 / 0\n"
                                            "        protocol_version=0\n"
                                            "        system_time=0 (NTS: This is GPS seconds not UTC time)\n"
                                            "        GPS_UTC_offset=0\n"
                                            "        daylight_saving=0x6000\n"
                                            "        The current local time is: 1980-01-06 00:00:00\n"
                                            "\n");
}

TEST_F(atsc_stt, raw_mode_dumps_the_descriptors)
{
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of(join({system_time(0, 0), descriptor(0xAA, hex("01"))})),
              head + "        protocol_version=0\n"
                     "        system_time=0 (NTS: This is GPS seconds not UTC time)\n"
                     "        GPS_UTC_offset=0\n"
                     "        daylight_saving=0x6000\n"
                     "        The current local time is: 1980-01-06 00:00:00\n"
                     "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
                     "            RAW DATA: 01 \n"
                     "        TAG 0xaa LEN 01:\n"
                     "            0x01 \n"
                     "\n");
}

/// The seconds around New York's change to daylight saving time of 2021-03-14 07:00:00 UTC; the table's own
/// daylight_saving field is not applied.
TEST_F(atsc_stt, the_time_is_that_of_the_machines_time_zone)
{
    const struct {
        const char *zone;
        const char *before;
        const char *after;
    } cases[] = {
        {"UTC",              "2021-03-14 06:59:59", "2021-03-14 07:00:00"},
        {"America/New_York", "2021-03-14 01:59:59", "2021-03-14 03:00:00"},
        {"Asia/Kolkata",     "2021-03-14 12:29:59", "2021-03-14 12:30:00"},
    };
    for (const auto &[name, before, after] : cases) {
        const time_zone other(name);
        EXPECT_EQ(report_of(system_time(1299740417, 18)),
                  head +
                      "        protocol_version=0\n"
                      "        system_time=1299740417 (NTS: This is GPS seconds not UTC time)\n"
                      "        GPS_UTC_offset=18\n"
                      "        daylight_saving=0x6000\n"
                      "        The current local time is: " +
                      before + "\n\n");
        EXPECT_EQ(report_of(system_time(1299740418, 18)),
                  head +
                      "        protocol_version=0\n"
                      "        system_time=1299740418 (NTS: This is GPS seconds not UTC time)\n"
                      "        GPS_UTC_offset=18\n"
                      "        daylight_saving=0x6000\n"
                      "        The current local time is: " +
                      after + "\n\n");
    }
}
