#include "tests/support/report_test.h"

struct nit : report_test {
    static constexpr unsigned nit_pid = 0x0010;
};

namespace {

/// network_id 0x3085, version 9, section 2 of 4.
bytes nit_section(const bytes &body, unsigned current_next_indicator = 1)
{
    return long_section(0x40, 0x3085, body, {9, current_next_indicator, 2, 4});
}

/// One network descriptor of 4 bytes; two transport streams, the second without descriptors.
const bytes network = hex("F004 FF02AABB"
                          "F00F 0401 3085 F003 FE01CC"
                          "     0402 3086 F000");
const std::string network_rows = "   f0 04 ff 02 aa bb f0 0f 04 01 30 85 f0 03 fe 01   ..........0.....\n"
                                 "   cc 04 02 30 86 f0 00                              ...0...         \n";

} // namespace

TEST_F(nit, prints_its_heading_and_its_descriptors_by_default)
{
    EXPECT_EQ(report_of_section(nit_pid, nit_section(network)),
              "* Network Information Table\n"
              "        Unknown descriptor tag=0xff, len=2\n"
              "        Unknown descriptor tag=0xfe, len=1\n");
}

TEST_F(nit, a_section_that_is_not_current_is_printed_in_full)
{
    EXPECT_EQ(report_of_section(nit_pid, nit_section(network, 0)),
              "* Network Information Table [next]\n"
              "        Unknown descriptor tag=0xff, len=2\n"
              "        Unknown descriptor tag=0xfe, len=1\n");
}

TEST_F(nit, the_packet_dump_shows_the_lengths_and_the_transport_streams)
{
    const std::string expected = "* Network Information Table\n"
                                 "    network_descriptors_length: 4\n"
                                 "    transport_stream_loop_length: 15\n"
                                 "        Unknown descriptor tag=0xff, len=2\n"
                                 "      * transport_stream_id=0x0401\n"
                                 "        original_network_id=0x3085\n"
                                 "        transport_descriptor_length=3\n"
                                 "        Unknown descriptor tag=0xfe, len=1\n"
                                 "      * transport_stream_id=0x0402\n"
                                 "        original_network_id=0x3086\n"
                                 "        transport_descriptor_length=0\n";
    settings.dump_ts_mode = dump_ts_header;
    EXPECT_EQ(report_of_section(nit_pid, nit_section(network)), expected);
    settings.dump_ts_mode = dump_ts_contents;
    EXPECT_EQ(report_of_section(nit_pid, nit_section(network)), expected);
}

TEST_F(nit, the_table_dump_shows_the_network_and_the_section_8_columns_in)
{
    settings.dump_tables = true;
    EXPECT_EQ(report_of_section(nit_pid, nit_section(network)),
              "PID 0x0  10 TABLE raw contents. length=23 table_id=0x40 priv=0 syntax=1:\n" + network_rows +
                  "* Network Information Table\n"
                  "        network_id:                       0x3085 (in place of Transport Stream ID field)\n"
                  "        Version:                          9\n"
                  "        Section:                          2 / 4\n"
                  "        Unknown descriptor tag=0xff, len=2\n"
                  "        Unknown descriptor tag=0xfe, len=1\n");
}

TEST_F(nit, both_dumps_together_show_the_section_first)
{
    settings.dump_tables = true;
    settings.dump_ts_mode = dump_ts_header;
    EXPECT_EQ(report_of_section(nit_pid, nit_section(network, 0)),
              "PID 0x0  10 TABLE raw contents. length=23 table_id=0x40 priv=0 syntax=1:\n" + network_rows +
                  "* Network Information Table [next]\n"
                  "        network_id:                       0x3085 (in place of Transport Stream ID field)\n"
                  "        Version:                          9\n"
                  "        Section:                          2 / 4\n"
                  "    network_descriptors_length: 4\n"
                  "    transport_stream_loop_length: 15\n"
                  "        Unknown descriptor tag=0xff, len=2\n"
                  "      * transport_stream_id=0x0401\n"
                  "        original_network_id=0x3085\n"
                  "        transport_descriptor_length=3\n"
                  "        Unknown descriptor tag=0xfe, len=1\n"
                  "      * transport_stream_id=0x0402\n"
                  "        original_network_id=0x3086\n"
                  "        transport_descriptor_length=0\n");
}

TEST_F(nit, without_descriptor_contents_only_the_heading_is_left)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_section(nit_pid, nit_section(network)), "* Network Information Table\n");
}

TEST_F(nit, without_descriptor_contents_the_packet_dump_still_shows_the_fields)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    settings.dump_ts_mode = dump_ts_header;
    EXPECT_EQ(report_of_section(nit_pid, nit_section(network)), "* Network Information Table\n"
                                                                "    network_descriptors_length: 4\n"
                                                                "    transport_stream_loop_length: 15\n"
                                                                "      * transport_stream_id=0x0401\n"
                                                                "        original_network_id=0x3085\n"
                                                                "        transport_descriptor_length=3\n"
                                                                "      * transport_stream_id=0x0402\n"
                                                                "        original_network_id=0x3086\n"
                                                                "        transport_descriptor_length=0\n");
}

TEST_F(nit, the_raw_mode_follows_each_descriptor_with_its_bytes)
{
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_section(nit_pid, nit_section(network)), "* Network Information Table\n"
                                                                "        Unknown descriptor tag=0xff, len=2\n"
                                                                "        TAG 0xff LEN 02:\n"
                                                                "            0xaa 0xbb \n"
                                                                "        Unknown descriptor tag=0xfe, len=1\n"
                                                                "        TAG 0xfe LEN 01:\n"
                                                                "            0xcc \n");
}

TEST_F(nit, without_any_descriptors_there_is_only_the_heading_unless_packets_are_dumped)
{
    const bytes body = hex("F000 F006 0001 0002 F000");
    EXPECT_EQ(report_of_section(nit_pid, nit_section(body)), "* Network Information Table\n");
    settings.dump_ts_mode = dump_ts_header;
    EXPECT_EQ(report_of_section(nit_pid, nit_section(body)), "* Network Information Table\n"
                                                             "    network_descriptors_length: 0\n"
                                                             "    transport_stream_loop_length: 6\n"
                                                             "      * transport_stream_id=0x0001\n"
                                                             "        original_network_id=0x0002\n"
                                                             "        transport_descriptor_length=0\n");
}

TEST_F(nit, the_reserved_bits_of_the_lengths_do_not_matter)
{
    settings.dump_ts_mode = dump_ts_header;
    EXPECT_EQ(report_of_section(nit_pid, nit_section(hex("0000 0006 0001 0002 0000"))),
              "* Network Information Table\n"
              "    network_descriptors_length: 0\n"
              "    transport_stream_loop_length: 6\n"
              "      * transport_stream_id=0x0001\n"
              "        original_network_id=0x0002\n"
              "        transport_descriptor_length=0\n");
}

TEST_F(nit, the_walk_ends_silently_at_a_transport_stream_that_does_not_fit)
{
    settings.dump_ts_mode = dump_ts_header;
    const std::string head = "* Network Information Table\n"
                             "    network_descriptors_length: 0\n";
    const std::string first = "      * transport_stream_id=0x0001\n"
                              "        original_network_id=0x0002\n"
                              "        transport_descriptor_length=0\n";
    EXPECT_EQ(report_of_section(nit_pid, nit_section(hex("F000 F00B 0001 0002 F000 0003 0004 F0"))),
              head + "    transport_stream_loop_length: 11\n" + first);
    EXPECT_EQ(report_of_section(nit_pid, nit_section(hex("F000 F00E 0001 0002 F000 0003 0004 F003 FF00"))),
              head + "    transport_stream_loop_length: 14\n" + first);
    EXPECT_EQ(report_of_section(nit_pid, nit_section(hex("F000 F005 0003 0004 F0"))),
              head + "    transport_stream_loop_length: 5\n");
}

TEST_F(nit, what_follows_the_transport_stream_loop_is_ignored)
{
    settings.dump_ts_mode = dump_ts_header;
    EXPECT_EQ(report_of_section(nit_pid, nit_section(hex("F000 F000 0003 0004 F000"))),
              "* Network Information Table\n"
              "    network_descriptors_length: 0\n"
              "    transport_stream_loop_length: 0\n");
}

TEST_F(nit, lengths_that_do_not_fit_are_a_decoding_error)
{
    for (const char *body : {"", "F0", "F000", "F000 F0", "F001", "F002 FF", "F003 FF00", "F002 FF00 F0",
                             "F000 F001", "F000 F007 0001 0002 F000", "FFFF", "F000 FFFF"}) {
        EXPECT_EQ(report_of_section(nit_pid, nit_section(hex(body))), "!!! NIT decoding error\n") << body;
        EXPECT_EQ(report_of_section(nit_pid, nit_section(hex(body), 0)), "!!! NIT decoding error\n") << body;
    }
}

TEST_F(nit, a_decoding_error_has_no_further_lines_under_the_dumps)
{
    settings.dump_tables = true;
    settings.dump_ts_mode = dump_ts_contents;
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_section(nit_pid, nit_section(hex("F0"))),
              "PID 0x0  10 TABLE raw contents. length=1 table_id=0x40 priv=0 syntax=1:\n"
              "   f0                                                .               \n"
              "!!! NIT decoding error\n");
}

TEST_F(nit, the_version_of_a_current_section_is_stored_also_after_an_error)
{
    const mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(nit_pid);
    report_of_section(nit_pid, nit_section(network, 0));
    EXPECT_EQ(t->last_version, 255);
    report_of_section(nit_pid, nit_section(hex("F0"), 0));
    EXPECT_EQ(t->last_version, 255);
    report_of_section(nit_pid, nit_section(network));
    EXPECT_EQ(t->last_version, 9);
    report_of_section(nit_pid, long_section(0x40, 1, hex("F0"), {10}));
    EXPECT_EQ(t->last_version, 10);
}

TEST_F(nit, a_short_section_prints_as_one_that_is_not_current)
{
    settings.dump_tables = true;
    EXPECT_EQ(report_of_section(nit_pid, short_section(0x40, hex("F000 F000"), 1)),
              "PID 0x0  10 TABLE raw contents. length=4 table_id=0x40 priv=1 syntax=0:\n"
              "   f0 00 f0 00                                       ....            \n"
              "* Network Information Table [next]\n"
              "        network_id:                       0x0000 (in place of Transport Stream ID field)\n"
              "        Version:                          0\n"
              "        Section:                          0 / 0\n");
}

TEST_F(nit, descriptors_are_decoded_with_the_specifier_of_the_pid)
{
    // logical_channel_descriptor is known behind a private_data_specifier_descriptor of 0x3200 only.
    EXPECT_EQ(report_of_section(nit_pid, nit_section(hex("F002 8300 F00E"
                                                         "0001 0002 F008 5F04 00003200 8300"))),
              "* Network Information Table\n"
              "        Unknown descriptor tag=0x83, len=0\n"
              "        private_data_specifier_descriptor() [DVB A38 6.2.31]\n"
              "            private_data_specifier=0x00003200\n"
              "        logical_channel_descriptor() [Australia: Free TV OP 41 LCN Descriptor]\n");
    EXPECT_EQ(mpeg_ts_pid_tracking_get(nit_pid)->private_data_specifier, 0x3200u);
}

TEST_F(nit, every_combination_of_the_dumps_adds_its_lines)
{
    const std::string of_tables =
        "        network_id:                       0x3085 (in place of Transport Stream ID field)\n"
        "        Version:                          9\n"
        "        Section:                          2 / 4\n";
    const std::string of_packets = "    network_descriptors_length: 4\n"
                                   "    transport_stream_loop_length: 15\n";
    const std::string first_of_packets = "      * transport_stream_id=0x0401\n"
                                         "        original_network_id=0x3085\n"
                                         "        transport_descriptor_length=3\n";
    const std::string second_of_packets = "      * transport_stream_id=0x0402\n"
                                          "        original_network_id=0x3086\n"
                                          "        transport_descriptor_length=0\n";
    const std::string network_descriptor[] = {"", "        Unknown descriptor tag=0xff, len=2\n",
                                              "        Unknown descriptor tag=0xff, len=2\n"
                                              "        TAG 0xff LEN 02:\n"
                                              "            0xaa 0xbb \n"};
    const std::string transport_descriptor[] = {"", "        Unknown descriptor tag=0xfe, len=1\n",
                                                "        Unknown descriptor tag=0xfe, len=1\n"
                                                "        TAG 0xfe LEN 01:\n"
                                                "            0xcc \n"};
    for (unsigned combination = 0; combination < 18; ++combination) {
        const unsigned descriptors = combination % 3;
        const unsigned packets = combination / 3 % 3;
        const bool tables = combination >= 9;
        settings.dump_descriptors_mode = static_cast<uint8_t>(descriptors);
        settings.dump_ts_mode = static_cast<uint8_t>(packets);
        settings.dump_tables = tables;

        std::string expected;
        if (tables)
            expected =
                "PID 0x0  10 TABLE raw contents. length=23 table_id=0x40 priv=0 syntax=1:\n" + network_rows;
        expected += "* Network Information Table\n";
        if (tables) expected += of_tables;
        if (packets != 0) expected += of_packets;
        expected += network_descriptor[descriptors];
        if (packets != 0) expected += first_of_packets;
        expected += transport_descriptor[descriptors];
        if (packets != 0) expected += second_of_packets;
        EXPECT_EQ(report_of_section(nit_pid, nit_section(network)), expected) << combination;
    }
}
