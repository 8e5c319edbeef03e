#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/driver/packet_dump.h"

#include <algorithm>
#include <memory>
#include <regex>

struct packet_dump_contents : report_test {
    packet_dump_contents() { settings.dump_ts_mode = 2; }

    /// The dump of a packet of 188 bytes behind its header line; the pointers of trace lines as "*".
    std::string dump_of(const bytes &packet)
    {
        const std::unique_ptr<uint8_t[]> block(new uint8_t[packet.size()]);
        std::copy(packet.begin(), packet.end(), block.get());

        mpeg_ts_packet tsp;
        EXPECT_NE(mpeg_ts_decode(&tsp, block.get(), packet.size()), 0);
        dump_packet(&tsp, 0, -1.0);
        const std::string text = report();
        return std::regex_replace(text.substr(text.find('\n') + 1), std::regex("=0x[0-9a-f]+(?= |\n)"), "=*");
    }

    static bytes filled(bytes packet)
    {
        packet.resize(188, 0xFF);
        return packet;
    }

    /// A packet without payload, its adaptation field these bytes behind the length byte.
    static bytes with_adaptation(const bytes &field)
    {
        return filled(join({hex("47010020"), big_endian(field.size(), 1), field}));
    }

    static bytes with_payload(const bytes &payload, bool unit_start = false)
    {
        return stream_builder().payload(0x0100, payload, unit_start).data();
    }
};

TEST_F(packet_dump_contents, a_whole_payload_in_hexadecimal_and_text)
{
    bytes payload;
    for (unsigned byte = 0; byte < 184; ++byte) payload.push_back(static_cast<uint8_t>(byte));
    EXPECT_EQ(dump_of(with_payload(payload)),
              "  Payload:\n"
              "    00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f ................\n"
              "    10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f ................\n"
              "    20 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f  !\"#$%&'()*+,-./\n"
              "    30 31 32 33 34 35 36 37 38 39 3a 3b 3c 3d 3e 3f 0123456789:;<=>?\n"
              "    40 41 42 43 44 45 46 47 48 49 4a 4b 4c 4d 4e 4f @ABCDEFGHIJKLMNO\n"
              "    50 51 52 53 54 55 56 57 58 59 5a 5b 5c 5d 5e 5f PQRSTUVWXYZ[\\]^_\n"
              "    60 61 62 63 64 65 66 67 68 69 6a 6b 6c 6d 6e 6f `abcdefghijklmno\n"
              "    70 71 72 73 74 75 76 77 78 79 7a 7b 7c 7d 7e 7f pqrstuvwxyz{|}~.\n"
              "    80 81 82 83 84 85 86 87 88 89 8a 8b 8c 8d 8e 8f ................\n"
              "    90 91 92 93 94 95 96 97 98 99 9a 9b 9c 9d 9e 9f ................\n"
              "    a0 a1 a2 a3 a4 a5 a6 a7 a8 a9 aa ab ac ad ae af ................\n"
              "    b0 b1 b2 b3 b4 b5 b6 b7 \n");
}

TEST_F(packet_dump_contents, the_highest_bytes_are_no_text)
{
    bytes payload = repeated(0x7E, 16);
    for (unsigned byte = 0xF0; byte <= 0xFF; ++byte) payload.push_back(static_cast<uint8_t>(byte));
    const std::string text = dump_of(with_payload(payload));
    EXPECT_EQ(text.substr(text.find("  Payload:")),
              "  Payload:\n"
              "    7e 7e 7e 7e 7e 7e 7e 7e 7e 7e 7e 7e 7e 7e 7e 7e ~~~~~~~~~~~~~~~~\n"
              "    f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb fc fd fe ff ................\n");
}

TEST_F(packet_dump_contents, every_range_of_the_adaptation_field)
{
    const bytes field = hex("FF 0000AFC87E05 FFFFFFFFFF2B FF 11 000102030405060708090A0B0C0D0E0F10 02 DDEE");
    EXPECT_EQ(dump_of(with_adaptation(field)),
              "  Adaptation: DISCON=1 RAND=1 ESPRI=1 PCR=1 OPCR=1 SPLICE=1 TSPRIV=1 AFEXT=1\n"
              "    PCR: 27000005 / 27MHz = 1.000000\n"
              "    OPCR: 2576980377599 / 27MHz = 95443.717689\n"
              "    Splice countdown: 255\n"
              "    TS Private data length: 17\n"
              "    Adaptation field ext length: 2\n"
              "  Adaptation field:\n"
              "    23 ff 00 00 af c8 7e 05 ff ff ff ff ff 2b ff 11 \n"
              "    00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f \n"
              "    10 02 dd ee \n"
              "  Transport stream private data (in adaptation field):\n"
              "    00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f \n"
              "    10 \n"
              "  Adaptation field extension (in adaptation field):\n"
              "    dd ee \n");
}

TEST_F(packet_dump_contents, a_full_last_row_ends_once)
{
    EXPECT_EQ(dump_of(with_adaptation(hex("00 0102030405060708090A0B0C0D0E"))),
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n"
              "  Adaptation field:\n"
              "    0f 00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e \n");
}

TEST_F(packet_dump_contents, an_empty_adaptation_field_has_its_length_byte)
{
    EXPECT_EQ(dump_of(with_adaptation({})),
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n"
              "  Adaptation field:\n"
              "    00 \n");
}

TEST_F(packet_dump_contents, empty_ranges_have_their_titles_only)
{
    EXPECT_EQ(dump_of(with_adaptation(hex("03 00 00"))),
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=1 AFEXT=1\n"
              "    TS Private data length: 0\n"
              "    Adaptation field ext length: 0\n"
              "  Adaptation field:\n"
              "    03 03 00 00 \n"
              "  Transport stream private data (in adaptation field):\n"
              "  Adaptation field extension (in adaptation field):\n");
}

TEST_F(packet_dump_contents, ranges_that_do_not_fit_have_no_title)
{
    EXPECT_EQ(dump_of(with_adaptation(hex("02 04 AABBCC"))),
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=1 AFEXT=0\n"
              "    TS Private data length: 4\n"
              "  Adaptation field:\n"
              "    05 02 04 aa bb cc \n");
    EXPECT_EQ(dump_of(with_adaptation(hex("01 FF AABB"))),
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=1\n"
              "    Adaptation field ext length: 255\n"
              "  Adaptation field:\n"
              "    04 01 ff aa bb \n");
}

TEST_F(packet_dump_contents, ranges_stop_at_the_end_of_the_packet)
{
    const bytes buffer = filled(hex("47010020 02 03 DD"));
    mpeg_ts_packet tsp = {};
    tsp.packet = buffer.data();
    tsp.fence = buffer.data() + buffer.size();
    tsp.adaptation_field_control = 2;
    tsp.adaptation_field = buffer.data() + 4;
    tsp.adaptation_field_fence = buffer.data() + 7;
    tsp.transport_private_data_flag = 1;
    tsp.transport_private_data_length = 255;
    tsp.transport_private_data = tsp.fence - 2;
    tsp.adaptation_field_extension_flag = 1;
    tsp.adaptation_field_extension_length = 4;
    tsp.adaptation_field_extension = tsp.fence - 3;
    dump_packet(&tsp, 0, 0.0);
    EXPECT_EQ(report(), "@0        (t=0.0000000) TS PACKET: PID=0x0000 CONT=0  ERR=0 PRI=0 SCRAM=0 "
                        "AFC=ADAPTATION[003    ] 0x02\n"
                        "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=1 AFEXT=1\n"
                        "    TS Private data length: 255\n"
                        "    Adaptation field ext length: 4\n"
                        "  Adaptation field:\n"
                        "    02 03 dd \n"
                        "  Transport stream private data (in adaptation field):\n"
                        "    ff ff \n"
                        "  Adaptation field extension (in adaptation field):\n"
                        "    ff ff ff \n");
}

TEST_F(packet_dump_contents, no_payload_behind_an_adaptation_field_that_fills_the_packet)
{
    const std::string text = dump_of(filled(join({hex("47010030 B7 00"), repeated(0xFF, 182)})));
    EXPECT_EQ(text.find("Payload"), std::string::npos);
    EXPECT_EQ(text.substr(text.size() - 29), "    ff ff ff ff ff ff ff ff \n");
}

TEST_F(packet_dump_contents, header_mode_has_no_bytes_and_no_PES_header)
{
    track(0x0100, 0x02, 1);
    settings.dump_ts_mode = 1;
    EXPECT_EQ(dump_of(with_payload(pes_packet(0xE0, repeated(0x00, 175)), true)), "");
    EXPECT_EQ(dump_of(with_adaptation(hex("03 00 00"))),
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=1 AFEXT=1\n"
              "    TS Private data length: 0\n"
              "    Adaptation field ext length: 0\n");
}

TEST_F(packet_dump_contents, the_PES_header_follows_the_payload_of_a_stream_that_starts_a_unit)
{
    track(0x0100, 0x02, 1);
    const bytes packet = with_payload(pes_packet(0xE0, hex("1122"), 90000), true);
    const std::string text = dump_of(packet);
    EXPECT_EQ(text.substr(text.find("  Payload:")),
              "  Payload:\n"
              "    00 00 01 e0 00 0a 80 80 05 21 00 05 bf 21 11 22 .........!...!.\"\n"
              "PES 01e0 nxt=* s=* f=*\n"
              "  Payload PES header type MPEG-2:\n"
              "    scrambling_control: 0\n"
              "    PES_priority: 0\n"
              "    data_alignment_indicator: 0\n"
              "    copyright: 0  origial: 0  PTS_DTS_flags: 2\n"
              "    ESCR_flag: 0  ES_rate_flag: 0  DSM_trick_mode_flag: 0\n"
              "    additional_copy_info_flag: 0  PES_CRC_flag: 0  PES_extensions_flag: 0\n"
              "    PES_header_data_length: 5\n"
              "    PTS=90000(1.000) DTS=0(0.000) for PID 0x0100\n");
}

TEST_F(packet_dump_contents, no_PES_header_without_unit_start)
{
    track(0x0100, 0x02, 1);
    const std::string text = dump_of(with_payload(pes_packet(0xE0, hex("1122"), 90000), false));
    EXPECT_EQ(text.find("PES"), std::string::npos);
}

TEST_F(packet_dump_contents, the_PES_header_is_for_types_that_carry_no_sections)
{
    const bytes packet = with_payload(pes_packet(0xE0, hex("1122"), 90000), true);
    EXPECT_EQ(dump_of(packet).find("PES"), std::string::npos) << "not tracked";
    for (const uint16_t type :
         {uint16_t{0x0001}, uint16_t{0x00FF}, TRACK_AC3, TRACK_TELETEXT, TRACK_PURE_PCR}) {
        mpeg_ts_pid_tracking_stop(0x0100);
        track(0x0100, type, 1);
        EXPECT_NE(dump_of(packet).find("PES 01e0 nxt=* s=* f=*\n  Payload PES"), std::string::npos) << type;
    }
    for (const uint16_t type : {TRACK_SCTE35, TRACK_ATSC_ETT, TRACK_ATSC_EIT, TRACK_ATSC_PSIP, TRACK_EIT,
                                TRACK_SDT, TRACK_NIT, TRACK_PMT, TRACK_PAT}) {
        mpeg_ts_pid_tracking_stop(0x0100);
        track(0x0100, type, 1);
        EXPECT_EQ(dump_of(packet).find("PES"), std::string::npos) << type;
    }
}
