#include "tests/streams/recipes.h"

#include "mpeg12_ts/crc32.h"

namespace {

constexpr unsigned splice_pid = 0x0103;

/// A splice_info_section: short syntax, a CRC_32 at its end. length 0xFFF leaves the command's length
/// unstated.
bytes splice_section(unsigned command_type, unsigned length, const bytes &command, const bytes &descriptors)
{
    const bytes body =
        join({hex("00 00 00000000 00"), big_endian(0xFFF000u | length, 3), big_endian(command_type, 1),
              command, big_endian(descriptors.size(), 2), descriptors});
    const bytes section = short_section(0xFC, join({body, repeated(0, 4)}));
    const bytes checked(section.begin(), section.end() - 4);
    return join({checked, big_endian(mpeg_ts_crc32(checked.data(), checked.data() + checked.size()), 4)});
}

bytes splice_section(unsigned command_type, const bytes &command, const bytes &descriptors = {})
{
    return splice_section(command_type, static_cast<unsigned>(command.size()), command, descriptors);
}

} // namespace

stream_builder splice_points()
{
    stream_builder stream;
    const bytes avail = descriptor(0x00, hex("43554549 00000135"));
    const bytes out_of_network = hex("4800008F 7F EF FE000DBBA0 FE00526700 0001 01 02");

    stream.section(0x0000, pat_section(0x0001, {
                                                   {1, 0x0100}
    }));
    stream.section(0x0100,
                   pmt_section(1, 0x0101, descriptor(0x05, text_bytes("CUEI")),
                               {
                                   {0x1B,        0x0101,          {}        },
                                   { 0x86, splice_pid, descriptor(0x8A, hex("00"))}
    }));
    for (unsigned i = 0; i < 3; ++i) stream.pcr(0x0101, 27000000 + i * 1080000ull);
    stream.section(splice_pid, splice_section(0x00, {}));
    stream.section(splice_pid, splice_section(0x05, out_of_network, avail));
    stream.section(splice_pid, splice_section(0x05, 0xFFF, out_of_network, avail));
    stream.section(splice_pid, splice_section(0x05, hex("48000090 7F 5F 0001 01 02")));
    stream.section(splice_pid, splice_section(0x05, hex("48000091 7F 8F 02 01 FE000DBBA0 02 7F 0001 00 00")));
    stream.section(splice_pid, splice_section(0x05, hex("48000092 FF")));
    stream.section(splice_pid, splice_section(0x05, 3, hex("48000093 FF"), avail));
    stream.section(splice_pid, splice_section(0x06, hex("FE000DBBA0"),
                                              join({avail, descriptor(0x02, hex("43554549 01"))})));
    return stream;
}
