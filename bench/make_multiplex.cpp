// Writes a multiplex of 20 programs as multiplexers make them, at a constant 37.6 Mbit/s: each packet is of
// another PID than the one before. make_multiplex <file> <megabytes> [guide]
// With a guide, 5 % of the packets are EIT: present and following of the own services and of those of six
// other transport streams, and a schedule of a week of both, each with the repetition of ETSI TR 101 211.
#include "bench/event_text.h"
#include "tests/support/stream_builder.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr size_t packet_size = 188;
constexpr size_t payload_size = 184;
constexpr unsigned programs = 20;
constexpr int64_t second = 27000000;
constexpr int64_t millisecond = second / 1000;
constexpr int64_t ticks_per_packet = 1080; // 37.6 Mbit/s
constexpr int64_t decoding_delay = second;

/// What sends packets of a PID, per_period of them a period, evenly.
struct source {
    unsigned pid;
    int64_t period;
    int64_t per_period;
    /// Writes everything of the packet but PID and continuity_counter; it is sent at that time.
    std::function<void(uint8_t *packet, int64_t now)> write;
    int64_t first_due = 0;
    int64_t sent = 0;
    uint8_t counter = 0;

    int64_t due() const { return first_due + sent * period / per_period; }
};

/// Writes adaptation field and payload size; returns the payload. adaptation_size counts the length byte.
uint8_t *begin_packet(uint8_t *packet, bool unit_start, size_t adaptation_size)
{
    packet[1] = unit_start ? 0x40 : 0;
    packet[3] = adaptation_size > 0 ? 0x30 : 0x10;
    if (adaptation_size > 0) packet[4] = static_cast<uint8_t>(adaptation_size - 1);
    if (adaptation_size > 1) std::memset(packet + 5, 0xFF, adaptation_size - 1);
    if (adaptation_size > 1) packet[5] = 0;
    return packet + 4 + adaptation_size;
}

void put(uint8_t *to, const bytes &from)
{
    std::copy(from.begin(), from.end(), to);
}

/// Bytes that are no start code.
void fill(uint8_t *first, const uint8_t *fence)
{
    static uint32_t state = 1;
    while (first < fence) {
        state = state * 1664525 + 1013904223;
        *first++ = static_cast<uint8_t>(state >> 24 | 0x10);
    }
}

bytes pes_header(unsigned stream_id, int64_t pts, int64_t dts)
{
    constexpr int64_t ticks_per_stamp = 300;
    bytes header = pes_packet(stream_id, {}, pts / ticks_per_stamp, dts < 0 ? dts : dts / ticks_per_stamp);
    header[4] = header[5] = 0; // a length that is not told
    return header;
}

/// MPEG-2 video of 1.45 Mbit/s, with a PCR at least every 36 ms.
class video {
public:
    void operator()(uint8_t *packet, int64_t now)
    {
        const bool is_start = place == 0;
        const bool is_intra = frame % 12 == 0;
        const bool is_last = place + 1 == packets_of_frame();
        const bool has_PCR = now - last_PCR >= 35 * millisecond;
        uint8_t *p = begin_packet(packet, is_start, is_last ? 40 : has_PCR ? 8 : 0);
        if (has_PCR) {
            const auto base = static_cast<uint64_t>(now) / 300;
            packet[5] = 0x10;
            put(packet + 6, big_endian(base << 15 | 0x7E00 | static_cast<uint64_t>(now) % 300, 6));
            last_PCR = now;
        }
        if (is_start) p = begin_frame(p, is_intra);
        fill(p, packet + packet_size);
        if (!is_last) {
            ++place;
            return;
        }
        place = 0;
        ++frame;
    }

    static constexpr int64_t period = 12 * second / 25;
    static constexpr int64_t packets_per_period = 110 + 3 * 45 + 8 * 27;

private:
    int64_t packets_of_frame() const { return frame % 12 == 0 ? 110 : frame % 3 == 0 ? 45 : 27; }

    uint8_t *begin_frame(uint8_t *p, bool is_intra) const
    {
        const int64_t dts = frame * second / 25 + decoding_delay;
        const bytes header = pes_header(0xE0, frame % 3 == 0 ? dts + 3 * second / 25 : dts, dts);
        const bytes sequence = hex("000001B3 2D024033 0EA62380 000001B5 148A0001 0000");
        put(p, header);
        p += header.size();
        if (!is_intra) return p;
        put(p, sequence);
        return p + sequence.size();
    }

    int64_t frame = 0;
    int64_t place = 0;
    int64_t last_PCR = -second;
};

/// MPEG-1 audio layer II of 192 kbit/s, five frames a PES packet.
class audio {
public:
    void operator()(uint8_t *packet, int64_t)
    {
        if (left.empty()) begin_unit();
        const size_t size = std::min(payload_size, left.size());
        uint8_t *const p = begin_packet(packet, starts, payload_size - size);
        std::copy_n(left.begin(), size, p);
        left.erase(left.begin(), left.begin() + static_cast<long>(size));
        starts = false;
    }

    static constexpr int64_t period = second * 120 / 1000;
    static constexpr int64_t packets_per_period = 16;

private:
    void begin_unit()
    {
        bytes frame(576);
        fill(frame.data(), frame.data() + frame.size());
        put(frame.data(), hex("FFFDA404"));
        left =
            join({pes_header(0xC0, unit * period + decoding_delay, -1), frame, frame, frame, frame, frame});
        starts = true;
        ++unit;
    }

    bytes left;
    bool starts = false;
    int64_t unit = 0;
};

/// The packets of sections, again and again; a packet's rest is filled by the next section, but for every
/// 16th.
source carousel(unsigned pid, int64_t period, const std::vector<bytes> &sections)
{
    constexpr long together = 16;
    stream_builder stream;
    for (auto first = sections.begin(); first < sections.end();
         first += std::min(together, sections.end() - first))
        stream.sections(pid, {first, first + std::min(together, sections.end() - first)});
    const bytes packets = stream.data();
    size_t next = 0;
    const auto count = static_cast<int64_t>(packets.size() / packet_size);
    return {pid, period, count, [packets, next](uint8_t *packet, int64_t) mutable {
                std::copy_n(packets.begin() + static_cast<long>(next), packet_size, packet);
                next = (next + packet_size) % packets.size();
            }};
}

constexpr unsigned pmt_pid_of(unsigned program)
{
    return 0x0100 * program;
}

bytes sdt(unsigned transport_stream_id)
{
    bytes services = hex("0001FF");
    for (unsigned program = 1; program <= programs; ++program) {
        const bytes service = descriptor(
            0x48, join({hex("01"), counted("Provider"), counted("Service " + std::to_string(program))}));
        services = join({services, big_endian(100 * transport_stream_id + program, 2), hex("FF"),
                         big_endian(0x8000u | service.size(), 2), service});
    }
    return long_section(transport_stream_id == 0 ? 0x42 : 0x46, transport_stream_id, services);
}

bytes eit(unsigned table_id, unsigned transport_stream_id, unsigned program, section_fields fields,
          unsigned events)
{
    const unsigned service_id = 100 * transport_stream_id + program;
    bytes body = join({big_endian(transport_stream_id, 2), hex("0001"),
                       big_endian(fields.last_section_number, 1), big_endian(table_id, 1)});
    for (unsigned i = 0; i < events; ++i) {
        const unsigned event_id = 64 * ((table_id & 0xF) % 0xE) + 4 * (fields.section_number / 8u) + i;
        const bytes loop = event_descriptors("Event " + std::to_string(event_id), story_of(event_id, 3));
        body = join({body, big_endian(event_id, 2), hex("E48A"),
                     big_endian(event_id % 24 / 10 * 16 + event_id % 10, 1), hex("1811 005352"),
                     big_endian(loop.size(), 2), loop});
    }
    return long_section(table_id, service_id, body, fields);
}

/// Sections that come together, and how often.
struct guide_part {
    int64_t period;
    std::vector<bytes> sections;
    int64_t sent = 0;

    int64_t due() const { return sent * period / static_cast<int64_t>(sections.size()); }
    const bytes &next() { return sections[static_cast<size_t>(sent++) % sections.size()]; }
};

guide_part present_following(unsigned table_id, int64_t period, unsigned first_stream, unsigned last_stream)
{
    guide_part part = {period, {}};
    for (unsigned stream = first_stream; stream <= last_stream; ++stream)
        for (unsigned program = 1; program <= programs; ++program)
            for (unsigned number = 0; number < 2; ++number)
                part.sections.push_back(
                    eit(table_id, stream, program, {.section_number = number, .last_section_number = 1}, 1));
    return part;
}

/// Two tables of four days each, a section for every three hours.
guide_part schedule(unsigned table_id, int64_t period, unsigned first_stream, unsigned last_stream)
{
    guide_part part = {period, {}};
    for (unsigned stream = first_stream; stream <= last_stream; ++stream)
        for (unsigned program = 1; program <= programs; ++program)
            for (unsigned segment = 0; segment < 64; ++segment)
                part.sections.push_back(eit(table_id + segment / 32, stream, program,
                                            {.section_number = segment % 32 * 8, .last_section_number = 248},
                                            3));
    return part;
}

/// 5 % of the packets, for the longest of the periods.
source guide()
{
    std::vector<guide_part> parts = {present_following(0x4E, 2 * second, 0, 0),
                                     present_following(0x4F, 10 * second, 1, 6),
                                     schedule(0x50, 20 * second, 0, 0), schedule(0x60, 60 * second, 1, 6)};
    constexpr int64_t period = 60 * second;
    constexpr int64_t packets = period / ticks_per_packet / 20;
    std::vector<bytes> sections;
    for (size_t size = 0; size < size_t{packets} * (payload_size - 1);) {
        const auto next =
            std::min_element(parts.begin(), parts.end(),
                             [](const guide_part &a, const guide_part &b) { return a.due() < b.due(); });
        sections.push_back(next->next());
        size += sections.back().size();
    }
    return carousel(0x0012, period, sections);
}

std::vector<source> sources(bool with_guide)
{
    std::vector<source> all;
    std::vector<std::pair<unsigned, unsigned>> entries;
    for (unsigned program = 1; program <= programs; ++program)
        entries.emplace_back(program, pmt_pid_of(program));
    all.push_back(carousel(0x0000, 100 * millisecond, {pat_section(0, entries)}));
    all.push_back(carousel(0x0011, second, {sdt(0)}));
    if (with_guide) all.push_back(guide());
    for (unsigned program = 1; program <= programs; ++program) {
        const unsigned pid = pmt_pid_of(program);
        const bytes language = descriptor(0x0A, hex("656E6700"));
        all.push_back(carousel(
            pid, 100 * millisecond,
            {
                pmt_section(program, pid + 1, {                         },
                    { {0x02, pid + 1, {}}, {0x04, pid + 2, language}}
                    )
        }));
        all.push_back({pid + 1, video::period, video::packets_per_period, video()});
        all.push_back({pid + 2, audio::period, audio::packets_per_period, audio()});
    }
    // Nobody begins with the others.
    for (size_t i = 0; i < all.size(); ++i) all[i].first_due = static_cast<int64_t>(i) * millisecond;
    return all;
}

void write_slot(uint8_t *packet, std::vector<source> &all, int64_t now)
{
    const auto next = std::min_element(all.begin(), all.end(),
                                       [](const source &a, const source &b) { return a.due() < b.due(); });
    if (next->due() > now) {
        static const bytes padding = stream_builder().padding().data();
        std::copy(padding.begin(), padding.end(), packet);
        return;
    }
    next->write(packet, now);
    packet[0] = 0x47;
    packet[1] = static_cast<uint8_t>((packet[1] & 0xE0) | next->pid >> 8);
    packet[2] = static_cast<uint8_t>(next->pid);
    packet[3] = static_cast<uint8_t>((packet[3] & 0xF0) | (next->counter++ & 0xF));
    ++next->sent;
}

} // namespace

int main(int argc, char **argv)
{
    const bool with_guide = argc == 4 && std::string(argv[3]) == "guide";
    if (argc != 3 && !with_guide) {
        std::fprintf(stderr, "usage: make_multiplex <file> <megabytes> [guide]\n");
        return 1;
    }
    constexpr size_t slots_at_once = 4096;
    const uint64_t slots = std::strtoull(argv[2], nullptr, 10) * 1000000 / packet_size;
    std::vector<source> all = sources(with_guide);
    std::ofstream file(argv[1], std::ios::binary);
    std::vector<uint8_t> written(slots_at_once * packet_size);

    for (uint64_t slot = 0; slot < slots; slot += slots_at_once) {
        for (size_t i = 0; i < slots_at_once; ++i)
            write_slot(written.data() + i * packet_size, all,
                       static_cast<int64_t>(slot + i) * ticks_per_packet);
        file.write(reinterpret_cast<const char *>(written.data()),
                   static_cast<std::streamsize>(written.size()));
    }
    if (file.flush()) return 0;
    std::fprintf(stderr, "cannot write %s\n", argv[1]);
    return 1;
}
