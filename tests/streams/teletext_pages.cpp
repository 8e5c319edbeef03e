#include "tests/streams/recipes.h"

namespace {

constexpr unsigned teletext_pid = 0x0104;
constexpr unsigned row_characters = 40;

/// Turns a byte into transmission order.
uint8_t reversed(unsigned byte)
{
    unsigned out = 0;
    for (unsigned bit = 0; bit < 8; ++bit) out |= ((byte >> bit) & 1u) << (7 - bit);
    return static_cast<uint8_t>(out);
}

/// A nibble with the four protection bits that make every Hamming test pass.
uint8_t hamming_8_4(unsigned nibble)
{
    constexpr uint8_t codes[] = {0x15, 0x02, 0x49, 0x5E, 0x64, 0x73, 0x38, 0x2F,
                                 0xD0, 0xC7, 0x8C, 0x9B, 0xA1, 0xB6, 0xFD, 0xEA};
    return codes[nibble];
}

uint8_t with_odd_parity(unsigned character)
{
    unsigned ones = 0;
    for (unsigned bit = 0; bit < 7; ++bit) ones += (character >> bit) & 1u;
    return static_cast<uint8_t>(ones % 2 == 0 ? character | 0x80u : character);
}

/// A data unit of one row, 46 bytes with its head.
bytes row_unit(unsigned magazine, unsigned row, const bytes &characters)
{
    const unsigned address = magazine | row << 3;
    bytes unit = join({
        hex("02 2C E7 E4"),
        bytes{reversed(hamming_8_4(address & 0xF)), reversed(hamming_8_4(address >> 4))}
    });
    for (unsigned i = 0; i < row_characters; ++i)
        unit.push_back(reversed(with_odd_parity(i < characters.size() ? characters[i] : ' ')));
    return unit;
}

bytes stuffing_unit()
{
    return join({hex("FF 2C"), repeated(0xFF, 44)});
}

/// A PES packet with the 45-byte header that teletext has, which fills one or more transport packets.
bytes teletext_pes(unsigned data_identifier, const bytes &units)
{
    const size_t length = 3 + 0x24 + 1 + units.size();
    return join({hex("000001BD"), big_endian(length, 2), hex("84 80 24 21 00 05 BF 21"), repeated(0xFF, 31),
                 big_endian(data_identifier, 1), units});
}

} // namespace

stream_builder teletext_pages()
{
    stream_builder stream;
    const bytes descriptor_of_pages = descriptor(0x56, join({text_bytes("eng"), hex("09 00")}));
    const bytes headline = join({hex("06 0D"), text_bytes("SAMPLE PAGE 100"), hex("07 0C 0B 0B"),
                                 text_bytes("boxed"), hex("0A 0A 11"), text_bytes("end")});

    stream.section(0x0000, pat_section(0x0001, {
                                                   {1, 0x0100}
    }));
    stream.section(0x0100, pmt_section(1, 0x1FFF,
                                       {
    },
                                       {{0x06, teletext_pid, descriptor_of_pages}}));
    stream.unit(teletext_pid, teletext_pes(0x10, join({row_unit(1, 0, text_bytes("        P100 SAMPLETEXT")),
                                                       stuffing_unit(), row_unit(1, 1, headline)})));
    bytes faulty = row_unit(2, 25, text_bytes("a fault in the address and in a character"));
    faulty[4] ^= 0x10;
    faulty[8] ^= 0x01;
    bytes unframed = row_unit(3, 5, text_bytes("wrong framing code"));
    unframed[3] = 0x27;
    stream.unit(teletext_pid,
                teletext_pes(0x10, join({faulty, unframed, row_unit(4, 30, text_bytes("service data"))})));
    stream.unit(teletext_pid, teletext_pes(0x99, stuffing_unit()));
    stream.unit(teletext_pid, teletext_pes(0x10, repeated(0xFF, 46 * 7)));
    return stream;
}
