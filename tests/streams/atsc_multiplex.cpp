#include "tests/streams/recipes.h"

namespace {

constexpr unsigned base_pid = 0x1FFB;
constexpr unsigned eit_pid = 0x1D00;
constexpr unsigned ett_pid = 0x1E00;

/// A multiple string structure of one string with one segment.
bytes multiple_string(const char *language, unsigned mode, const bytes &characters)
{
    return join({hex("01"), text_bytes(language), hex("01 00"), big_endian(mode, 1),
                 big_endian(characters.size(), 1), characters});
}

bytes with_length(const bytes &text)
{
    return join({big_endian(text.size(), 1), text});
}

bytes mgt()
{
    const auto entry = [](unsigned table_type, unsigned pid, const bytes &descriptors) {
        return join({big_endian(table_type, 2), big_endian(0xE000u | pid, 2), hex("E1 00000200"),
                     big_endian(0xF000u | descriptors.size(), 2), descriptors});
    };
    return long_section(0xC7, 0x0000,
                        join({hex("00 0005"), entry(0x0000, base_pid, {}), entry(0x0100, eit_pid, {}),
                              entry(0x0200, ett_pid, descriptor(0xAA, hex("01 02"))),
                              entry(0x0300, 0x1E01, {}), entry(0x0301, base_pid, {}), hex("F000")}),
                        {.version_number = 1});
}

bytes tvct()
{
    const bytes descriptors = join({descriptor(0xA0, multiple_string("eng", 0, text_bytes("Sample Channel"))),
                                    descriptor(0xA1, join({hex("E101 02 02 E101"), text_bytes("eng"),
                                                           hex("81 E102"), text_bytes("spa")}))});
    const bytes short_name = hex("0053 0041 004D 0050 004C 00C9 0000");
    return long_section(0xC8, 0x0801,
                        join({hex("00 01"), short_name, hex("F01C0404 00000000 0801 0001 0DC2 0001"),
                              big_endian(0xFC00u | descriptors.size(), 2), descriptors, hex("FC00")}));
}

bytes stt()
{
    return long_section(0xCD, 0x0000, hex("00 3B9ACA00 12 60E0"));
}

bytes rrt()
{
    const bytes dimension = join({with_length(multiple_string("eng", 0, text_bytes("Sample Ratings"))),
                                  hex("F2"), with_length(multiple_string("eng", 0, text_bytes("G"))),
                                  with_length(multiple_string("eng", 0, text_bytes("General"))),
                                  with_length(multiple_string("eng", 0, text_bytes("M"))),
                                  with_length(multiple_string("eng", 0, text_bytes("Mature")))});
    return long_section(0xCA, 0xFF01,
                        join({hex("00"), with_length(multiple_string("eng", 0, text_bytes("Sample Region"))),
                              hex("01"), dimension, hex("FC00")}));
}

bytes eit()
{
    const bytes title = multiple_string("eng", 0, text_bytes("Matinee"));
    const bytes advisory = descriptor(
        0x87,
        join({hex("C1 01 02 00 F3 01 F1"), with_length(multiple_string("eng", 0, text_bytes("TV-PG")))}));
    const bytes captions = descriptor(0x86, join({hex("E1"), text_bytes("eng"), hex("C1 3F FF")}));
    const bytes descriptors = join({advisory, captions});
    return long_section(0xCB, 0x0001,
                        join({hex("00 02"), hex("C016 3B9ACA00 D00E10"), with_length(title),
                              big_endian(0xF000u | descriptors.size(), 2), descriptors,
                              hex("C017 3B9AD810 C00708 00 F000")}));
}

bytes ett()
{
    return long_section(0xCC, 0x0001, join({hex("00 00010059"), multiple_string("spa", 1, hex("41 42"))}));
}

bytes pmt()
{
    const bytes ac3 = join({descriptor(0x81, join({hex("08 24 0F FF 2F"), hex("07"), text_bytes("Hi!"),
                                                   hex("BF"), text_bytes("eng")})),
                            descriptor(0xA3, multiple_string("eng", 0, text_bytes("Main audio")))});
    const bytes cue = descriptor(0x8A, hex("01"));
    return pmt_section(
        1, 0x0101,
        join({
            descriptor(0x05, text_bytes("GA94")), descriptor(0x88, hex("0B00 01 02"))
    }),
        {{0x02, 0x0101, descriptor(0x06, hex("02"))}, {0x81, 0x0102, ac3}, {0x86, 0x0103, cue}});
}

} // namespace

stream_builder atsc_multiplex()
{
    stream_builder stream;

    stream.section(base_pid, mgt()).section(eit_pid, eit()).section(base_pid, stt());
    stream
        .section(0x0000, pat_section(0x0801,
                                     {
                                         {1, 0x0100}
    }))
        .section(0x0100, pmt());
    stream.section(base_pid, tvct()).section(base_pid, rrt());
    stream.section(eit_pid, eit()).section(ett_pid, ett());
    stream.section(base_pid, long_section(0xC9, 0x0801, hex("00 00")));
    for (unsigned i = 0; i < 4; ++i) stream.pcr(0x0101, i * 2700000ull);
    return stream;
}
