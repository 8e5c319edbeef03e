#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/driver/packet_dump.h"

#include <algorithm>
#include <memory>

struct packet_dump : report_test {
    packet_dump() { settings.dump_ts_mode = 1; }

    /// The dump of a packet of 188 or 192 bytes, which must decode.
    std::string dump_of(const bytes &packet, unsigned long long offset = 0, double t = -1.0)
    {
        const std::unique_ptr<uint8_t[]> block(new uint8_t[packet.size()]);
        std::copy(packet.begin(), packet.end(), block.get());
        settings.packet_size = static_cast<uint32_t>(packet.size());

        mpeg_ts_packet tsp;
        EXPECT_NE(mpeg_ts_decode(&tsp, block.get(), packet.size()), 0);
        dump_packet(&tsp, offset, t);
        return report();
    }

    /// A packet that begins with these bytes, the rest filled up.
    static bytes filled(bytes packet, uint8_t fill = 0xFF)
    {
        packet.resize(188, fill);
        return packet;
    }

    /// A packet of PID 0x0100 with an adaptation field (the bytes behind its length byte) and a payload of
    /// 0xFF behind it.
    static bytes with_adaptation(const bytes &field)
    {
        return filled(join({hex("47010030"), big_endian(field.size(), 1), field}));
    }

    static bytes clock_reference(unsigned long long base, unsigned extension)
    {
        return big_endian(base << 15 | 0x7E00 | extension, 6);
    }
};

TEST_F(packet_dump, a_packet_with_payload_only)
{
    EXPECT_EQ(dump_of(filled(hex("47010017"))),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=7  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                 \n");
}

TEST_F(packet_dump, offset_time_and_counter_have_their_columns)
{
    EXPECT_EQ(dump_of(filled(hex("471ABC1F")), 12345678, 0.25),
              "@12345678 (t=0.2500000) TS PACKET: PID=0x1abc CONT=15 ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                 \n");
    EXPECT_EQ(dump_of(filled(hex("4700011A")), 18446744073709551615ull, 123456.00000009),
              "@18446744073709551615 (t=123456.0000001) TS PACKET: PID=0x0001 CONT=10 ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                 \n");
    EXPECT_EQ(dump_of(filled(hex("47000119")), 188, 1.0),
              "@188      (t=1.0000000) TS PACKET: PID=0x0001 CONT=9  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                 \n");
}

TEST_F(packet_dump, error_priority_and_unit_start)
{
    EXPECT_EQ(dump_of(filled(hex("47810010"))),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=1 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                 \n");
    EXPECT_EQ(dump_of(filled(hex("47210010"))),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=1 SCRAM=0 "
              "AFC=PAYLOAD                 \n");
    EXPECT_EQ(dump_of(filled(hex("47410010"))),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                  UNIT_START\n");
}

TEST_F(packet_dump, the_scrambling_control_has_its_column)
{
    EXPECT_EQ(dump_of(filled(hex("470100D0"))),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=3 "
              "AFC=PAYLOAD                 \n");
}

TEST_F(packet_dump, an_adaptation_field_only)
{
    EXPECT_EQ(dump_of(filled(hex("4701002F B7 00"))),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=15 ERR=0 PRI=0 SCRAM=0 "
              "AFC=ADAPTATION[184    ] 0xb7\n"
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n");
    EXPECT_EQ(dump_of(filled(hex("4741002F 07 00"))),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=15 ERR=0 PRI=0 SCRAM=0 "
              "AFC=ADAPTATION[008    ] 0x07 UNIT_START\n"
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n");
}

TEST_F(packet_dump, the_sizes_of_adaptation_field_and_payload_add_up_to_184)
{
    EXPECT_EQ(dump_of(with_adaptation(hex("00FFFFFFFFFFFF"))),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=ADAPT+PAYL[008+176] 0x07\n"
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n");
    EXPECT_EQ(dump_of(with_adaptation({})),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=ADAPT+PAYL[001+183] 0x00\n"
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n");
    EXPECT_EQ(dump_of(with_adaptation(repeated(0x00, 183))),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=ADAPT+PAYL[184+000] 0xb7\n"
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n");
}

TEST_F(packet_dump, a_packet_of_192_bytes_shows_the_same_sizes_and_its_arrival_time)
{
    const bytes packet = with_adaptation(hex("00FFFFFFFFFFFF"));
    EXPECT_EQ(dump_of(join({hex("12345678"), packet}), 384),
              "@384      (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=ADAPT+PAYL[008+176] 0x07 TIME=305419896 \n"
              "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n");
    EXPECT_EQ(dump_of(join({hex("FFFFFFFF"), filled(hex("47410010"))})),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                  UNIT_START TIME=4294967295 \n");
}

TEST_F(packet_dump, an_arrival_time_of_0_is_not_shown)
{
    EXPECT_EQ(dump_of(join({hex("00000000"), filled(hex("47410010"))})),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                  UNIT_START\n");
    EXPECT_EQ(dump_of(join({hex("00000001"), filled(hex("47010010"))})),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                  TIME=1 \n");
}

TEST_F(packet_dump, an_illegal_adaptation_field_control_raises_the_alarm_in_both_modes)
{
    const std::string expected = "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=3  ERR=0 PRI=0 SCRAM=0 "
                                 "AFC=ILLEGAL                  UNIT_START\n"
                                 "!!! ALARM: Illegal adapation field control value 0\n";
    EXPECT_EQ(dump_of(filled(hex("47410003"))), expected);
    EXPECT_EQ(errors.illegal_afc_errors, 1u);
    EXPECT_EQ(errors.priority2_errors, 1u);
    settings.dump_ts_mode = 2;
    EXPECT_EQ(dump_of(filled(hex("47410003"))), expected);
    EXPECT_EQ(errors.illegal_afc_errors, 2u);
    EXPECT_EQ(errors.priority2_errors, 2u);
    EXPECT_EQ(errors.priority1_errors, 0u);
    EXPECT_EQ(errors.continuity_errors, 0u);
}

TEST_F(packet_dump, only_an_illegal_adaptation_field_control_is_counted)
{
    for (const char *const header : {"47010010", "47010020 00", "47010030 00"}) dump_of(filled(hex(header)));
    EXPECT_EQ(errors.illegal_afc_errors, 0u);
    EXPECT_EQ(errors.priority2_errors, 0u);
}

TEST_F(packet_dump, every_field_of_the_adaptation_field)
{
    const bytes field = join({hex("FF"), clock_reference(90000, 5), clock_reference(0x1FFFFFFFF, 299),
                              hex("FF 03 AABBCC 02 DDEE")});
    EXPECT_EQ(dump_of(with_adaptation(field)),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=ADAPT+PAYL[022+162] 0x15\n"
              "  Adaptation: DISCON=1 RAND=1 ESPRI=1 PCR=1 OPCR=1 SPLICE=1 TSPRIV=1 AFEXT=1\n"
              "    PCR: 27000005 / 27MHz = 1.000000\n"
              "    OPCR: 2576980377599 / 27MHz = 95443.717689\n"
              "    Splice countdown: 255\n"
              "    TS Private data length: 3\n"
              "    Adaptation field ext length: 2\n");
}

TEST_F(packet_dump, each_field_is_printed_only_with_its_flag)
{
    const std::string header = "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
                               "AFC=ADAPT+PAYL[008+176] 0x07\n";
    EXPECT_EQ(dump_of(with_adaptation(hex("80 000000000000"))),
              header + "  Adaptation: DISCON=1 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n");
    EXPECT_EQ(dump_of(with_adaptation(hex("40 000000000000"))),
              header + "  Adaptation: DISCON=0 RAND=1 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n");
    EXPECT_EQ(dump_of(with_adaptation(hex("20 000000000000"))),
              header + "  Adaptation: DISCON=0 RAND=0 ESPRI=1 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n");
    EXPECT_EQ(dump_of(with_adaptation(join({hex("10"), clock_reference(45000, 0)}))),
              header + "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=1 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n"
                       "    PCR: 13500000 / 27MHz = 0.500000\n");
    EXPECT_EQ(dump_of(with_adaptation(join({hex("08"), clock_reference(45000, 0)}))),
              header + "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=1 SPLICE=0 TSPRIV=0 AFEXT=0\n"
                       "    OPCR: 13500000 / 27MHz = 0.500000\n");
    EXPECT_EQ(dump_of(with_adaptation(hex("04 0A0000000000"))),
              header + "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=1 TSPRIV=0 AFEXT=0\n"
                       "    Splice countdown: 10\n");
    EXPECT_EQ(dump_of(with_adaptation(hex("02 050000000000"))),
              header + "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=1 AFEXT=0\n"
                       "    TS Private data length: 5\n");
    EXPECT_EQ(dump_of(with_adaptation(hex("01 040000000000"))),
              header + "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=0 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=1\n"
                       "    Adaptation field ext length: 4\n");
}

TEST_F(packet_dump, fields_that_do_not_fit_print_as_0)
{
    EXPECT_EQ(dump_of(with_adaptation(hex("FF 0102030405"))),
              "@0        (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=ADAPT+PAYL[007+177] 0x06\n"
              "  Adaptation: DISCON=1 RAND=1 ESPRI=1 PCR=1 OPCR=1 SPLICE=1 TSPRIV=1 AFEXT=1\n"
              "    PCR: 0 / 27MHz = 0.000000\n"
              "    OPCR: 0 / 27MHz = 0.000000\n"
              "    Splice countdown: 0\n"
              "    TS Private data length: 0\n"
              "    Adaptation field ext length: 0\n");
}

TEST_F(packet_dump, a_record_without_the_adaptation_field_that_it_announces_stops_the_program)
{
    const bytes buffer = filled(hex("47010030"));
    mpeg_ts_packet tsp = {};
    tsp.packet = buffer.data();
    tsp.fence = buffer.data() + buffer.size();
    for (const uint8_t adaptation_field_control : {uint8_t{2}, uint8_t{3}}) {
        tsp.adaptation_field_control = adaptation_field_control;
        EXPECT_DEATH(dump_packet(&tsp, 0, 0.0), "Assertion `tsp.adaptation_field != NULL' failed");
    }
}
