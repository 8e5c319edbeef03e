#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/tables/table_dispatch.h"

struct table_dispatch : report_test {
    static constexpr unsigned pat_pid = 0x0000;
    static constexpr unsigned nit_pid = 0x0010;
    static constexpr unsigned sdt_pid = 0x0011;
    static constexpr unsigned eit_pid = 0x0012;
    static constexpr unsigned atsc_base_pid = 0x1FFB;

    /// Of every table_id but 0xFF, which is stuffing, as a section with this body.
    std::vector<unsigned> table_ids_that_print(unsigned pid, const bytes &body)
    {
        std::vector<unsigned> table_ids;
        for (unsigned table_id = 0; table_id < 0xFF; ++table_id)
            if (!report_of_section(pid, long_section(table_id, 1, body)).empty())
                table_ids.push_back(table_id);
        return table_ids;
    }
};

namespace {

const bytes empty_nit = hex("F000 F000");
const bytes empty_sdt = hex("0001 FF");
const std::string empty_nit_lines = "* Network Information Table\n";
const std::string empty_sdt_lines = "* Service Description Section\n"
                                    "    original_network_id=0x0001\n";
const std::string empty_pat_lines = "* Program Association Table\n"
                                    "    Transport stream ID:              0x0001\n"
                                    "    Version:                          0\n"
                                    "    Section:                          0 / 0\n";

std::vector<unsigned> from_to(unsigned first, unsigned last)
{
    std::vector<unsigned> numbers;
    for (unsigned number = first; number <= last; ++number) numbers.push_back(number);
    return numbers;
}

} // namespace

TEST_F(table_dispatch, a_program_association_section_without_section_syntax_is_an_error)
{
    EXPECT_EQ(report_of_section(pat_pid, short_section(0x00, hex("0001 C1 00 00 0001E100 01020304"))),
              "!!! PID 0x0000 table error: table_id 0x00 but syntax=0 private=0\n");
    EXPECT_EQ(report_of_section(pat_pid, short_section(0x00, {}, 1)),
              "!!! PID 0x0000 table error: table_id 0x00 but syntax=0 private=1\n");
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0100), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(pat_pid)->last_version, 255);
}

TEST_F(table_dispatch, a_private_program_association_section_is_an_error)
{
    EXPECT_EQ(report_of_section(pat_pid, long_section(0x00, 1, hex("0001E100"), {0, 1, 0, 0, 1})),
              "!!! PID 0x0000 table error: table_id 0x00 but syntax=1 private=1\n");
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0100), nullptr);
}

TEST_F(table_dispatch, any_other_table_on_the_pat_pid_is_an_error)
{
    EXPECT_EQ(report_of_section(pat_pid, long_section(0x00, 1, {})), empty_pat_lines);
    for (unsigned table_id = 1; table_id < 0xFF; ++table_id) {
        EXPECT_EQ(report_of_section(pat_pid, long_section(table_id, 1, {})),
                  "!!! PID 0x0000 table error: table_id not 0x00\n");
        EXPECT_EQ(report_of_section(pat_pid, short_section(table_id, {}, 1)),
                  "!!! PID 0x0000 table error: table_id not 0x00\n");
    }
}

TEST_F(table_dispatch, the_error_names_the_pid_of_the_packet)
{
    track(0x0ABC, TRACK_PAT);
    EXPECT_EQ(report_of_section(0x0ABC, long_section(0x80, 1, {})),
              "!!! PID 0x0abc table error: table_id not 0x00\n");
    EXPECT_EQ(report_of_section(0x0ABC, short_section(0x00, {})),
              "!!! PID 0x0abc table error: table_id 0x00 but syntax=0 private=0\n");
}

TEST_F(table_dispatch, a_pmt_pid_takes_program_map_sections_only)
{
    track(0x0100, TRACK_PMT, 1);
    EXPECT_EQ(table_ids_that_print(0x0100, hex("E101F000")), from_to(0x02, 0x02));
}

TEST_F(table_dispatch, a_program_map_section_with_other_header_flags_is_ignored)
{
    track(0x0100, TRACK_PMT, 1);
    EXPECT_EQ(report_of_section(0x0100, short_section(0x02, hex("0001 C1 00 00 E101F000 01020304"))), "");
    EXPECT_EQ(report_of_section(0x0100, short_section(0x02, hex("E101F000"), 1)), "");
    EXPECT_EQ(report_of_section(0x0100, long_section(0x02, 1, hex("E101F000"), {0, 1, 0, 0, 1})), "");
}

TEST_F(table_dispatch, the_nit_and_the_sdt_pid_take_either_table_and_no_other)
{
    for (const unsigned pid : {nit_pid, sdt_pid}) {
        EXPECT_EQ(report_of_section(pid, long_section(0x40, 1, empty_nit)), empty_nit_lines);
        EXPECT_EQ(report_of_section(pid, long_section(0x42, 1, empty_sdt)), empty_sdt_lines);
        EXPECT_EQ(table_ids_that_print(pid, empty_nit), (std::vector<unsigned>{0x40, 0x42}));
    }
}

TEST_F(table_dispatch, other_networks_and_bouquets_print_nothing)
{
    for (const unsigned pid : {nit_pid, sdt_pid})
        for (const unsigned table_id : {0x41u, 0x46u, 0x4Au, 0x72u})
            EXPECT_EQ(report_of_section(pid, long_section(table_id, 1, empty_nit)), "");
}

TEST_F(table_dispatch, the_eit_pid_takes_the_events_of_the_actual_transport_stream)
{
    std::vector<unsigned> expected = from_to(0x50, 0x5F);
    expected.insert(expected.begin(), 0x4E);
    EXPECT_EQ(table_ids_that_print(eit_pid, hex("0001 0002 00 4E")), expected);
    EXPECT_EQ(report_of_section(eit_pid, long_section(0x4E, 1, {})),
              "* Event Information Section(0x4e) len=0\n"
              "    Service ID:                       0x0001\n"
              "    Version:                          0\n"
              "    Section:                          0 / 0\n");
}

TEST_F(table_dispatch, the_atsc_base_pid_is_silent_unless_the_atsc_mode_is_on)
{
    for (const int mode : {-1, 0}) {
        settings.atsc_mode = mode;
        EXPECT_EQ(table_ids_that_print(atsc_base_pid, hex("0000")), std::vector<unsigned>{});
    }
}

TEST_F(table_dispatch, the_atsc_base_pid_takes_table_ids_from_0xc7_on)
{
    settings.atsc_mode = 1;
    EXPECT_EQ(table_ids_that_print(atsc_base_pid, {}), from_to(0xC7, 0xFE));
    EXPECT_EQ(report_of_section(atsc_base_pid, long_section(0xC9, 1, {})),
              "* ATSC 0x1FFB\n"
              "    ATSC 0x1FFB unknown table c9\n");
}

TEST_F(table_dispatch, packets_of_the_atsc_base_pid_switch_the_mode_on_in_a_run)
{
    settings.packet_size_mode = 0;
    EXPECT_EQ(report_of_run(stream_builder().section(atsc_base_pid, long_section(0xC9, 1, {})).data()),
              "* Starting analysis of: stream.ts\n"
              "* Packet size: 188 bytes/packet\n"
              "* Packets of 1FFB imply ATSC standard stream\n"
              "* ATSC 0x1FFB\n"
              "    ATSC 0x1FFB unknown table c9\n"
              "* Scan complete\n"
              "* Priority #1 errors: 0\n"
              "* Priority #2 errors: 0\n"
              "* Priority #3 errors: 0\n");
}

TEST_F(table_dispatch, packets_of_the_atsc_base_pid_print_nothing_when_the_mode_is_off)
{
    settings.packet_size_mode = 0;
    settings.atsc_mode = 0;
    EXPECT_EQ(report_of_run(stream_builder().section(atsc_base_pid, long_section(0xC9, 1, {})).data()),
              "* Starting analysis of: stream.ts\n"
              "* Packet size: 188 bytes/packet\n"
              "* Scan complete\n"
              "* Priority #1 errors: 0\n"
              "* Priority #2 errors: 0\n"
              "* Priority #3 errors: 0\n");
}

TEST_F(table_dispatch, an_atsc_ett_pid_takes_extended_text_only_and_learns_the_pid)
{
    track(0x1D00, TRACK_ATSC_ETT);
    EXPECT_EQ(table_ids_that_print(0x1D00, {}), from_to(0xCC, 0xCC));
    EXPECT_EQ(report_of_section(0x1D00, long_section(0xCC, 1, {})),
              "* extended_text_table_section() [ATSC A/65:2009 6.6] PID 0x1d00\n");
}

TEST_F(table_dispatch, an_atsc_eit_pid_takes_events_only)
{
    track(0x1D01, TRACK_ATSC_EIT);
    EXPECT_EQ(table_ids_that_print(0x1D01, {}), from_to(0xCB, 0xCB));
    EXPECT_EQ(report_of_section(0x1D01, long_section(0xCB, 1, {})),
              "* event_information_table_section() [ATSC A/65:2009 6.5]\n");
}

TEST_F(table_dispatch, the_atsc_mode_does_not_matter_on_the_pids_of_the_master_guide_table)
{
    settings.atsc_mode = 0;
    track(0x1D00, TRACK_ATSC_ETT);
    track(0x1D01, TRACK_ATSC_EIT);
    EXPECT_EQ(table_ids_that_print(0x1D00, {}), from_to(0xCC, 0xCC));
    EXPECT_EQ(table_ids_that_print(0x1D01, {}), from_to(0xCB, 0xCB));
}

TEST_F(table_dispatch, a_scte_35_pid_takes_every_table)
{
    track(0x0102, TRACK_SCTE35, 7);
    EXPECT_EQ(table_ids_that_print(0x0102, repeated(0, 20)), from_to(0x00, 0xFE));
    EXPECT_EQ(report_of_section(0x0102, short_section(0x42, {})),
              "* SCTE-35 message [ANSI/SCTE-35] for program 0x0007\n"
              "    Table ID:                   0x42\n"
              "    !!! Unknown table ID\n");
}

TEST_F(table_dispatch, any_other_kind_is_ignored)
{
    const bytes packet_bytes = stream_builder().section(0x0100, long_section(0x00, 1, {})).data();
    mpeg_ts_packet packet;
    ASSERT_TRUE(mpeg_ts_decode(&packet, packet_bytes.data(), 188));
    const uint8_t body[1] = {};
    for (unsigned type = 0; type < TRACK_SCTE35; ++type) {
        mpeg_ts_pid_tracking t;
        t.type = static_cast<uint16_t>(type);
        for (const int table_id : {0x00, 0x02, 0x40, 0x42, 0x4E, 0xC7, 0xCB, 0xCC, 0xFC}) {
            mpeg_ts_pat_main_header h;
            h.table_id = static_cast<uint8_t>(table_id);
            h.section_syntax_indicator = 1;
            on_ts_table_section(&t, &h, &packet, body, body);
        }
    }
    EXPECT_EQ(report(), "");
}

TEST_F(table_dispatch, a_repeated_table_is_printed_in_full_each_time)
{
    const bytes section = long_section(0x42, 1, empty_sdt, {3, 1, 0, 1});
    for (unsigned time = 0; time < 3; ++time) EXPECT_EQ(report_of_section(sdt_pid, section), empty_sdt_lines);
}

TEST_F(table_dispatch, versions_and_section_numbers_are_not_checked)
{
    EXPECT_EQ(report_of_section(pat_pid, long_section(0x00, 1, {}, {5, 1, 3, 1})),
              "* Program Association Table\n"
              "    Transport stream ID:              0x0001\n"
              "    Version:                          5\n"
              "    Section:                          3 / 1\n");
    EXPECT_EQ(report_of_section(pat_pid, long_section(0x00, 1, {}, {4, 1, 2, 1})),
              "* Program Association Table\n"
              "    Transport stream ID:              0x0001\n"
              "    Version:                          4\n"
              "    Section:                          2 / 1\n");
}

// The raw contents of -dump-tables.

TEST_F(table_dispatch, the_raw_contents_are_the_body_and_do_not_stop_the_dispatch)
{
    settings.dump_tables = true;
    EXPECT_EQ(report_of_section(sdt_pid, long_section(0x42, 1, hex("4142 FF 0043"))),
              "PID 0x0  11 TABLE raw contents. length=5 table_id=0x42 priv=0 syntax=1:\n"
              "   41 42 ff 00 43                                    AB..C           \n"
              "* Service Description Section\n"
              "    original_network_id=0x4142\n");
}

TEST_F(table_dispatch, the_raw_contents_of_an_empty_body_are_the_header_line)
{
    settings.dump_tables = true;
    EXPECT_EQ(report_of_section(pat_pid, long_section(0x00, 1, {})),
              "PID 0x0   0 TABLE raw contents. length=0 table_id=0x00 priv=0 syntax=1:\n" + empty_pat_lines);
}

TEST_F(table_dispatch, the_raw_contents_show_sections_that_are_ignored_or_wrong)
{
    settings.dump_tables = true;
    EXPECT_EQ(report_of_section(eit_pid, long_section(0x4F, 1, {}, {0, 1, 0, 0, 1})),
              "PID 0x0  12 TABLE raw contents. length=0 table_id=0x4f priv=1 syntax=1:\n");
    EXPECT_EQ(report_of_section(atsc_base_pid, short_section(0xC7, hex("31"), 1)),
              "PID 0x01FFB TABLE raw contents. length=1 table_id=0xc7 priv=1 syntax=0:\n"
              "   31                                                1               \n");
    EXPECT_EQ(report_of_section(pat_pid, short_section(0x80, {})),
              "PID 0x0   0 TABLE raw contents. length=0 table_id=0x80 priv=0 syntax=0:\n"
              "!!! PID 0x0000 table error: table_id not 0x00\n");
}

TEST_F(table_dispatch, the_raw_contents_name_the_pid_in_a_field_of_4_blanks)
{
    settings.dump_tables = true;
    track(0x0ABC, TRACK_EIT);
    EXPECT_EQ(report_of_section(0x0ABC, long_section(0x4F, 1, {})),
              "PID 0x0 ABC TABLE raw contents. length=0 table_id=0x4f priv=0 syntax=1:\n");
}

TEST_F(table_dispatch, the_raw_contents_go_in_rows_of_16)
{
    settings.dump_tables = true;
    EXPECT_EQ(report_of_section(eit_pid, long_section(0x4F, 1, text_bytes("0123456789abcdef"))),
              "PID 0x0  12 TABLE raw contents. length=16 table_id=0x4f priv=0 syntax=1:\n"
              "   30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66   0123456789abcdef\n");
    EXPECT_EQ(report_of_section(eit_pid, long_section(0x4F, 1, text_bytes("0123456789abcdefg"))),
              "PID 0x0  12 TABLE raw contents. length=17 table_id=0x4f priv=0 syntax=1:\n"
              "   30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66   0123456789abcdef\n"
              "   67                                                g               \n");
}

TEST_F(table_dispatch, bytes_0x20_to_0x7f_are_text_in_the_raw_contents)
{
    settings.dump_tables = true;
    EXPECT_EQ(report_of_section(eit_pid, long_section(0x4F, 1, hex("1F 20 21 7E 7F 80"))),
              "PID 0x0  12 TABLE raw contents. length=6 table_id=0x4f priv=0 syntax=1:\n"
              "   1f 20 21 7e 7f 80                                 . !~\x7F.          \n");
}

TEST_F(table_dispatch, a_corrupt_section_has_no_raw_contents)
{
    settings.dump_tables = true;
    const bytes packet =
        stream_builder().section(sdt_pid, long_section(0x42, 1, empty_sdt)).flip_bit(13, 0).data();
    EXPECT_EQ(report_of_packets(packet), "!!! PID 0x0011 table error: checksum failed\n");
}
