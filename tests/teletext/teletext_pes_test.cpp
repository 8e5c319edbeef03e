#include "tests/support/report_test.h"
#include "tests/teletext/data_unit.h"

#include "mpeg_ts_analysis/teletext/teletext_pes.h"

#include <algorithm>
#include <memory>
#include <random>

struct teletext_pes : report_test {
    teletext_pes() { track(pid, TRACK_TELETEXT, 1); }

    /// The report of a packet that starts a unit and whose payload is exactly these bytes.
    std::string report_of_payload(const bytes &payload)
    {
        return report_of_packets(stream_builder().payload(pid, payload, true).data());
    }

    static constexpr unsigned pid = 0x0200;
};

/// A PES packet with the 45-byte header that teletext has.
static bytes teletext_pes_packet(const bytes &data_field)
{
    return join({hex("00 00 01 BD"), big_endian(39 + data_field.size(), 2), hex("84 80 24 21 00 01 00 01"),
                 repeated(0xFF, 31), data_field});
}

static bytes unit(unsigned data_unit_id, const bytes &data)
{
    return join({big_endian(data_unit_id, 1), big_endian(data.size(), 1), data});
}

static const std::string field = "        PES_data_field() [Teletext/ETSI EN 300 472 section 4.3 table 1]\n";

/// A stuffing unit as the data unit decoder prints it.
static const std::string stuffing =
    "            data_field() [Teletext/ETSI EN 300 472 section 4.3 table 2]\n"
    "                field_parity=1 first field\n"
    "                line_offset=0+31 = 31\n"
    "                framing_code=0xff\n"
    "                magazine_and_packet_address=0xff [from bytes 4-5: ff>ff>ff ff>ff>ff]\n";

TEST_F(teletext_pes, three_units_fill_a_packet)
{
    const bytes packet =
        teletext_pes_packet(join({hex("10"), unit(0x02, repeated(0xFF, 44)), unit(0x03, repeated(0xFF, 44)),
                                  unit(0xFF, repeated(0xFF, 44))}));
    EXPECT_EQ(packet.size(), 184u);
    EXPECT_EQ(report_of_payload(packet), field +
                                             "            data_identifier=0x10 EBU data\n"
                                             "            data_unit_id=0x02 EBU Teletext non-subtitle data\n"
                                             "            data_unit_length=0x2c\n" +
                                             stuffing +
                                             "            data_unit_id=0x03 EBU Teletext subtitle data\n"
                                             "            data_unit_length=0x2c\n" +
                                             stuffing +
                                             "            data_unit_id=0xff \n"
                                             "            data_unit_length=0x2c\n" +
                                             stuffing);
}

TEST_F(teletext_pes, a_unit_of_text_is_decoded)
{
    EXPECT_EQ(report_of_payload(teletext_pes_packet(
                  join({hex("10"), unit(0x02, data_unit(0xE7, 0xE4, 1, 20, data_block(text_bytes("A"))))}))),
              field + "            data_identifier=0x10 EBU data\n"
                      "            data_unit_id=0x02 EBU Teletext non-subtitle data\n"
                      "            data_unit_length=0x2c\n"
                      "            data_field() [Teletext/ETSI EN 300 472 section 4.3 table 2]\n"
                      "                field_parity=1 first field\n"
                      "                line_offset=0+7 = 7\n"
                      "                framing_code=0xe4\n"
                      "                magazine_and_packet_address=0xa1 [from bytes 4-5: 40>02>01 91>89>0a]\n"
                      "                    X/1 Y=20\n"
                      "      [display] data: 0xc1 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 A         \n"
                      "                      0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n"
                      "                      0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n"
                      "                      0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n"
                      "Displayable page contents: A                                       \n");
}

TEST_F(teletext_pes, a_continuation_packet_is_reported)
{
    const char *const expected = "!!! Teletext TS packet with payload_unit_start == 0 is unusual\n";

    EXPECT_EQ(report_of_packets(stream_builder().payload(pid, repeated(0x00, 184)).data()), expected);
    EXPECT_EQ(report_of_packets(stream_builder().adaptation(pid, hex("00")).data()), expected);
}

TEST_F(teletext_pes, a_packet_over_two_transport_packets_is_reported_for_each)
{
    const bytes packet = teletext_pes_packet(join({hex("10"), repeated(0xFF, 322)}));
    EXPECT_EQ(packet.size(), 368u);
    EXPECT_EQ(report_of_packets(stream_builder().unit(pid, packet).data()),
              "!!! PES packet extends past fence\n"
              "!!! Teletext TS packet with payload_unit_start == 0 is unusual\n");
}

TEST_F(teletext_pes, no_payload_is_silent)
{
    EXPECT_EQ(report_of_packets(stream_builder().adaptation(pid, hex("00"), {}, true).data()), "");
}

TEST_F(teletext_pes, fewer_than_8_payload_bytes_are_silent)
{
    for (unsigned size = 1; size < 8; ++size) EXPECT_EQ(report_of_payload(repeated(0x47, size)), "");
    EXPECT_EQ(report_of_payload(repeated(0x47, 8)), "!!! Unusual PES start code for teletext\n");
}

TEST_F(teletext_pes, every_byte_of_the_start_code_counts)
{
    for (size_t byte = 0; byte < 4; ++byte) {
        bytes packet = teletext_pes_packet(join({hex("10"), unit(0x02, repeated(0xFF, 44))}));
        packet[byte] ^= 0x01;
        EXPECT_EQ(report_of_payload(packet), "!!! Unusual PES start code for teletext\n");
    }
}

TEST_F(teletext_pes, a_PES_packet_length_of_4_or_less_is_silent)
{
    for (unsigned length = 0; length <= 4; ++length)
        EXPECT_EQ(report_of_payload(join({hex("00 00 01 BD"), big_endian(length, 2), hex("84 80 24 00")})),
                  "");
    EXPECT_EQ(report_of_payload(join({hex("00 00 01 BD 00 05"), hex("84 80 24 00 00")})),
              "!!! PES header longer than packet\n");
}

TEST_F(teletext_pes, a_PES_packet_may_end_at_the_packets_end_and_not_behind)
{
    bytes packet = teletext_pes_packet(join({hex("99"), repeated(0xFF, 138)}));
    EXPECT_EQ(report_of_payload(packet), field + "            data_identifier=0x99 \n");

    packet[5] += 1;
    EXPECT_EQ(report_of_payload(packet), "!!! PES packet extends past fence\n");
    EXPECT_EQ(report_of_payload(hex("00 00 01 BD 00 05 84 80")), "!!! PES packet extends past fence\n");
    EXPECT_EQ(report_of_payload(hex("00 00 01 BD FF FF 84 80")), "!!! PES packet extends past fence\n");
}

TEST_F(teletext_pes, a_header_longer_than_the_packet_is_reported)
{
    bytes packet = teletext_pes_packet({});
    packet[8] = 0x25;
    EXPECT_EQ(report_of_payload(packet), "!!! PES header longer than packet\n");
}

TEST_F(teletext_pes, a_header_of_another_size_is_reported)
{
    for (unsigned length = 0; length < 0x28; ++length) {
        if (length == 0x24) continue;
        bytes packet = teletext_pes_packet(join({hex("10"), unit(0x02, repeated(0xFF, 44))}));
        packet[8] = static_cast<uint8_t>(length);
        EXPECT_EQ(report_of_payload(packet), "!!! PES header has nonstandard size for teletext\n");
    }
}

TEST_F(teletext_pes, an_empty_data_field_is_silent)
{
    EXPECT_EQ(report_of_payload(teletext_pes_packet({})), "");
}

TEST_F(teletext_pes, a_data_identifier_alone_is_printed)
{
    EXPECT_EQ(report_of_payload(teletext_pes_packet(hex("10"))),
              field + "            data_identifier=0x10 EBU data\n");
}

TEST_F(teletext_pes, sixteen_data_identifiers_are_EBU_data)
{
    for (unsigned identifier = 0; identifier <= 0xFF; ++identifier) {
        const bool is_EBU_data = identifier >= 0x10 && identifier <= 0x1F;
        EXPECT_EQ(report_of_payload(
                      teletext_pes_packet(join({big_endian(identifier, 1), unit(0x02, repeated(0xFF, 44))}))),
                  field + "            data_identifier=0x" + two_digits(identifier) +
                      (is_EBU_data ? " EBU data\n" : " \n") +
                      "            data_unit_id=0x02 EBU Teletext non-subtitle data\n"
                      "            data_unit_length=0x2c\n" +
                      (is_EBU_data ? stuffing : ""));
    }
}

TEST_F(teletext_pes, units_of_any_id_are_decoded)
{
    for (unsigned id = 0; id <= 0xFF; ++id) {
        const std::string name = id == 2   ? "EBU Teletext non-subtitle data"
                                 : id == 3 ? "EBU Teletext subtitle data"
                                           : "";
        EXPECT_EQ(report_of_payload(teletext_pes_packet(join({hex("1F"), unit(id, repeated(0xFF, 44))}))),
                  field + "            data_identifier=0x1f EBU data\n            data_unit_id=0x" +
                      two_digits(id) + " " + name + "\n            data_unit_length=0x2c\n" + stuffing);
    }
}

TEST_F(teletext_pes, a_unit_of_0x2E_bytes_is_decoded_behind_the_message)
{
    EXPECT_EQ(report_of_payload(teletext_pes_packet(
                  join({hex("10"), unit(0x03, join({repeated(0xFF, 44), hex("01 02")})), unit(0x02, {})}))),
              field +
                  "            data_identifier=0x10 EBU data\n"
                  "            data_unit_id=0x03 EBU Teletext subtitle data\n"
                  "            data_unit_length=0x2e\n"
                  "!!! EBU Teletext packet with unusual size\n" +
                  stuffing +
                  "            data_unit_id=0x02 EBU Teletext non-subtitle data\n"
                  "            data_unit_length=0x00\n"
                  "!!! EBU Teletext packet with unusual size\n");
}

TEST_F(teletext_pes, a_unit_of_43_bytes_is_not_decoded)
{
    EXPECT_EQ(report_of_payload(teletext_pes_packet(join({hex("10"), unit(0x02, repeated(0xFF, 43))}))),
              field + "            data_identifier=0x10 EBU data\n"
                      "            data_unit_id=0x02 EBU Teletext non-subtitle data\n"
                      "            data_unit_length=0x2b\n"
                      "!!! EBU Teletext packet with unusual size\n");
}

TEST_F(teletext_pes, unusual_sizes_are_no_fault_outside_EBU_data)
{
    EXPECT_EQ(report_of_payload(teletext_pes_packet(
                  join({hex("99"), unit(0x02, repeated(0xFF, 44)), unit(0xC3, hex("01 02"))}))),
              field + "            data_identifier=0x99 \n"
                      "            data_unit_id=0x02 EBU Teletext non-subtitle data\n"
                      "            data_unit_length=0x2c\n"
                      "            data_unit_id=0xc3 \n"
                      "            data_unit_length=0x02\n");
}

TEST_F(teletext_pes, a_unit_that_does_not_fit_ends_the_walk_silently)
{
    const std::string first = field +
                              "            data_identifier=0x10 EBU data\n"
                              "            data_unit_id=0x02 EBU Teletext non-subtitle data\n"
                              "            data_unit_length=0x2c\n" +
                              stuffing;
    const bytes data_field = join({hex("10"), unit(0x02, repeated(0xFF, 44))});

    EXPECT_EQ(report_of_payload(teletext_pes_packet(join({data_field, hex("03")}))), first);
    EXPECT_EQ(report_of_payload(teletext_pes_packet(join({data_field, hex("03 01")}))), first);
    EXPECT_EQ(report_of_payload(teletext_pes_packet(join({data_field, hex("03 2C"), repeated(0xFF, 43)}))),
              first);
}

/// The units end with the PES packet, not with the transport packet.
TEST_F(teletext_pes, bytes_behind_the_PES_packet_are_no_units)
{
    EXPECT_EQ(report_of_payload(join({teletext_pes_packet(hex("10")), unit(0x02, repeated(0xFF, 44))})),
              field + "            data_identifier=0x10 EBU data\n");
}

TEST_F(teletext_pes, dump_mode_none_leaves_only_the_faults_of_the_header)
{
    const bytes good = teletext_pes_packet(join({hex("10"), unit(0x02, repeated(0x00, 44))}));
    bytes wrong_size = good;
    wrong_size[8] = 0x05;
    bytes longer = good;
    longer[8] = 0xFF;
    bytes wrong_start = good;
    wrong_start[3] = 0xBC;
    bytes past_fence = good;
    past_fence[4] = 0x01;

    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_payload(good), "");
    EXPECT_EQ(report_of_payload(wrong_size), "!!! PES header has nonstandard size for teletext\n");
    EXPECT_EQ(report_of_payload(longer), "!!! PES header longer than packet\n");
    EXPECT_EQ(report_of_payload(wrong_start), "!!! Unusual PES start code for teletext\n");
    EXPECT_EQ(report_of_payload(past_fence), "!!! PES packet extends past fence\n");
    EXPECT_EQ(report_of_packets(stream_builder().payload(pid, good).data()),
              "!!! Teletext TS packet with payload_unit_start == 0 is unusual\n");
}

TEST_F(teletext_pes, raw_mode_is_like_contents)
{
    const bytes packet = teletext_pes_packet(join({hex("10"), unit(0x02, repeated(0xFF, 44))}));
    const std::string contents = report_of_payload(packet);
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_payload(packet), contents);
}

/// Headers that are right in part, payloads in blocks of exactly their size.
TEST_F(teletext_pes, random_payloads_stay_inside_their_block)
{
    std::mt19937 random(472);
    for (unsigned round = 0; round < 4000; ++round) {
        bytes payload = teletext_pes_packet(join({hex("10"), repeated(0x2C, 138)}));
        for (unsigned change = random() % 8; change > 0; --change)
            payload[random() % payload.size()] = static_cast<uint8_t>(random());
        const size_t size = 1 + random() % payload.size();
        payload[5] = static_cast<uint8_t>(size + random() % 3 - 7);

        const std::unique_ptr<uint8_t[]> block(new uint8_t[size]);
        std::copy(payload.begin(), payload.begin() + static_cast<long>(size), block.get());
        mpeg_ts_packet packet{};
        packet.payload_unit_start_indicator = 1;
        packet.payload = block.get();
        packet.fence = block.get() + size;
        on_teletext_packet(mpeg_ts_pid_tracking_get(pid), &packet);
        report();
    }
}
