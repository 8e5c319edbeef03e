// Teletext as a recipe: data units, and PES packets of them in transport packets.
#pragma once

#include "tests/support/hex.h"

#include "mpeg_ts_overview/contents/teletext_hamming.h"
#include "mpeg_ts_overview/contents/teletext_pages.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

/// A Hamming coded value as it is sent.
inline uint8_t sent_hamming(unsigned value)
{
    return teletext_byte(hamming_8_4_code(value & 0xF));
}

/// A character with odd parity as it is sent.
inline uint8_t sent_character(uint8_t character)
{
    const auto even = static_cast<uint8_t>(character & 0x7F);
    return teletext_byte(parity_is_odd(even) ? even : static_cast<uint8_t>(even | 0x80));
}

/// count characters: those of the text, then blanks.
inline bytes characters(std::string_view text, size_t count = 40)
{
    bytes sent;
    for (size_t i = 0; i < count; ++i)
        sent.push_back(sent_character(i < text.size() ? static_cast<uint8_t>(text[i]) : uint8_t{' '}));
    return sent;
}

/// The 44 bytes of a packet of a magazine, 0 to 7.
inline bytes teletext_packet(unsigned magazine, unsigned number, const bytes &block)
{
    const unsigned address = magazine | number << 3;
    return join({
        hex("E7 E4"), {sent_hamming(address), sent_hamming(address >> 4)},
         block
    });
}

inline bytes row(unsigned magazine, unsigned number, std::string_view text)
{
    return teletext_packet(magazine, number, characters(text));
}

/// C4, C11 and C12 to C14 of a header.
struct page_controls {
    bool erase = false;
    bool serial = false;
    unsigned national_option = 0;
};

/// A page header; page as dialled: 0x100 to 0x8FF.
inline bytes header(unsigned page, unsigned subcode = 0, page_controls controls = {},
                    std::string_view text = "header")
{
    const unsigned option = controls.national_option;
    const unsigned C11_to_C14 =
        (controls.serial ? 1u : 0u) | (option >> 2 & 1) << 1 | (option >> 1 & 1) << 2 | (option & 1) << 3;
    bytes block;
    for (const unsigned value : {page, page >> 4, subcode, (subcode >> 4 & 7) | (controls.erase ? 8u : 0u),
                                 subcode >> 8, subcode >> 12 & 3, 0u, C11_to_C14})
        block.push_back(sent_hamming(value));
    return teletext_packet(page >> 8 & 7, 0, join({block, characters(text, 32)}));
}

/// A teletext data unit, EN 300 472 4.3.
inline bytes data_unit_of(const bytes &packet, unsigned data_unit_id = 0x02)
{
    return join({
        {static_cast<uint8_t>(data_unit_id), static_cast<uint8_t>(packet.size())},
        packet
    });
}

/// The PES packet of a data field, with its prescribed header of 45 bytes.
inline bytes teletext_pes(const bytes &data_field)
{
    return join({hex("00 00 01 BD"), big_endian(39 + data_field.size(), 2), hex("84 80 24"),
                 repeated(0xFF, 36), data_field});
}

/// The PES packet of these packets of magazines.
inline bytes teletext_pes_of(std::initializer_list<bytes> packets)
{
    bytes field = hex("10");
    for (const bytes &packet : packets) field = join({field, data_unit_of(packet)});
    return teletext_pes(field);
}

/// Gives teletext to pages, a transport packet a second from second 0 on.
class teletext_sender {
public:
    explicit teletext_sender(teletext_pages &to, uint16_t on_pid = 0x0200) : pages(to), pid(on_pid) {}

    /// A PES packet, in transport packets of 184 bytes of payload.
    void send_pes(const bytes &pes)
    {
        for (size_t at = 0; at < pes.size(); at += 184)
            send_payload(bytes(pes.begin() + static_cast<long>(at),
                               pes.begin() + static_cast<long>(std::min(at + 184, pes.size()))),
                         at == 0);
    }

    /// Packets of magazines in a PES packet of their own.
    void send(std::initializer_list<bytes> packets) { send_pes(teletext_pes_of(packets)); }

    void send_payload(const bytes &payload, bool unit_start)
    {
        ts_packet packet = next;
        next = {};
        packet.pid = pid;
        packet.payload = payload.data();
        packet.fence = payload.data() + payload.size();
        packet.payload_unit_start_indicator = unit_start;
        packet.at.packet = count;
        packet.at.ticks = static_cast<int64_t>(count++) * ticks_per_second;
        pages.on_packet(packet, sequence);
        sequence = {};
    }

    ts_packet next;           ///< fields of the next packet that are not the sender's
    packet_sequence sequence; ///< of the next packet

    uint64_t packets_sent() const { return count; }

private:
    teletext_pages &pages;
    uint16_t pid;
    uint64_t count = 0;
};

/// 40 characters: the text, then blanks.
inline std::string text_row(std::string text)
{
    text.resize(40, ' ');
    return text;
}
