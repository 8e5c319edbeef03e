#include "tests/overview_properties/random_recording.h"

#include "tests/overview_input/memory_source.h"

namespace {

constexpr unsigned first_pid = 0x100;
constexpr unsigned pid_count = 12;
constexpr unsigned long long pcr_cycle = (1ull << 33) * 300;

} // namespace

void random_recording::add_tables(stream_builder &stream)
{
    stream.section(0, pat_section(1, {
                                         {1, 0x1000}
    }));
    stream.section(0x1000, pmt_section(1, first_pid,
                                       {
    },
                                       {{0x1B, first_pid + 1, {}}, {0x0F, first_pid + 2, {}}}));
}

void random_recording::add_packet(stream_builder &stream)
{
    const unsigned pid = first_pid + any(pid_count);

    now += 20000 + any(20) * 100;
    switch (any(400)) {
    case 0:
        now = (now + any(4) * 9000000ull + any(2) * (pcr_cycle / 3)) % pcr_cycle;
        break;
    case 1:
        stream.lose_packets(pid, any(16));
        break;
    case 2:
        stream.adaptation(pid, hex("80"));
        break;
    case 3:
        stream.payload(pid, repeated(0x33, 184)).scramble(any(4));
        break;
    case 4:
        stream.payload(pid, repeated(0x33, 184)).flip_bit(1, 7); // transport_error_indicator
        break;
    case 5:
        stream.payload(pid, repeated(0x33, 184)).flip_bit(3, 4); // adaptation_field_control 00
        break;
    case 6:
    case 7:
        add_tables(stream);
        break;
    default:
        break;
    }
    switch (any(12)) {
    case 0:
        stream.pcr(first_pid + any(2) * 3, now % pcr_cycle);
        break;
    case 1:
        stream.padding(1 + any(3));
        break;
    case 2:
        stream.unit(pid,
                    pes_packet(0xE0, repeated(0x44, any(300)), static_cast<long long>(now / 300 + 9000)));
        break;
    case 3:
        stream.payload(pid, repeated(0x44, any(185)));
        break;
    default:
        for (unsigned count = any(8); count > 0; --count) stream.payload(pid, repeated(0x55, 184));
        break;
    }
    if (any(100) > 0) return;
    for (unsigned copies = 1 + any(3); copies > 0; --copies)
        stream.raw(bytes(stream.data().end() - 188, stream.data().end()));
}

bytes random_recording::in_grid(const stream_builder &stream)
{
    switch (any(3)) {
    case 0:
        return stream.data();
    case 1:
        return with_parity(stream.data());
    default:
        break;
    }
    bytes stamped;
    const bytes &packets = stream.data();
    unsigned stamp = any(1u << 30);
    for (size_t at = 0; at < packets.size(); at += 188) {
        const bytes four = big_endian(stamp, 4);
        stamped.insert(stamped.end(), four.begin(), four.end());
        stamped.insert(stamped.end(), packets.begin() + static_cast<ptrdiff_t>(at),
                       packets.begin() + static_cast<ptrdiff_t>(at + 188));
        stamp += 5000 + any(2000);
        if (any(500) == 0) stamp -= any(1u << 28);
    }
    return stamped;
}

void random_recording::damage(bytes &recording)
{
    for (unsigned hits = any(12); hits > 0 && recording.size() > 4000; --hits) {
        const size_t at = any(static_cast<unsigned>(recording.size() - 2000));
        const auto place = recording.begin() + static_cast<ptrdiff_t>(at);
        const auto count = static_cast<ptrdiff_t>(any(1500));
        switch (any(4)) {
        case 0:
            recording.erase(place, place + count);
            break;
        case 1:
            recording.insert(place, static_cast<size_t>(count), static_cast<uint8_t>(any(256)));
            break;
        case 2:
            std::fill(place, place + count, static_cast<uint8_t>(any(2) * 0x47));
            break;
        default:
            *place = static_cast<uint8_t>(any(256));
            break;
        }
    }
}

bytes random_recording::in_sync(unsigned packets)
{
    stream_builder stream;
    now = any(2) == 0 ? 0 : pcr_cycle - 30000000;
    while (stream.packet_count() < packets) add_packet(stream);
    return in_grid(stream);
}

bytes random_recording::damaged(unsigned packets)
{
    bytes recording = in_sync(packets);
    damage(recording);
    return recording;
}
