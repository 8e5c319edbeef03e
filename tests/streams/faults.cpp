#include "tests/streams/recipes.h"

namespace {

constexpr unsigned video_pid = 0x0101;
constexpr unsigned long long pcr_modulus = 2576980377600;

/// A section that takes three packets.
bytes long_pmt()
{
    return pmt_section(1, video_pid, descriptor(0x80, repeated(0x11, 200)),
                       {
                           {0x02,   video_pid, descriptor(0x80, repeated(0x22, 100))},
                           {0x03, 0x0102,          {}                     }
    });
}

} // namespace

stream_builder faults()
{
    stream_builder stream;
    const bytes pat = pat_section(0x0001, {
                                              {1, 0x0100}
    });

    stream.section(0x0000, pat).section(0x0100, long_pmt());
    // The PCR: a lock, a steady clock, a gap, a wrap, a jump each way.
    for (const unsigned long long ticks :
         {pcr_modulus - 1080000, pcr_modulus - 540000, 0ull, 540000ull, 8100000ull, 999000000ull, 5400000ull})
        stream.pcr(video_pid, ticks).padding(30);
    // Counters: a loss, a repeated packet, a signalled discontinuity, a scrambled packet.
    stream.payload(video_pid, repeated(0x33, 184))
        .lose_packets(video_pid, 3)
        .payload(video_pid, repeated(0x33, 184));
    stream.lose_packets(video_pid, 15).payload(video_pid, repeated(0x33, 184));
    stream.lose_packets(video_pid, 1).adaptation(video_pid, hex("80"), repeated(0x33, 182));
    stream.payload(video_pid, repeated(0x33, 184)).scramble(2);
    // Sections: a lost packet in the middle, a wrong checksum, one cut short by the next.
    const bytes section = long_pmt();
    const bytes start = join({hex("00"), bytes(section.begin(), section.begin() + 183)});
    stream.payload(0x0100, start, true).lose_packets(0x0100, 1).payload(0x0100, repeated(0xFF, 184));
    stream.section(0x0000, pat).flip_bit(20, 0);
    stream.payload(0x0100, start, true).section(0x0100, long_pmt());
    stream.section(0x0000, long_section(0x80, 0, hex("00")));
    stream.section(0x0000, short_section(0x00, hex("0001 C1 00 00 0001 E100")));
    // An adaptation_field_control of 0, a packet without a sync byte.
    stream.payload(video_pid, repeated(0x33, 184)).flip_bit(3, 4);
    stream.payload(video_pid, repeated(0x33, 184)).flip_bit(0, 0);
    return stream;
}
