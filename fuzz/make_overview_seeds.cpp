// Writes first inputs for the entries of the overview into folders of their names: make_overview_seeds
// <folder>.
#include "tests/overview_contents/bit_writer.h"
#include "tests/overview_contents/si_sections.h"
#include "tests/overview_contents/splice_sections.h"
#include "tests/overview_contents/teletext_stream.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

namespace {

std::filesystem::path folder;
unsigned seed_count = 0;

void write(const char *entry, const bytes &content)
{
    std::filesystem::create_directories(folder / entry);
    std::ofstream file(folder / entry / ("seed_" + std::to_string(seed_count++)), std::ios::binary);
    file.write(reinterpret_cast<const char *>(content.data()), static_cast<std::streamsize>(content.size()));
}

const bytes mpeg_2_sequence = hex("000001b35002d033ffffe340000001b5146a00010000000001b800080040");
const bytes h264_headers = hex("000001 674d4020eca02802dd80880000030008000003032078c18cb0 000001 68");
const bytes hevc_headers = hex("000001 42010101600000030090000003000003007ba003c08010e596566924caf0"
                               "168080000003008000001904 000001 44");

/// A parameter set of profile Main, 64x64, that leaves so many pairs of columns and of rows away.
bytes cropped_h264(unsigned columns, unsigned rows)
{
    bit_writer set;
    set.u(77, 8).u(0, 8).u(40, 8).ue(0).ue(0).ue(2).ue(4).u(0, 1).ue(3).ue(3).flags("1 1 1");
    set.ue(0).ue(columns).ue(rows).ue(0).flags("0");
    return set.nal_unit(hex("67"));
}

/// Two MPEG-1 layer II frames of 576 bytes.
bytes audio_frames()
{
    const bytes frame = join({hex("fffda404"), repeated(0x55, 572)});
    return join({frame, frame});
}

bytes ac3_frames()
{
    const bytes frame = join({hex("0b77b50b1e40ebf8"), repeated(0x55, 1784)});
    return join({frame, frame});
}

bytes adts_frames()
{
    const bytes frame = join({hex("fff14c8024fffc"), repeated(0x55, 288)});
    return join({frame, frame});
}

/// A section of the checked tables: a PID by its place there, a time, and what follows section_length.
bytes record_of(unsigned place, unsigned step, const bytes &section)
{
    const bool is_long = (section[1] & 0x80) != 0;
    const bytes body(section.begin() + 3, section.end() - (is_long ? 4 : 0));
    return join({
        {static_cast<uint8_t>((is_long ? 0 : 0x40) | place), static_cast<uint8_t>(step), section[0]},
        big_endian(body.size(), 2),
        body
    });
}

const bytes pat = pat_section(1, {
                                     {0, 0x10 },
                                     {1, 0x100},
                                     {2, 0x200}
});

bytes first_map()
{
    return pmt_section(1, 0x101,
                       {
    },
                       {
                           {0x02, 0x101, {}},
                           {0x1B, 0x102, {}},
                           {0x04, 0x104, descriptor(0x0A, hex("656E6700"))},
                           {0x06, 0x105, descriptor(0x56, hex("656E670900"))},
                           {0x86, 0x103, descriptor(0x05, hex("43554549"))},
                           {0x06, 0x106, descriptor(0x6A, hex("00"))},
                           {0x24, 0x107, descriptor(0x09, hex("09 00 E3 00"))},
                       });
}

bytes second_map()
{
    return pmt_section(2, 0x101, descriptor(0x09, hex("09 00 E3 00")),
                       {
                           {0x0F, 0x108, {}},
                           {0x05, 0x300, {}}
    });
}

bytes services()
{
    return sdt_section(
        join({sdt_entry(1, service_descriptor(1, "Provider", "One")),
              sdt_entry(2, service_descriptor(2, "\x15Pr\xC2\x9B[31m\xC3\xB6 <b>", "\x10\x01\x02Zw\xE9i"))}));
}

/// Present and following in one section.
bytes events(unsigned section_number)
{
    const bytes texts = join({short_event("News", "of\x8Athe day"), extended_event(0, 0, "All \xC8o of it")});
    return eit_section(0x4E, 1, eit_entry(7u + section_number, "C079124500", "003000", texts),
                       {.section_number = section_number, .last_section_number = 1});
}

bytes cue_section()
{
    const bytes insert =
        join({hex("0000002A 7F EF"), splice_time(900000), break_duration(true, 2700000), hex("0001 01 01")});
    const bytes segmentation =
        segmentation_descriptor(hex("0000002B 7F FF 0000293000 09 04 74657374 30 01 02"));
    return splice_section(0x05, insert, segmentation);
}

bytes network()
{
    return nit_section(descriptor(0x40, text_bytes("Network")),
                       nit_entry(1, 0x2222, descriptor(0x83, hex("0001 FC07 0002 FC08"))));
}

bytes time_and_date()
{
    return short_section(0x70, hex("C079124500"));
}

bytes master_guide()
{
    return long_section(0xC7, 0, hex("00 0002 0000 FD00 E0 00000100 F000 0100 FD00 E0 00000100 F000 F000"));
}

void write_texts()
{
    for (const char *text : {"41 E9 8A 42", "05 E9E8 8A 41", "10 0002 B1E6", "11 0041 E08A D83DDE00",
                             "12 B0A1E08AB0A2", "13 B0A1 8A", "14 00412026", "15 E282AC EE828A F0908080",
                             "1F 01 4142", "A4 C865 C9", "10 000C 41"}) {
        const bytes field = hex(text);
        write("dvb_strings", join({big_endian(field.size(), 1), field, field}));
    }
    for (const char *text :
         {"01 656E67 01 00 3F 04 0041D83D", "02 656E67 02 00 00 02 4142 00 04 01 1C 737061 00",
          "01 656E67 01 01 00 02 4142", "01 656E67 03 00 3E 05 129C0F0041 00 30 01 42 02 FF 01 41",
          "01 656E67 01 00 3E 0A 1841E40B2181 0E12340E"})
        write("atsc_strings", join({hex("0003"), hex(text)}));
}

void write_codecs()
{
    unsigned family = 0;
    for (const bytes &stream : {join({mpeg_2_sequence, mpeg_2_sequence}), h264_headers, hevc_headers,
                                audio_frames(), adts_frames(), ac3_frames()}) {
        const bytes shortened(stream.begin(),
                              stream.begin() + static_cast<long>(std::min<size_t>(stream.size(), 1000)));
        for (const char *cut : {"20", "80", "B7"}) {
            write("codec_headers", join({big_endian(family, 1), hex(cut), shortened}));
            const size_t size = std::min<size_t>(stream.size(), 170);
            const bytes part(stream.begin(), stream.begin() + static_cast<long>(size));
            write("codec_headers", join({big_endian(family, 1), hex(cut), hex("06"), big_endian(size, 1),
                                         part, hex("C2 00 06"), big_endian(size, 1), part}));
        }
        family += 1 + 0x18; // behind 768 other bytes more each time
    }
    write("codec_headers", join({hex("01 80"), hex("000001 6764001facd9405005bb016a02020280000003008000001907"
                                                   "8c18cb 000001")}));
    for (const bytes &set : {cropped_h264(31, 4), cropped_h264(0, 31)})
        write("codec_headers", join({hex("01 80"), set}));
}

/// Scripts of recordings: see scripted_recording.
void write_timed_inputs()
{
    const bytes clock = hex("02 00 00 00 00 09 14 00 0040 03 82 01 00 05 01 02 20 00 0300");
    bytes steady;
    for (int i = 0; i < 30; ++i) steady = join({steady, hex("02 00 00 00 00 1D 04 01 8000 14 00 6000 10")});
    for (const char *shape : {"00 00", "01 00", "02 80", "05 18", "FC 28", "04 38", "81 98", "00 08"}) {
        write("timed_input", join({hex(shape), clock, clock, clock}));
        write("timed_input", join({hex(shape), steady, hex("72 00 05"), steady}));
        write("timed_input",
              join({hex(shape), clock, hex("0A 1000 46 0B 40 00 01 00 FF"), clock, hex("07 01"), clock}));
        write("timed_input",
              join({hex(shape), clock, hex("09 05 17"), clock, hex("16 26 5D 6D 0E 80"), clock}));
        write("timed_input",
              join({hex(shape), clock, clock, hex("0F 05 0100 02 02 00 00 05 10 02 02 00"), clock}));
    }
}

void write_tables()
{
    const bytes dvb =
        join({record_of(0, 0x41, pat), record_of(10, 0x02, first_map()), record_of(11, 0x02, second_map()),
              record_of(2, 0x05, network()), record_of(3, 0x03, services()), record_of(4, 0x02, events(0)),
              record_of(4, 0x02, events(1)), record_of(6, 0x02, time_and_date()),
              record_of(12, 0x02, cue_section())});
    const bytes atsc =
        join({record_of(0, 0x41, pat), record_of(10, 0x02, first_map()), record_of(9, 0x02, master_guide()),
              record_of(9, 0x02, vct_section({virtual_channel("WXYZ", 12, 3, 1)})),
              record_of(9, 0x02, stt_section(1000000000, 13)),
              record_of(13, 0x02,
                        atsc_eit_section(1, {atsc_eit_entry(5, 1000000100, 3600, multiple_string("News"))})),
              record_of(14, 0x02, ett_section(0x10016, multiple_string("Text")))});
    for (const bytes &tables : {dvb, atsc}) {
        for (const char *modes : {"00 00", "01 79", "0A 7B", "08 18", "06 10", "03 00"}) {
            write("checked_tables", join({hex(modes), tables}));
            write("checked_tables",
                  join({hex(modes), tables, hex("70 94 00 7A 3F C0"), tables, hex("70 9F 22"), tables}));
        }
    }
}

/// Calls of the teletext entry.
void write_teletext()
{
    const bytes header_call = join({hex("00 0100 0000 10 0A"), text_bytes("Header row")});
    const bytes row_call = join({hex("02 0101 0A"), text_bytes("A row #[{}")});
    const bytes other_header = join({hex("11 0203 3F7F F7 04"), text_bytes("more")});
    for (const char *size : {"B7", "00", "2B"}) {
        write("teletext_pages",
              join({hex(size), header_call, row_call, other_header, hex("06"), header_call, row_call}));
        write("teletext_pages",
              join({hex(size), header_call, hex("05 04 03 2C E7E4 16 37 02 4142 0F 00"), other_header}));
    }
}

/// Every kind of thing that the overview tells of, in few packets.
bytes small_recording()
{
    stream_builder stream;
    uint64_t ticks = 27000000;
    for (int round = 0; round < 2; ++round) {
        stream.pcr(0x101, ticks);
        stream.section(0, pat).section(0x100, first_map()).section(0x200, second_map());
        stream.section(0x10, network()).section(0x11, services());
        stream.sections(0x12, {events(0), events(1)});
        stream.section(0x14, time_and_date()).section(0x103, cue_section());
        stream.unit(0x101, pes_packet(0xE0, mpeg_2_sequence, 180000, 176400));
        stream.unit(0x102, pes_packet(0xE1, h264_headers, 183600));
        stream.unit(0x107, pes_packet(0xE2, hevc_headers, 183600));
        stream.unit(0x104, pes_packet(0xC0, repeated(0x55, 100), 180000));
        stream.unit(0x105, teletext_pes_of({header(0x100), row(1, 1, "Hello"), header(0x101)}));
        stream.payload(0x345, hex("00")).padding(2);
        ticks += 1350000;
    }
    return stream.pcr(0x101, ticks).data();
}

bytes small_atsc_recording()
{
    stream_builder stream;
    stream.pcr(0x101, 0).section(0, pat).section(0x100, first_map());
    stream.sections(0x1FFB, {master_guide(), vct_section({virtual_channel("WXYZ", 12, 3, 1)}),
                             stt_section(1000000000, 13)});
    stream.section(0x1D00,
                   atsc_eit_section(1, {atsc_eit_entry(5, 1000000100, 3600, multiple_string("<b>"))}));
    return stream.pcr(0x101, 2700000).padding(3).pcr(0x101, 5400000).data();
}

void write_recordings()
{
    for (const char *options : {"00 00 00 00", "08 0B FE 0C", "05 00 41 0C", "00 C0 00 0C"})
        for (const bytes &recording : {small_recording(), small_atsc_recording()})
            write("overview_outputs", join({hex(options), recording}));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) return 1;
    folder = argv[1];
    write_texts();
    write_codecs();
    write_timed_inputs();
    write_tables();
    write_teletext();
    write_recordings();
    return 0;
}
