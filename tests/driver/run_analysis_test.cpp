#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/health/clocks.h"

#include <string>

struct analysis_run : report_test {
    analysis_run() { settings.packet_size_mode = 0; }

    /// The report of a run over 188-byte packets behind its two start-up lines.
    std::string scan_of(const stream_builder &stream)
    {
        const std::string text = report_of_run(stream.data());
        EXPECT_EQ(run_status, 0);
        EXPECT_EQ(run_errors, "");
        const std::string start_up = "* Starting analysis of: stream.ts\n"
                                     "* Packet size: 188 bytes/packet\n";
        EXPECT_EQ(text.substr(0, start_up.size()), start_up);
        return text.substr(start_up.size());
    }

    static std::string no_errors()
    {
        return "* Scan complete\n"
               "* Priority #1 errors: 0\n"
               "* Priority #2 errors: 0\n"
               "* Priority #3 errors: 0\n";
    }

    static std::string header_line(const char *offset_and_time, const char *pid_and_counter)
    {
        return std::string(offset_and_time) + " TS PACKET: " + pid_and_counter +
               " ERR=0 PRI=0 SCRAM=0 AFC=PAYLOAD                 \n";
    }

    static bytes some_payload() { return repeated(0x10, 184); }
};

TEST_F(analysis_run, packets_of_no_interest_leave_start_up_and_summary)
{
    stream_builder stream;
    stream.payload(0x100, some_payload()).payload(0x100, some_payload()).padding();
    EXPECT_EQ(scan_of(stream), no_errors());
}

TEST_F(analysis_run, the_packet_time_follows_from_offset_and_bitrate)
{
    settings.dump_ts_mode = 1;
    settings.ts_bitrate = 1000000;
    stream_builder stream;
    for (unsigned i = 0; i < 3; ++i) stream.payload(0x100, some_payload());
    EXPECT_EQ(scan_of(stream), "* TS bitrate: 1000000 bits/sec\n" +
                                   header_line("@0        (t=0.0000000)", "PID=0x0100 CONT=0 ") +
                                   header_line("@188      (t=0.0015040)", "PID=0x0100 CONT=1 ") +
                                   header_line("@376      (t=0.0030080)", "PID=0x0100 CONT=2 ") +
                                   no_errors());
}

TEST_F(analysis_run, the_packet_at_offset_125000_of_a_stream_of_1000000_bits_per_second_is_1_second_in)
{
    // Offsets are multiples of the packet size: 125000 lies between the packets at 124832 and 125020.
    settings.dump_ts_mode = 1;
    settings.ts_bitrate = 1000000;
    stream_builder stream;
    stream.padding(664).payload(0x100, some_payload()).payload(0x100, some_payload());
    EXPECT_EQ(scan_of(stream), "* TS bitrate: 1000000 bits/sec\n" +
                                   header_line("@124832   (t=0.9986560)", "PID=0x0100 CONT=0 ") +
                                   header_line("@125020   (t=1.0001600)", "PID=0x0100 CONT=1 ") +
                                   no_errors());
}

TEST_F(analysis_run, the_packet_time_is_minus_1_when_the_bitrate_is_unknown)
{
    settings.dump_ts_mode = 1;
    stream_builder stream;
    stream.padding().payload(0x100, some_payload());
    EXPECT_EQ(scan_of(stream), header_line("@188      (t=-1.0000000)", "PID=0x0100 CONT=0 ") + no_errors());
}

TEST_F(analysis_run, packets_that_do_not_decode_are_passed_over_silently)
{
    settings.dump_ts_mode = 1;
    stream_builder stream;
    stream.payload(0x100, some_payload());
    stream.payload(0x1FFB, some_payload()).flip_bit(0, 3);
    stream.raw(join({hex("471FFB30B8"), repeated(0x00, 183)}));
    stream.payload(0x100, some_payload());
    EXPECT_EQ(scan_of(stream), header_line("@0        (t=-1.0000000)", "PID=0x0100 CONT=0 ") +
                                   header_line("@564      (t=-1.0000000)", "PID=0x0100 CONT=1 ") +
                                   no_errors());
    EXPECT_EQ(settings.atsc_mode, -1);
}

TEST_F(analysis_run, PID_0x1FFB_switches_the_ATSC_mode_on_once)
{
    stream_builder stream;
    stream.payload(0x1FFB, some_payload()).payload(0x1FFB, some_payload());
    EXPECT_EQ(scan_of(stream), "* Packets of 1FFB imply ATSC standard stream\n" + no_errors());
    EXPECT_EQ(settings.atsc_mode, 1);
    EXPECT_EQ(settings.atsc_mh_mode, -1);
}

TEST_F(analysis_run, PID_0x1FF9_switches_the_ATSC_mobile_mode_on_once)
{
    stream_builder stream;
    stream.payload(0x1FF9, some_payload()).payload(0x1FF9, some_payload());
    EXPECT_EQ(scan_of(stream), "* Packets of 1FF9 imply ATSC M/H standard stream\n" + no_errors());
    EXPECT_EQ(settings.atsc_mode, -1);
    EXPECT_EQ(settings.atsc_mh_mode, 1);
}

TEST_F(analysis_run, no_other_PID_switches_the_ATSC_modes_on)
{
    stream_builder stream;
    for (const unsigned pid : {0x1FF8u, 0x1FFAu, 0x1FFCu, 0x0FFBu}) stream.payload(pid, some_payload());
    EXPECT_EQ(scan_of(stream), no_errors());
    EXPECT_EQ(settings.atsc_mode, -1);
    EXPECT_EQ(settings.atsc_mh_mode, -1);
}

TEST_F(analysis_run, ATSC_modes_that_are_known_stay)
{
    for (const int mode : {0, 1}) {
        settings.atsc_mode = mode;
        settings.atsc_mh_mode = mode;
        stream_builder stream;
        stream.payload(0x1FFB, some_payload()).payload(0x1FF9, some_payload());
        EXPECT_EQ(scan_of(stream), no_errors());
        EXPECT_EQ(settings.atsc_mode, mode);
        EXPECT_EQ(settings.atsc_mh_mode, mode);
        std::fill(std::begin(last_continuity_counter), std::end(last_continuity_counter),
                  no_continuity_counter);
    }
}

TEST_F(analysis_run, an_assumed_country_keeps_the_ATSC_modes_off)
{
    settings.assume_country = 0x3200;
    stream_builder stream;
    stream.payload(0x1FFB, some_payload()).payload(0x1FF9, some_payload());
    EXPECT_EQ(scan_of(stream), no_errors());
    EXPECT_EQ(settings.atsc_mode, -1);
    EXPECT_EQ(settings.atsc_mh_mode, -1);
}

TEST_F(analysis_run, the_ATSC_modes_are_switched_on_before_the_packet_is_dumped_or_dropped)
{
    settings.dump_ts_mode = 1;
    stream_builder stream;
    stream.payload(0x1FFB, some_payload()).payload(0x1FF9, some_payload()).scramble(2);
    EXPECT_EQ(scan_of(stream), "* Packets of 1FFB imply ATSC standard stream\n" +
                                   header_line("@0        (t=-1.0000000)", "PID=0x1ffb CONT=0 ") +
                                   "* Packets of 1FF9 imply ATSC M/H standard stream\n" + no_errors());
}

TEST_F(analysis_run, the_ATSC_tables_are_read_from_the_packet_on_that_switches_the_mode_on)
{
    // A system time table without descriptors.
    const bytes table = long_section(0xCD, 0x0000, hex("00 3B9ACA00 0F 0000"));
    stream_builder stream;
    stream.section(0x1FFB, table);
    const std::string detected = scan_of(stream);
    EXPECT_EQ(detected.substr(0, 45), "* Packets of 1FFB imply ATSC standard stream\n");
    EXPECT_GT(detected.size(), 45 + no_errors().size());

    process_state_reset();
    settings.packet_size_mode = 0;
    settings.atsc_mode = 0;
    EXPECT_EQ(scan_of(stream), no_errors());
}

TEST_F(analysis_run, scrambled_packets_are_dropped_before_every_check)
{
    settings.dump_ts_mode = 2;
    stream_builder stream;
    stream
        .section(0, pat_section(1,
                                {
                                    {1, 0x100}
    }))
        .scramble(1);
    stream.payload(0x100, some_payload()).scramble(1);
    stream.lose_packets(0x100, 5).payload(0x100, some_payload()).scramble(2);
    stream.pcr(0x100, 27000000).scramble(3);
    stream.raw(join({hex("470100C0"), some_payload()}));
    EXPECT_EQ(scan_of(stream), no_errors());
}

TEST_F(analysis_run, the_counters_of_scrambled_packets_are_not_followed)
{
    stream_builder stream;
    stream.payload(0x100, some_payload()).payload(0x100, some_payload()).scramble(2);
    stream.payload(0x100, some_payload());
    EXPECT_EQ(scan_of(stream),
              "!!! ALARM: TS continuity counter error in PID 0x0100 (expect=1 cur=2) adap=0 payload=1\n"
              "* Scan complete\n"
              "* Priority #1 errors: 1\n"
              "*   Continuity counter/missing packets:              1 errors\n"
              "* Priority #2 errors: 0\n"
              "* Priority #3 errors: 0\n");
}

TEST_F(analysis_run, padding_is_dumped_only_when_it_is_not_skipped)
{
    settings.dump_ts_mode = 1;
    stream_builder stream;
    stream.padding(2);
    EXPECT_EQ(scan_of(stream), no_errors());

    settings.skip_padding = false;
    EXPECT_EQ(scan_of(stream), header_line("@0        (t=-1.0000000)", "PID=0x1fff CONT=0 ") +
                                   header_line("@188      (t=-1.0000000)", "PID=0x1fff CONT=0 ") +
                                   no_errors());
}

TEST_F(analysis_run, padding_takes_no_part_in_the_continuity_check)
{
    for (const bool skipped : {true, false}) {
        settings.skip_padding = skipped;
        stream_builder stream;
        stream.payload(0x1FFF, some_payload()).lose_packets(0x1FFF, 3).payload(0x1FFF, some_payload());
        EXPECT_EQ(scan_of(stream), no_errors());
    }
}

TEST_F(analysis_run, padding_takes_no_part_in_the_PCR_analysis)
{
    settings.dump_pcr_analysis = true;
    stream_builder stream;
    stream
        .section(0, pat_section(1,
                                {
                                    {1, 0x100}
    }))
        .section(0x100, pmt_section(1, 0x1FFF, {}, {}));
    stream.pcr(0x1FFF, 27000000).pcr(0x1FFF, 54000000);
    const std::string text = scan_of(stream);
    EXPECT_NE(text.find("tracking PID 0x1fff as pure PCR"), std::string::npos);
    EXPECT_EQ(text.find("initial lock"), std::string::npos);
}

TEST_F(analysis_run, sections_on_the_padding_PID_are_read_when_a_table_names_it)
{
    for (const bool skipped : {true, false}) {
        process_state_reset();
        settings.packet_size_mode = 0;
        settings.skip_padding = skipped;
        stream_builder stream;
        stream
            .section(0, pat_section(1,
                                    {
                                        {1, 0x1FFF}
        }))
            .section(0x1FFF, pmt_section(1, 0x0101, {}, {}));
        EXPECT_EQ(scan_of(stream), "* Program Association Table\n"
                                   "    Transport stream ID:              0x0001\n"
                                   "    Version:                          0\n"
                                   "    Section:                          0 / 0\n"
                                   "      Program 0x0001: PMT PID is 0x1fff\n"
                                   "        First aware of, tracking program 0x0001\n"
                                   "* Program Map Table\n"
                                   "    Program ID:                       0x0001\n"
                                   "    Version:                          0\n"
                                   "    Section:                          0 / 0\n"
                                   "    PCR PID:                          0x0101\n"
                                   "    Program info length:              0 bytes\n"
                                   "    PCR not related to a stream, tracking PID 0x0101 as pure PCR\n" +
                                       no_errors());
    }
}

TEST_F(analysis_run, a_packet_is_dumped_then_its_PCR_then_its_counter_then_its_section_looked_at)
{
    settings.dump_ts_mode = 1;
    settings.dump_descriptors_mode = 0;
    // The PMT says that the PCR of program 1 comes on the PMT's own PID.
    const bytes map = join({hex("00"), pmt_section(1, 0x0100, {}, {})});
    const bytes clock = hex("10 000000007E00");
    stream_builder stream;
    stream.section(0, pat_section(1, {
                                         {1, 0x100}
    }));
    stream.adaptation(0x100, join({clock, repeated(0xFF, 176 - map.size())}), map, true);
    stream.lose_packets(0x100, 1);
    stream.adaptation(0x100, join({clock, repeated(0xFF, 176 - map.size())}), map, true);

    const std::string table = "* Program Map Table\n"
                              "    Program ID:                       0x0001\n"
                              "    Version:                          0\n"
                              "    Section:                          0 / 0\n"
                              "    PCR PID:                          0x0100\n"
                              "    Program info length:              0 bytes\n"
                              "    PCR is a stream already being tracked\n";
    const std::string adaptation =
        "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=1 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n"
        "    PCR: 0 / 27MHz = 0.000000\n";
    EXPECT_EQ(scan_of(stream),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0000 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                  UNIT_START\n"
              "* Program Association Table\n"
              "    Transport stream ID:              0x0001\n"
              "    Version:                          0\n"
              "    Section:                          0 / 0\n"
              "      Program 0x0001: PMT PID is 0x0100\n"
              "        First aware of, tracking program 0x0001\n"
              "@188      (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=ADAPT+PAYL[167+017] 0xa6 UNIT_START\n" +
                  adaptation + table +
                  "@376      (t=-1.0000000) TS PACKET: PID=0x0100 CONT=2  ERR=0 PRI=0 SCRAM=0 "
                  "AFC=ADAPT+PAYL[167+017] 0xa6 UNIT_START\n" +
                  adaptation +
                  "* Program 0x0001 PCR initial lock at TS -1.000000 PCR 0.000000\n"
                  "!!! ALARM: TS continuity counter error in PID 0x0100 (expect=1 cur=2) adap=1 payload=1\n" +
                  table +
                  "* Scan complete\n"
                  "* Priority #1 errors: 1\n"
                  "*   Continuity counter/missing packets:              1 errors\n"
                  "* Priority #2 errors: 0\n"
                  "* Priority #3 errors: 0\n");
}

TEST_F(analysis_run, teletext_packets_take_the_path_of_their_own_and_other_streams_none)
{
    const bytes teletext = descriptor(0x56, hex("656E67 09 00"));
    stream_builder stream;
    stream.section(0, pat_section(1, {
                                         {1, 0x100}
    }));
    stream.section(0x100, pmt_section(1, 0x0102,
                                      {
    },
                                      {{0x06, 0x101, teletext}, {0x02, 0x102, {}}}));
    stream.payload(0x102, some_payload()).payload(0x103, some_payload()).payload(0x101, some_payload());
    const std::string text = scan_of(stream);
    const std::string end = "    PCR is a stream already being tracked\n"
                            "!!! Teletext TS packet with payload_unit_start == 0 is unusual\n" +
                            no_errors();
    ASSERT_GT(text.size(), end.size());
    EXPECT_EQ(text.substr(text.size() - end.size()), end);
}

TEST_F(analysis_run, the_summary_counts_under_both_priorities)
{
    settings.dump_ts_mode = 1;
    stream_builder stream;
    stream.raw(join({hex("47010000"), some_payload()})).raw(join({hex("47010005"), some_payload()}));
    stream.raw(join({hex("47010008"), some_payload()})).raw(join({hex("47010008"), some_payload()}));
    const std::string text = scan_of(stream);
    EXPECT_EQ(text.substr(text.find("* Scan complete")),
              "* Scan complete\n"
              "* Priority #1 errors: 2\n"
              "*   Continuity counter/missing packets:              2 errors\n"
              "* Priority #2 errors: 4\n"
              "*   Illegal adaptation field control value:          4 errors\n"
              "* Priority #3 errors: 0\n");
}

TEST_F(analysis_run, illegal_adaptation_field_control_is_not_seen_without_the_dump)
{
    stream_builder stream;
    stream.raw(join({hex("47010000"), some_payload()})).raw(join({hex("47010000"), some_payload()}));
    EXPECT_EQ(scan_of(stream), no_errors());
}

TEST_F(analysis_run, illegal_adaptation_field_control_of_padding_counts_only_when_it_is_dumped)
{
    settings.dump_ts_mode = 1;
    stream_builder stream;
    stream.raw(join({hex("471FFF00"), some_payload()}));
    EXPECT_EQ(scan_of(stream), no_errors());
    settings.skip_padding = false;
    EXPECT_EQ(scan_of(stream), "@0        (t=-1.0000000) TS PACKET: PID=0x1fff CONT=0  ERR=0 PRI=0 SCRAM=0 "
                               "AFC=ILLEGAL                 \n"
                               "!!! ALARM: Illegal adapation field control value 0\n"
                               "* Scan complete\n"
                               "* Priority #1 errors: 0\n"
                               "* Priority #2 errors: 1\n"
                               "*   Illegal adaptation field control value:          1 errors\n"
                               "* Priority #3 errors: 0\n");
}

TEST_F(analysis_run, nothing_is_held_after_the_end)
{
    stream_builder stream;
    stream.section(0, pat_section(1, {
                                         {1, 0x100}
    }));
    stream.section(0x100, pmt_section(1, 0x101,
                                      {
    },
                                      {{0x02, 0x101, {}}}));
    scan_of(stream);
    for (unsigned pid = 0; pid < mpeg_ts_pid_count; ++pid) {
        EXPECT_EQ(pid_tracking[pid].type, TRACK_NONE);
        EXPECT_EQ(pid_tracking[pid].tbl_asm.buffer, nullptr);
    }
    EXPECT_EQ(program_clock_get(1), nullptr);
}
