#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/driver/packet_dump.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <random>

struct packet_dump_sweep : report_test {
    static std::string header_line(const mpeg_ts_packet &tsp, unsigned long long offset, double t,
                                   unsigned packet_size)
    {
        char line[512];
        int length = std::snprintf(line, sizeof(line),
                                   "@%-8llu (t=%.7f) TS PACKET: PID=0x%04x CONT=%-2u ERR=%u PRI=%u SCRAM=%u",
                                   offset, t, tsp.pid, tsp.continuity_counter, tsp.transport_error_indicator,
                                   tsp.transport_priority, tsp.transport_scrambling_control);
        char *const end = line + sizeof(line);
        const auto room = [&] { return static_cast<size_t>(end - line - length); };
        const auto adaptation_size = static_cast<unsigned>(tsp.adaptation_field_fence - tsp.adaptation_field);
        switch (tsp.adaptation_field_control) {
        case 2:
            length += std::snprintf(line + length, room(), " AFC=ADAPTATION[%03u    ] 0x%02x",
                                    adaptation_size, tsp.adaptation_field[0]);
            break;
        case 3:
            length +=
                std::snprintf(line + length, room(), " AFC=ADAPT+PAYL[%03u+%03u] 0x%02x", adaptation_size,
                              static_cast<unsigned>(tsp.packet + packet_size - tsp.adaptation_field_fence),
                              tsp.adaptation_field[0]);
            break;
        case 1:
            length += std::snprintf(line + length, room(), " AFC=PAYLOAD                 ");
            break;
        default:
            length += std::snprintf(line + length, room(), " AFC=ILLEGAL                 ");
            break;
        }
        if (tsp.payload_unit_start_indicator) length += std::snprintf(line + length, room(), " UNIT_START");
        if (tsp.arrival_time != 0)
            length += std::snprintf(line + length, room(), " TIME=%lu ",
                                    static_cast<unsigned long>(tsp.arrival_time));
        return std::string(line, static_cast<size_t>(length)) + '\n';
    }

    static std::string adaptation_lines(const mpeg_ts_packet &tsp)
    {
        char text[512];
        std::snprintf(
            text, sizeof(text),
            "  Adaptation: DISCON=%u RAND=%u ESPRI=%u PCR=%u OPCR=%u SPLICE=%u TSPRIV=%u AFEXT=%u\n",
            tsp.discontinuity_indicator, tsp.random_access_indicator,
            tsp.elementary_stream_priority_indicator, tsp.PCR_flag, tsp.OPCR_flag, tsp.splicing_point_flag,
            tsp.transport_private_data_flag, tsp.adaptation_field_extension_flag);
        std::string lines = text;
        const auto add = [&](bool flag) {
            if (flag) lines += text;
        };
        std::snprintf(text, sizeof(text), "    PCR: %llu / 27MHz = %.6f\n", tsp.PCR,
                      static_cast<double>(tsp.PCR) / 27000000.0);
        add(tsp.PCR_flag);
        std::snprintf(text, sizeof(text), "    OPCR: %llu / 27MHz = %.6f\n", tsp.OPCR,
                      static_cast<double>(tsp.OPCR) / 27000000.0);
        add(tsp.OPCR_flag);
        std::snprintf(text, sizeof(text), "    Splice countdown: %u\n", tsp.splice_countdown);
        add(tsp.splicing_point_flag);
        std::snprintf(text, sizeof(text), "    TS Private data length: %u\n",
                      tsp.transport_private_data_length);
        add(tsp.transport_private_data_flag);
        std::snprintf(text, sizeof(text), "    Adaptation field ext length: %u\n",
                      tsp.adaptation_field_extension_length);
        add(tsp.adaptation_field_extension_flag);
        return lines;
    }

    static std::string hex_rows(const uint8_t *p, const uint8_t *fence, bool text)
    {
        std::string rows;
        while (p < fence) {
            const long size = std::min<long>(16, fence - p);
            rows += "    ";
            for (long i = 0; i < size; ++i)
                rows += {"0123456789abcdef"[p[i] >> 4], "0123456789abcdef"[p[i] & 15], ' '};
            if (text && size == 16)
                for (long i = 0; i < size; ++i)
                    rows += p[i] >= 0x20 && p[i] <= 0x7E ? static_cast<char>(p[i]) : '.';
            rows += '\n';
            p += size;
        }
        return rows;
    }

    /// The whole dump in contents mode of a packet of an untracked PID.
    static std::string contents_of(const mpeg_ts_packet &tsp, unsigned packet_size)
    {
        std::string text = header_line(tsp, 0, -1.0, packet_size);
        if (tsp.adaptation_field != nullptr) {
            text += adaptation_lines(tsp) + "  Adaptation field:\n" +
                    hex_rows(tsp.adaptation_field, tsp.adaptation_field_fence, false);
            if (tsp.transport_private_data != nullptr)
                text += "  Transport stream private data (in adaptation field):\n" +
                        hex_rows(tsp.transport_private_data,
                                 tsp.transport_private_data + tsp.transport_private_data_length, false);
            if (tsp.adaptation_field_extension != nullptr)
                text +=
                    "  Adaptation field extension (in adaptation field):\n" +
                    hex_rows(tsp.adaptation_field_extension,
                             tsp.adaptation_field_extension + tsp.adaptation_field_extension_length, false);
        }
        if (tsp.payload != nullptr) text += "  Payload:\n" + hex_rows(tsp.payload, tsp.fence, true);
        return text;
    }

    std::mt19937_64 random{20};
};

TEST_F(packet_dump_sweep, the_header_line_agrees_with_the_C_library)
{
    settings.dump_ts_mode = 1;
    for (unsigned round = 0; round < 30000; ++round) {
        const unsigned size = round % 2 == 0 ? 188 : 192;
        bytes packet(size);
        for (uint8_t &byte : packet) byte = static_cast<uint8_t>(random());
        uint8_t *const start = packet.data() + size - 188;
        start[0] = 0x47;
        start[4] = static_cast<uint8_t>(start[4] % 184);
        if (round % 16 == 1) std::memset(packet.data(), 0, 4);

        const unsigned long long offset = random() >> (random() % 64);
        const double rate = static_cast<double>(1 + (random() >> (random() % 63)));
        const double times[] = {-1.0, static_cast<double>(offset) * 8.0 / rate,
                                static_cast<double>(random() % 100000000) / 8192.0,
                                static_cast<double>(random() % 100000) / 20000000.0};
        const double t = times[random() % 4];

        mpeg_ts_packet tsp;
        ASSERT_NE(mpeg_ts_decode(&tsp, packet.data(), size), 0);
        settings.packet_size = size;
        dump_packet(&tsp, offset, t);
        std::string expected = header_line(tsp, offset, t, size);
        if (tsp.adaptation_field_control == 0)
            expected += "!!! ALARM: Illegal adapation field control value 0\n";
        if (tsp.adaptation_field != nullptr) expected += adaptation_lines(tsp);
        ASSERT_EQ(report(), expected);
    }
}

TEST_F(packet_dump_sweep, every_adaptation_field_length_with_every_flag_byte)
{
    settings.dump_ts_mode = 2;
    for (const unsigned size : {188u, 192u}) {
        settings.packet_size = size;
        // A block of exactly this size, so that the address sanitizer sees one byte too many.
        const std::unique_ptr<uint8_t[]> block(new uint8_t[size]);
        for (unsigned adaptation_field_length = 0; adaptation_field_length <= 255; ++adaptation_field_length)
            for (unsigned flags = 0; flags <= 255; ++flags) {
                // Small and large bytes, so that announced lengths sometimes fit.
                for (unsigned i = 0; i < size; ++i)
                    block[i] = static_cast<uint8_t>(random() >> (random() % 8 + 56));
                uint8_t *const start = block.get() + size - 188;
                const uint8_t adaptation_field_control = random() % 2 == 0 ? 0x20 : 0x30;
                start[0] = 0x47;
                start[3] = static_cast<uint8_t>(adaptation_field_control | (start[3] & 0x0F));
                start[4] = static_cast<uint8_t>(adaptation_field_length);
                start[5] = static_cast<uint8_t>(flags);

                mpeg_ts_packet tsp;
                const bool decoded = mpeg_ts_decode(&tsp, block.get(), size) != 0;
                ASSERT_EQ(decoded, adaptation_field_length <= 183);
                if (!decoded) continue;
                dump_packet(&tsp, 0, -1.0);
                ASSERT_EQ(report(), contents_of(tsp, size)) << adaptation_field_length << ' ' << flags;
            }
    }
}
