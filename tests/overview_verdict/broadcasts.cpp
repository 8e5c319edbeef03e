#include "tests/overview_verdict/broadcasts.h"

#include "mpeg12_ts/crc32.h"

namespace {

constexpr unsigned transport_stream_id = 0x0001;
constexpr unsigned other_transport_stream_id = 0x0002;
constexpr unsigned service_id = 0x0001;

bytes time_offset_section()
{
    const bytes section = short_section(0x73, hex("E000 12 00 00 F000 00000000"));
    const bytes without_crc(section.begin(), section.end() - 4);
    const uint32_t crc = mpeg_ts_crc32(without_crc.data(), without_crc.data() + without_crc.size());
    return join({without_crc, big_endian(crc, 4)});
}

bytes event_section(unsigned table_id, unsigned stream_id, unsigned number, unsigned last_number)
{
    const bytes body = join({big_endian(stream_id, 2), hex("0020"), big_endian(last_number, 1),
                             big_endian(table_id == 0x4F ? 0x4Fu : table_id, 1)});
    return long_section(table_id, service_id, body,
                        {.section_number = number, .last_section_number = last_number});
}

broadcast_sections make_sections()
{
    broadcast_sections all;
    all.pat = pat_section(transport_stream_id, {
                                                   {0, 0x10          },
                                                   {1, first_map_pid },
                                                   {2, second_map_pid}
    });
    all.first_pmt = pmt_section(1, video,
                                {
    },
                                {{0x02, video, {}}, {0x03, audio, {}}});
    all.second_pmt =
        pmt_section(2, second_audio, descriptor(0x09, hex("0500 E300")),
                    {
                        {0x03, second_audio, {}},
                        {0x0F, unstamped,    {}},
                        {0x05, private_data, {}}
    });
    all.cat = long_section(0x01, 0xFFFF, descriptor(0x09, hex("0500 E301")));
    all.nit = long_section(0x40, 0x0030, hex("F000 F000"));
    all.other_nit = long_section(0x41, 0x0031, hex("F000 F000"));
    all.bat = long_section(0x4A, 0x0032, hex("F000 F000"));
    all.sdt = long_section(0x42, transport_stream_id, hex("0020 FF 0001 FD 8000 0002 FC 8000"));
    all.other_sdt = long_section(0x46, other_transport_stream_id, hex("0020 FF 0009 FC 8000"));
    all.tdt = short_section(0x70, hex("E000 12 00 00"));
    all.tot = time_offset_section();
    all.present = event_section(0x4E, transport_stream_id, 0, 1);
    all.following = event_section(0x4E, transport_stream_id, 1, 1);
    all.other_present = event_section(0x4F, other_transport_stream_id, 0, 1);
    all.other_following = event_section(0x4F, other_transport_stream_id, 1, 1);
    all.schedule = event_section(0x50, transport_stream_id, 0, 0);

    all.atsc_pat = pat_section(transport_stream_id, {
                                                        {1, first_map_pid}
    });
    all.atsc_pmt = pmt_section(1, video,
                               {
    },
                               {{0x02, video, {}}, {0x81, audio, {}}});
    all.mgt =
        long_section(0xC7, 0x0000, hex("00 0002 0000 FFFB E0 00000010 F000 0100 FD00 E0 00000010 F000 F000"));
    all.tvct = long_section(0xC8, transport_stream_id, hex("00 00 FC00"));
    all.stt = long_section(0xCD, 0x0000, hex("00 40000000 12 6000"));
    all.rrt = long_section(0xCA, 0xFF01, hex("00 00 00 FC00"));
    all.atsc_eit = long_section(0xCB, 0x0001, hex("00 00"));
    return all;
}

/// Both programs' clock, a picture and a sound every 40 ms.
void add_first_program(timed_multiplex &stream, unsigned milliseconds)
{
    for (unsigned ms = 0; ms < milliseconds; ms += 40) {
        stream.pcr(ms, video);
        stream.unit(ms + 10, video, 0xE0, 240, 200);
        stream.unit(ms + 20, audio, 0xC0, 100);
    }
}

void add_second_program(timed_multiplex &stream, unsigned milliseconds)
{
    for (unsigned ms = 0; ms < milliseconds; ms += 40) {
        stream.pcr(ms + 30, second_audio);
        stream.unit(ms + 34, second_audio, 0xC0, 100);
        stream.payload(ms + 36, unstamped);
        stream.payload(ms + 38, entitlements);
    }
}

} // namespace

const broadcast_sections &sections()
{
    static const broadcast_sections all = make_sections();
    return all;
}

timed_multiplex dvb_broadcast()
{
    timed_multiplex stream(dvb_length_ms);
    const broadcast_sections &all = sections();

    add_first_program(stream, dvb_length_ms);
    add_second_program(stream, dvb_length_ms);
    stream.every(80, 2, 0x00, all.pat);
    stream.every(80, 4, first_map_pid, all.first_pmt);
    stream.every(80, 6, second_map_pid, all.second_pmt);
    stream.every(1000, 8, 0x11, all.sdt);
    stream.every(5000, 12, 0x10, all.nit);
    stream.every(1000, 14, 0x12, all.present).every(1000, 494, 0x12, all.following);
    stream.every(10000, 16, 0x12, all.other_present).every(10000, 2016, 0x12, all.other_following);
    stream.every(10000, 4016, 0x12, all.schedule);
    stream.every(10000, 18, 0x14, all.tdt).every(10000, 22, 0x14, all.tot);
    stream.every(5000, 24, 0x11, all.bat);
    stream.every(5000, 26, 0x10, all.other_nit);
    stream.every(5000, 28, 0x11, all.other_sdt);
    stream.every(1000, 32, 0x01, all.cat);
    return stream;
}

timed_multiplex atsc_broadcast()
{
    timed_multiplex stream(atsc_length_ms);
    const broadcast_sections &all = sections();

    add_first_program(stream, atsc_length_ms);
    stream.every(80, 2, 0x00, all.atsc_pat);
    stream.every(80, 4, first_map_pid, all.atsc_pmt);
    stream.every(120, 6, psip, all.mgt);
    stream.every(360, 8, psip, all.tvct);
    stream.every(1000, 12, psip, all.stt);
    stream.every(30000, 14, psip, all.rrt);
    stream.every(480, 16, atsc_events, all.atsc_eit);
    return stream;
}

bytes with_body(const bytes &section, const bytes &body)
{
    const unsigned extension = static_cast<unsigned>(section[3]) << 8 | section[4];
    return long_section(section[0], extension, body,
                        {.version_number = (section[5] >> 1) & 0x1Fu,
                         .section_number = section[6],
                         .last_section_number = section[7]});
}
