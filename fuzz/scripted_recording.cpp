#include "fuzz/scripted_recording.h"

#include "mpeg12_ts/packet.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

using byte_list = std::vector<uint8_t>;

constexpr uint64_t pcr_cycle = (1ull << 33) * 300;
constexpr size_t packet_limit = 4000; ///< but for one long gap
constexpr uint16_t pids[] = {0x100, 0x101, 0x102, 0x103, 0x104, 0x1FFF, 0x1FFB, 0x000};

class recording_writer {
public:
    recording_writer(fuzz_input &from, unsigned size) : in(from), packet_size(size) {}

    byte_list write()
    {
        while (in.left() > 0 && packets < packet_limit) next_call(in.byte());
        return std::move(recording);
    }

private:
    uint16_t any_pid() { return pids[in.byte() % std::size(pids)]; }

    void next_call(unsigned call)
    {
        switch (call & 15) {
        case 0:
        case 1:
            add_run(any_pid(), 1u + in.byte());
            break;
        case 2:
        case 3:
            add_pcr(any_pid(), call);
            break;
        case 4:
            add_unit(any_pid(), call);
            break;
        case 5:
            add_raw(call);
            break;
        case 6:
            add_copy(call);
            break;
        case 7:
            skip_counts(any_pid(), call >> 4);
            break;
        case 15:
            if (!had_gap) add_run(any_pid(), 65300 + in.word() % 512);
            had_gap = true;
            break;
        case 14:
            arrival_jump += static_cast<uint64_t>(in.byte()) << (call >> 4 << 1);
            break;
        default:
            change_clock_or_bytes(call);
            break;
        }
    }

    void change_clock_or_bytes(unsigned call)
    {
        switch (call & 15) {
        case 8:
            ticks_per_packet = in.word() * 4u;
            break;
        case 9: // forth or, nearly a cycle, back
            clock += static_cast<uint64_t>(static_cast<int8_t>(in.byte())) << (in.byte() % 34);
            break;
        case 10:
            change_byte(in.word(), static_cast<uint8_t>(in.byte() | 1));
            break;
        case 11:
            recording.insert(recording.end(), in.byte(), static_cast<uint8_t>(call >> 4 | 0x40));
            break;
        case 12:
            recording.resize(recording.size() - std::min<size_t>(recording.size(), in.byte()));
            break;
        default: // transport_error_indicator, transport_scrambling_control
            change_byte(packet_size - header_at() - 1, static_cast<uint8_t>((call & 0x40) << 1));
            change_byte(packet_size - header_at() - 3, static_cast<uint8_t>((call & 0x30) << 2));
            break;
        }
    }

    void skip_counts(uint16_t pid, unsigned count)
    {
        counters[pid] = static_cast<uint8_t>(counters[pid] + count);
    }

    /// Where the second byte of the header stands in a packet.
    size_t header_at() const { return packet_size == mpeg_ts_m2ts_packet_size ? 5 : 1; }

    /// The byte that lies so far before the last one.
    void change_byte(size_t before_last, uint8_t by)
    {
        if (before_last < recording.size()) recording[recording.size() - 1 - before_last] ^= by;
    }

    /// control: adaptation_field_control.
    void add(uint16_t pid, unsigned control, unsigned flags, const byte_list &rest)
    {
        if (packet_size == mpeg_ts_m2ts_packet_size)
            for (int shift = 24; shift >= 0; shift -= 8)
                recording.push_back(static_cast<uint8_t>((clock + arrival_jump) >> shift));
        const uint8_t counter = counters[pid];
        if ((control & 1) != 0) counters[pid] = static_cast<uint8_t>(counter + 1);
        recording.insert(recording.end(),
                         {mpeg_ts_sync_byte, static_cast<uint8_t>(flags | pid >> 8),
                          static_cast<uint8_t>(pid), static_cast<uint8_t>(control << 4 | (counter & 0xF))});
        recording.insert(recording.end(), rest.begin(), rest.end());
        const size_t filling = mpeg_ts_packet_size - 4 - rest.size();
        recording.insert(recording.end(), filling, static_cast<uint8_t>(counter));
        if (packet_size == 204) recording.insert(recording.end(), 16, 0x47);
        clock += ticks_per_packet;
        ++packets;
    }

    void add_run(uint16_t pid, size_t count)
    {
        for (; count > 0; --count) add(pid, 1, 0, {});
        packets = std::min(packets, packet_limit - 1);
    }

    /// A PCR of the clock with a jitter of up to 128 times a power of two.
    void add_pcr(uint16_t pid, unsigned call)
    {
        const auto jitter = static_cast<uint64_t>(static_cast<int8_t>(in.byte())) << (call >> 6) * 5;
        const uint64_t PCR = (clock + jitter) % pcr_cycle;
        const bool with_payload = (call & 0x10) != 0;
        byte_list rest = {static_cast<uint8_t>(with_payload ? 7 : 183),
                          static_cast<uint8_t>((call & 0x20) != 0 ? 0x90 : 0x10)};
        const uint64_t base = PCR / 300;
        const uint64_t extension = PCR % 300;
        for (const int shift : {25, 17, 9, 1}) rest.push_back(static_cast<uint8_t>(base >> shift));
        rest.push_back(static_cast<uint8_t>((base & 1) << 7 | 0x7E | extension >> 8));
        rest.push_back(static_cast<uint8_t>(extension));
        add(pid, with_payload ? 3 : 2, 0, rest);
    }

    static void put_stamp(byte_list &to, unsigned prefix, uint64_t stamp)
    {
        to.push_back(static_cast<uint8_t>(prefix << 4 | (stamp >> 29 & 0xE) | 1));
        to.push_back(static_cast<uint8_t>(stamp >> 22));
        to.push_back(static_cast<uint8_t>(stamp >> 14 | 1));
        to.push_back(static_cast<uint8_t>(stamp >> 7));
        to.push_back(static_cast<uint8_t>(stamp << 1 | 1));
    }

    /// A PES packet with a PTS up to 11 s from the clock, and a DTS up to 2.8 s from that.
    void add_unit(uint16_t pid, unsigned call)
    {
        const uint64_t pts = clock / 300 + static_cast<uint64_t>(static_cast<int16_t>(in.word())) * 32;
        const bool with_dts = (call & 0x10) != 0;
        byte_list rest = {0,
                          0,
                          1,
                          static_cast<uint8_t>((call & 0x20) != 0 ? in.byte() : 0xE0),
                          0,
                          0,
                          0x80,
                          static_cast<uint8_t>(with_dts ? 0xC0 : 0x80),
                          static_cast<uint8_t>(with_dts ? 10 : 5)};
        put_stamp(rest, with_dts ? 3 : 2, pts);
        if (with_dts) put_stamp(rest, 1, pts - static_cast<uint64_t>(static_cast<int8_t>(in.byte())) * 2000);
        add(pid, 1, 0x40, rest);
    }

    void add_raw(unsigned call)
    {
        const uint16_t pid = any_pid();
        const fuzz_input part = in.part(in.byte() % 185);
        add(pid, call >> 6, (call & 0x30) << 2 & 0xE0, byte_list(part.p, part.fence));
    }

    /// The last packets again, up to 16.
    void add_copy(unsigned call)
    {
        const size_t size = std::min<size_t>(recording.size(), ((call >> 4) + 1) * packet_size);
        const byte_list copy(recording.end() - static_cast<ptrdiff_t>(size), recording.end());
        recording.insert(recording.end(), copy.begin(), copy.end());
        packets += size / packet_size;
    }

    fuzz_input &in;
    unsigned packet_size;
    byte_list recording;
    size_t packets = 0;
    bool had_gap = false;
    uint64_t clock = 0;
    uint64_t arrival_jump = 0;
    uint64_t ticks_per_packet = 40000;
    std::array<uint8_t, mpeg_ts_pid_count> counters = {};
};

} // namespace

std::vector<uint8_t> scripted_recording(fuzz_input &in, unsigned packet_size)
{
    return recording_writer(in, packet_size).write();
}
