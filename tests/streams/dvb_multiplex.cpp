#include "tests/streams/recipes.h"

namespace {

constexpr unsigned video_pid = 0x0101;

bytes counted(const char *text)
{
    const bytes characters = text_bytes(text);
    return join({big_endian(characters.size(), 1), characters});
}

/// service_id, EIT flags byte, running_status and free_CA_mode with the length, descriptors.
bytes sdt_entry(unsigned service_id, unsigned eit_flags, unsigned status, const bytes &descriptors)
{
    return join({big_endian(service_id, 2), big_endian(0xFCu | eit_flags, 1),
                 big_endian(status << 12 | descriptors.size(), 2), descriptors});
}

bytes event(unsigned event_id, const char *start_and_duration, unsigned status, const bytes &descriptors)
{
    return join({big_endian(event_id, 2), hex(start_and_duration),
                 big_endian(status << 12 | descriptors.size(), 2), descriptors});
}

bytes nit()
{
    const bytes network =
        join({descriptor(0x40, text_bytes("Sample Network")), descriptor(0x4A, hex("0001 233A 0001 01"))});
    const bytes satellite = join(
        {descriptor(0x43, hex("01172750 0192 A1 02750003")), descriptor(0x41, hex("0001 01 0002 02 0003 19")),
         descriptor(0x5F, hex("00003200")), descriptor(0x83, hex("0001 FC01 0002 7C02"))});
    const bytes terrestrial = descriptor(0x5A, hex("02D3F3C0 1F 92 06 FFFFFFFF"));
    const auto transport_stream = [](unsigned id, const bytes &descriptors) {
        return join(
            {big_endian(id, 2), hex("233A"), big_endian(0xF000u | descriptors.size(), 2), descriptors});
    };
    const bytes loop = join({transport_stream(0x0001, satellite), transport_stream(0x0002, terrestrial)});
    return long_section(
        0x40, 0x3201,
        join({big_endian(0xF000u | network.size(), 2), network, big_endian(0xF000u | loop.size(), 2), loop}),
        {.version_number = 3});
}

bytes sdt()
{
    const auto named = [](unsigned type, const char *provider, const char *name) {
        return descriptor(0x48, join({big_endian(type, 1), counted(provider), counted(name)}));
    };
    return long_section(
        0x42, 0x0001,
        join({hex("233A FF"),
              sdt_entry(1, 3, 0x8,
                        join({named(0x01, "Provider", "Sample One"),
                              descriptor(0x73, text_bytes("provider.example"))})),
              sdt_entry(2, 1, 0x9,
                        join({named(0x19, "Provider", "Sample Two HD"), descriptor(0x53, hex("0B00 0500"))})),
              sdt_entry(3, 0, 0x0, named(0x02, "", "Radio"))}),
        {.version_number = 5});
}

bytes present_event()
{
    return event(
        0x1001, "C079123456 013000", 0x8,
        join(
            {descriptor(0x4D,
                        join({text_bytes("eng"), counted("Evening News"), counted("The day in short.")})),
             descriptor(0x4E, join({hex("00"), text_bytes("eng"), hex("00"), counted("The day at length.")})),
             descriptor(0x50, join({hex("F1 03 01"), text_bytes("eng")})),
             descriptor(0x50, join({hex("F2 03 02"), text_bytes("eng")})),
             descriptor(0x54, hex("20 00 4F 01")), descriptor(0x55, join({text_bytes("GBR"), hex("0C")})),
             descriptor(0x76, join({hex("04"), counted("/EN1"), hex("09 1234")}))}));
}

bytes eit(unsigned table_id, unsigned section_number, const bytes &events)
{
    return long_section(table_id, 0x0001, join({hex("0001 233A 01"), big_endian(table_id, 1), events}),
                        {.version_number = 7, .section_number = section_number, .last_section_number = 1});
}

bytes extended_items()
{
    const bytes items = join({counted("Director"), counted("A. Person"), counted("Year"), counted("1993")});
    return descriptor(
        0x4E, join({hex("00"), text_bytes("eng"), big_endian(items.size(), 1), items, counted("A film.")}));
}

bytes pmt_of_first_program()
{
    const bytes video = join({descriptor(0x02, hex("1B 44 5F")), descriptor(0x52, hex("01")),
                              descriptor(0x06, hex("02")), descriptor(0x10, hex("C00FA0 C00400"))});
    const bytes audio =
        join({descriptor(0x0A, join({text_bytes("eng"), hex("00"), text_bytes("fra"), hex("03")})),
              descriptor(0x03, hex("67")), descriptor(0x52, hex("02"))});
    const bytes ac3 =
        join({descriptor(0x6A, hex("80 42")), descriptor(0x0A, join({text_bytes("eng"), hex("00")}))});
    const bytes teletext =
        descriptor(0x56, join({text_bytes("eng"), hex("09 00"), text_bytes("eng"), hex("2A 88")}));
    const bytes carousel = join({descriptor(0x13, hex("0000003D 01")), descriptor(0x66, hex("00F0 01 02"))});
    return pmt_section(1, video_pid,
                       join({
                           descriptor(0x09, hex("0B00 E500")), descriptor(0x0E, hex("C030D4"))
    }),
                       {{0x02, video_pid, video},
                        {0x04, 0x0102, audio},
                        {0x06, 0x0103, ac3},
                        {0x06, 0x0104, teletext},
                        {0x0B, 0x0105, carousel}},
                       {.version_number = 2});
}

bytes pmt_of_second_program()
{
    const bytes video = join(
        {descriptor(0x28, hex("64 00 28 BF")), descriptor(0x2A, hex("81 FF 00000001 00000002 00000003 E0"))});
    return pmt_section(2, 0x0201,
                       {
    },
                       {{0x1B, 0x0201, video}, {0x0F, 0x0202, {}}});
}

} // namespace

stream_builder dvb_multiplex()
{
    stream_builder stream;
    const bytes pat = pat_section(0x0001,
                                  {
                                      {0, 0x0010},
                                      {1, 0x0100},
                                      {2, 0x0200}
    },
                                  {.version_number = 1});
    constexpr unsigned long long ticks_of_40_ms = 1080000;

    stream.section(0x0000, pat)
        .section(0x0100, pmt_of_first_program())
        .section(0x0200, pmt_of_second_program());
    stream.section(0x0010, nit()).section(0x0011, sdt());
    stream.section(0x0012, eit(0x4E, 0, present_event()));
    stream.section(0x0012, eit(0x4E, 1, event(0x1002, "C079140456 003000", 0x1, {})));
    stream.section(0x0012,
                   eit(0x50, 0,
                       join({event(0x1003, "C07A200000 020000", 0x0, extended_items()),
                             event(0x1004, "C07A220000 010000", 0x0, descriptor(0x54, hex("10 00")))})));
    stream.section(0x0012, eit(0x60, 0, present_event()));
    for (unsigned i = 0; i < 5; ++i) {
        stream.pcr(video_pid, 27000000 + i * ticks_of_40_ms).pcr(0x0201, 54000000 + i * ticks_of_40_ms);
        stream.unit(video_pid, pes_packet(0xE0, repeated(0x55, 300), 90000 + i * 3600, 86400 + i * 3600));
        stream.unit(0x0102, pes_packet(0xC0, repeated(0xAA, 100), 90000 + i * 2160));
        stream.padding(2);
    }
    stream.section(0x0000, pat).section(0x0100, pmt_of_first_program());
    return stream;
}
