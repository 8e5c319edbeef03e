#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/driver/pes_dump.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <memory>
#include <random>
#include <sstream>

struct pes_dump : report_test {
    /// What is printed for a payload of exactly these bytes. Of each trace line only "PES " and the stream_id
    /// are left when its pointers are right: the first scan starts at the payload, each later one where the
    /// one before has ended, and all of them have the same fence.
    std::string dump_of(const bytes &payload, uint16_t pid = 0x0101)
    {
        const std::unique_ptr<uint8_t[]> block(new uint8_t[payload.size()]);
        std::copy(payload.begin(), payload.end(), block.get());
        const uint8_t *const fence = block.get() + payload.size();
        print_pes_header(block.get(), fence, pid);

        std::istringstream lines(report());
        std::string text;
        auto start = reinterpret_cast<uintptr_t>(block.get());
        for (std::string line; std::getline(lines, line);) {
            unsigned stream_id = 0;
            uintptr_t next = 0;
            if (std::sscanf(line.c_str(), "PES %x nxt=0x%" SCNxPTR, &stream_id, &next) == 2) {
                EXPECT_EQ(line, trace_line(stream_id, next, start, reinterpret_cast<uintptr_t>(fence)));
                EXPECT_GE(next, start);
                start = next;
                line.resize(line.find(" nxt="));
            }
            text += line + '\n';
        }
        return text;
    }

    static std::string trace_line(unsigned stream_id, uintptr_t next, uintptr_t start, uintptr_t fence)
    {
        char line[128];
        std::snprintf(line, sizeof(line), "PES %04x nxt=%p s=%p f=%p", stream_id,
                      reinterpret_cast<void *>(next), reinterpret_cast<void *>(start),
                      reinterpret_cast<void *>(fence));
        return line;
    }
};

TEST_F(pes_dump, a_complete_video_header_is_printed_field_by_field)
{
    // '10', scrambling 2, priority 0, alignment 1, copyright 0, original 1; PTS and DTS; ESCR to extension.
    const bytes header = hex("000001E0 0000 A5 D5 0F 21 00 05 BF 21 11 00 05 7E 41 FFFFFFFFFF");
    EXPECT_EQ(dump_of(header), "PES 01e0\n"
                               "  Payload PES header type MPEG-2:\n"
                               "    scrambling_control: 2\n"
                               "    PES_priority: 0\n"
                               "    data_alignment_indicator: 1\n"
                               "    copyright: 0  origial: 1  PTS_DTS_flags: 3\n"
                               "    ESCR_flag: 0  ES_rate_flag: 1  DSM_trick_mode_flag: 0\n"
                               "    additional_copy_info_flag: 1  PES_CRC_flag: 0  PES_extensions_flag: 1\n"
                               "    PES_header_data_length: 15\n"
                               "    PTS=90000(1.000) DTS=81696(0.908) for PID 0x0101\n");
}

TEST_F(pes_dump, the_other_half_of_the_flags)
{
    const bytes header = hex("000001E0 0000 9A AA 05 21 00 01 00 01");
    EXPECT_EQ(dump_of(header, 0x1FFE),
              "PES 01e0\n"
              "  Payload PES header type MPEG-2:\n"
              "    scrambling_control: 1\n"
              "    PES_priority: 1\n"
              "    data_alignment_indicator: 0\n"
              "    copyright: 1  origial: 0  PTS_DTS_flags: 2\n"
              "    ESCR_flag: 1  ES_rate_flag: 0  DSM_trick_mode_flag: 1\n"
              "    additional_copy_info_flag: 0  PES_CRC_flag: 1  PES_extensions_flag: 0\n"
              "    PES_header_data_length: 5\n"
              "    PTS=0(0.000) DTS=0(0.000) for PID 0x1ffe\n");
}

TEST_F(pes_dump, the_largest_time_stamps)
{
    EXPECT_EQ(dump_of(hex("000001BD 0000 80 C0 0A 3F FFFF FFFF 1F FFFF FFFF")),
              "PES 01bd\n"
              "  Payload PES header type MPEG-2:\n"
              "    scrambling_control: 0\n"
              "    PES_priority: 0\n"
              "    data_alignment_indicator: 0\n"
              "    copyright: 0  origial: 0  PTS_DTS_flags: 3\n"
              "    ESCR_flag: 0  ES_rate_flag: 0  DSM_trick_mode_flag: 0\n"
              "    additional_copy_info_flag: 0  PES_CRC_flag: 0  PES_extensions_flag: 0\n"
              "    PES_header_data_length: 10\n"
              "    PTS=8589934591(95443.718) DTS=8589934591(95443.718) for PID 0x0101\n");
}

TEST_F(pes_dump, time_stamps_are_printed_as_0_when_absent)
{
    EXPECT_EQ(dump_of(pes_packet(0xC0, hex("0BADCAFE"))),
              "PES 01c0\n"
              "  Payload PES header type MPEG-2:\n"
              "    scrambling_control: 0\n"
              "    PES_priority: 0\n"
              "    data_alignment_indicator: 0\n"
              "    copyright: 0  origial: 0  PTS_DTS_flags: 0\n"
              "    ESCR_flag: 0  ES_rate_flag: 0  DSM_trick_mode_flag: 0\n"
              "    additional_copy_info_flag: 0  PES_CRC_flag: 0  PES_extensions_flag: 0\n"
              "    PES_header_data_length: 0\n"
              "    PTS=0(0.000) DTS=0(0.000) for PID 0x0101\n");
}

TEST_F(pes_dump, an_MPEG_1_header_says_so)
{
    EXPECT_EQ(dump_of(hex("000001C5 0010 FFFF 4020 21 00 05 BF 21 FFFF")),
              "PES 01c5\n"
              "  Payload PES header type MPEG-1:\n"
              "    scrambling_control: 0\n"
              "    PES_priority: 0\n"
              "    data_alignment_indicator: 0\n"
              "    copyright: 0  origial: 0  PTS_DTS_flags: 2\n"
              "    ESCR_flag: 0  ES_rate_flag: 0  DSM_trick_mode_flag: 0\n"
              "    additional_copy_info_flag: 0  PES_CRC_flag: 0  PES_extensions_flag: 0\n"
              "    PES_header_data_length: 0\n"
              "    PTS=90000(1.000) DTS=0(0.000) for PID 0x0101\n");
}

TEST_F(pes_dump, only_audio_video_and_private_stream_1_are_shown)
{
    for (unsigned stream_id = 0xBC; stream_id <= 0xFF; ++stream_id) {
        const bool shown = stream_id == 0xBD || (stream_id >= 0xC0 && stream_id <= 0xEF);
        const std::string text = dump_of(pes_packet(stream_id, hex("1111"), 90000));
        char trace[16];
        std::snprintf(trace, sizeof(trace), "PES %04x\n", 0x100 + stream_id);
        EXPECT_EQ(text.substr(0, 9), trace);
        EXPECT_EQ(text.find("  Payload PES header type MPEG-2:\n") == 9, shown) << stream_id;
        if (shown) continue;
        // Nothing but trace lines.
        for (size_t at = 0; at < text.size(); at += 9) EXPECT_EQ(text.substr(at, 9), trace);
    }
}

TEST_F(pes_dump, a_stream_that_is_shown_is_found_behind_one_that_is_not)
{
    const bytes payload = join({pes_packet(0xBE, hex("FFFFFFFF")), pes_packet(0xE3, hex("0000"))});
    EXPECT_EQ(dump_of(payload), "PES 01be\n"
                                "PES 01e3\n"
                                "  Payload PES header type MPEG-2:\n"
                                "    scrambling_control: 0\n"
                                "    PES_priority: 0\n"
                                "    data_alignment_indicator: 0\n"
                                "    copyright: 0  origial: 0  PTS_DTS_flags: 0\n"
                                "    ESCR_flag: 0  ES_rate_flag: 0  DSM_trick_mode_flag: 0\n"
                                "    additional_copy_info_flag: 0  PES_CRC_flag: 0  PES_extensions_flag: 0\n"
                                "    PES_header_data_length: 0\n"
                                "    PTS=0(0.000) DTS=0(0.000) for PID 0x0101\n");
}

TEST_F(pes_dump, a_payload_without_a_start_code_prints_one_trace_line)
{
    EXPECT_EQ(dump_of({}), "PES 0000\n");
    EXPECT_EQ(dump_of(hex("000001")), "PES 0000\n");
    EXPECT_EQ(dump_of(repeated(0x11, 184)), "PES 0000\n");
}

TEST_F(pes_dump, a_header_cut_anywhere_prints_trace_lines_only)
{
    const bytes whole = hex("000001E0 0000 80 C0 0F 31 00 05 BF 21 11 00 05 BF 21 FFFFFFFFFF");
    for (size_t size = 4; size < whole.size(); ++size)
        EXPECT_EQ(dump_of(bytes(whole.begin(), whole.begin() + static_cast<long>(size))), "PES 01e0\n")
            << size;
    EXPECT_NE(dump_of(whole), "PES 01e0\n");
}

TEST_F(pes_dump, random_payloads_of_every_size_come_to_an_end)
{
    std::mt19937 random(1);
    for (unsigned round = 0; round < 50; ++round)
        for (size_t size = 0; size <= 184; ++size) {
            bytes payload(size);
            // Mostly the bytes of start codes.
            for (uint8_t &byte : payload)
                byte = static_cast<uint8_t>(random() % 4 != 0 ? random() % 2 : 0x80 | random());
            EXPECT_EQ(dump_of(payload).substr(0, 4), "PES ");
        }
}
