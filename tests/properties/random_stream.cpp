#include "tests/properties/random_stream.h"

#include "tests/streams/recipes.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr size_t packet_size = 188;

/// PIDs that carry what a program map says; none of them is used for anything else.
constexpr unsigned first_stream_pid = 0x0110;
constexpr unsigned stream_pid_count = 12;

constexpr unsigned known_tags[] = {0x02, 0x03, 0x05, 0x06, 0x09, 0x0A, 0x0B, 0x0C, 0x0E, 0x0F, 0x10,
                                   0x11, 0x13, 0x28, 0x2A, 0x40, 0x41, 0x43, 0x48, 0x4A, 0x4D, 0x4E,
                                   0x50, 0x52, 0x53, 0x54, 0x55, 0x56, 0x5A, 0x5F, 0x66, 0x6A, 0x73,
                                   0x76, 0x81, 0x83, 0x86, 0x87, 0x88, 0x8A, 0xA0, 0xA1, 0xA3, 0xAA};

constexpr unsigned known_stream_types[] = {0x02, 0x03, 0x06, 0x06, 0x06, 0x0F, 0x1B, 0x81, 0x86, 0x86};

} // namespace

bytes random_stream::any_bytes(size_t size)
{
    bytes content(size);
    for (uint8_t &byte : content) byte = static_cast<uint8_t>(any(4) == 0 ? 0 : any(256));
    return content;
}

bytes random_stream::any_descriptors()
{
    bytes loop;
    for (unsigned count = any(4); count > 0; --count) {
        const unsigned tag = any(8) == 0 ? any(256) : known_tags[any(std::size(known_tags))];
        loop = join({loop, descriptor(tag, any_bytes(any(any(4) == 0 ? 60 : 14)))});
    }
    return loop;
}

bytes random_stream::any_loop_of_descriptors()
{
    const bytes loop = any_descriptors();
    return join({big_endian(0xF000u | loop.size(), 2), loop});
}

bytes random_stream::any_program_map(unsigned program_number)
{
    std::vector<pmt_stream> streams;
    for (unsigned count = any(6); count > 0; --count)
        streams.push_back({known_stream_types[any(std::size(known_stream_types))],
                           first_stream_pid + any(stream_pid_count), any_descriptors()});
    return pmt_section(program_number, first_stream_pid + any(stream_pid_count), any_descriptors(), streams,
                       {.version_number = any(4), .current_next_indicator = any(4) != 0});
}

void random_stream::add_table(stream_builder &stream)
{
    const section_fields fields = {.version_number = any(4), .current_next_indicator = any(4) != 0};
    const auto body = [&] {
        return join({any_bytes(any(12)), any_loop_of_descriptors(), any_bytes(any(12))});
    };

    switch (any(8)) {
    case 0:
        stream.section(0x0000, pat_section(1,
                                           {
                                               {any(4), 0x0010},
                                               {1,      0x0100},
                                               {any(4), 0x0101}
        },
                                           fields));
        break;
    case 1:
        stream.section(0x0100 + any(2), any_program_map(1 + any(2)));
        break;
    case 2:
        stream.section(0x0010 + any(2),
                       long_section(0x40 + 2 * any(2), any(3),
                                    join({any_loop_of_descriptors(), hex("F020"), body()}), fields));
        break;
    case 3:
        stream.section(
            0x0012, long_section(0x4E + any(6), any(3), join({any_bytes(6), any_bytes(10), body()}), fields));
        break;
    case 4:
        stream.section(0x1FFB, long_section(0xC8 + any(8), any(3), join({hex("00"), body()}), fields));
        break;
    case 5:
        stream.section(first_stream_pid + any(stream_pid_count), short_section(0xFC, body()));
        break;
    case 6:
        stream.section(any(2) == 0 ? 0x0000 : 0x0012, any_bytes(20 + any(400)));
        break;
    default:
        stream.sections(0x0100, {any_program_map(1), any_program_map(2)});
        break;
    }
}

void random_stream::add_payload(stream_builder &stream)
{
    const unsigned pid = first_stream_pid + any(stream_pid_count);

    switch (any(7)) {
    case 0:
        stream.pcr(pid, any(1000) * 2700000ull);
        break;
    case 1:
        stream.unit(pid, pes_packet(0xBD + any(0x40), any_bytes(any(400)), any(100000), any(100000)));
        break;
    case 2:
        stream.lose_packets(pid, any(16));
        break;
    case 3:
        stream.payload(pid, any_bytes(any(185)), any(2) == 0);
        break;
    case 4:
        stream.adaptation(pid, join({any_bytes(1), any_bytes(10)}), any(2) == 0 ? bytes() : any_bytes(172));
        break;
    case 5:
        stream.payload(pid, any_bytes(184)).scramble(any(4));
        break;
    default:
        stream.padding(any(3));
        break;
    }
}

bytes random_stream::tables_and_noise()
{
    stream_builder stream;

    stream.section(0x0000, pat_section(1, {
                                              {1, 0x0100},
                                              {2, 0x0101}
    }));
    for (unsigned count = 20 + any(60); count > 0; --count) {
        if (any(3) != 0)
            add_table(stream);
        else
            add_payload(stream);
    }
    return stream.data();
}

bytes random_stream::damaged_multiplex()
{
    stream_builder (*const recipes[])() = {dvb_multiplex, atsc_multiplex, splice_points, teletext_pages};
    const bytes source = recipes[any(std::size(recipes))]().data();
    bytes stream;

    for (auto p = source.begin(); p != source.end(); p += packet_size) {
        bytes packet(p, p + packet_size);
        if (any(20) == 0) packet[any(packet_size)] ^= static_cast<uint8_t>(1u << any(8));
        if (any(30) == 0) continue;
        stream = join({stream, packet});
        if (any(30) == 0) stream = join({stream, packet});
        if (any(20) == 0) {
            stream_builder noise;
            add_payload(noise);
            stream = join({stream, noise.data()});
        }
    }
    return stream;
}
