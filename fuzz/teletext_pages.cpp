// Teletext on one PID: data units that make pages, units as they are, damage; in packets of any size the
// same.
#include "fuzz/support.h"
#include "fuzz/text_promises.h"

#include "mpeg_ts_overview/contents/teletext_hamming.h"
#include "mpeg_ts_overview/contents/teletext_pages.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

namespace {

using byte_list = std::vector<uint8_t>;

constexpr size_t unit_size = 44;

uint8_t sent(unsigned value)
{
    return teletext_byte(hamming_8_4_code(value & 0xF));
}

/// A data unit whose framing code and address are right.
byte_list unit_of(unsigned magazine, unsigned number)
{
    const unsigned address = (magazine & 7) | number << 3;
    return {0x02, unit_size, 0xE7, 0xE4, sent(address), sent(address >> 4)};
}

void add_text(byte_list &unit, fuzz_input &in)
{
    fuzz_input text = in.part(in.byte() % 41);
    while (unit.size() < unit_size + 2) {
        const auto character = static_cast<uint8_t>(text.byte() & 0x7F);
        const bool odd = parity_is_odd(character);
        unit.push_back(teletext_byte(odd ? character : static_cast<uint8_t>(character | 0x80)));
    }
}

byte_list header_unit(fuzz_input &in)
{
    const unsigned page = in.word();
    const unsigned subcode = in.word();
    const unsigned controls = in.byte();
    byte_list unit = unit_of(page >> 8, 0);
    for (const unsigned value :
         {page, page >> 4, subcode, subcode >> 4, subcode >> 8, subcode >> 12, controls, controls >> 4})
        unit.push_back(sent(value));
    add_text(unit, in);
    return unit;
}

byte_list row_unit(fuzz_input &in)
{
    const unsigned address = in.word();
    byte_list unit = unit_of(address >> 8, address % 26);
    add_text(unit, in);
    return unit;
}

byte_list other_unit(fuzz_input &in)
{
    const fuzz_input part = in.part(in.byte());
    byte_list unit(part.p, part.fence);
    // A size of 44 more often than by chance, with an id of any kind.
    if (unit.size() > 1 && (unit[1] & 3) != 0) {
        unit[1] = unit_size;
        unit.resize(unit_size + 2);
    }
    return unit;
}

/// Packets to one collection of pages, all at the same time.
struct page_reader {
    teletext_pages pages;
    uint64_t completed = 0;
    int64_t ticks = 0;

    void take(const byte_list &payload, bool unit_start, const packet_sequence &sequence = {},
              bool error = false)
    {
        ts_packet packet;
        packet.pid = 0x200;
        packet.payload = payload.data();
        packet.fence = payload.data() + payload.size();
        packet.payload_unit_start_indicator = unit_start;
        packet.transport_error_indicator = error;
        packet.at.ticks = ticks;
        pages.on_packet(packet, sequence);
    }

    void take_pes(const byte_list &field, size_t payload_size)
    {
        const size_t length = 3 + field.size();
        byte_list pes = {0,    0, 1, 0xBD, static_cast<uint8_t>(length >> 8), static_cast<uint8_t>(length),
                         0x84, 0, 0};
        pes.insert(pes.end(), field.begin(), field.end());
        for (size_t at = 0; at < pes.size(); at += payload_size) {
            const auto from = pes.begin() + static_cast<ptrdiff_t>(at);
            const auto to = pes.begin() + static_cast<ptrdiff_t>(std::min(at + payload_size, pes.size()));
            take(byte_list(from, to), at == 0);
        }
    }
};

/// Something happens that is no PES packet of data units.
void take_event(page_reader &reader, unsigned call, const byte_list &payload)
{
    packet_sequence sequence;
    sequence.duplicate = (call & 3) == 1;
    sequence.broken = (call & 3) == 2;
    if ((call & 3) == 3)
        reader.pages.on_sync_loss();
    else
        reader.take(payload, (call & 4) != 0, sequence, (call & 8) != 0);
}

teletext_facts read_all(fuzz_input in, size_t payload_size)
{
    page_reader reader;
    byte_list field = {0x10};
    while (in.left() > 0) {
        const unsigned call = in.byte();
        reader.ticks += (call >> 4) * 1000;
        byte_list unit;
        switch (call & 7) {
        case 0:
        case 1:
            unit = header_unit(in);
            break;
        case 2:
        case 3:
        case 4:
            unit = row_unit(in);
            break;
        case 5:
            unit = other_unit(in);
            break;
        case 6:
            reader.take_pes(field, payload_size);
            field = {static_cast<uint8_t>(0x10 | call >> 3)};
            break;
        default: {
            const fuzz_input part = in.part(in.byte() % 185);
            take_event(reader, call >> 3, byte_list(part.p, part.fence));
            break;
        }
        }
        if (field.size() < 60000) field.insert(field.end(), unit.begin(), unit.end());
    }
    reader.take_pes(field, payload_size);
    return reader.pages.finish();
}

size_t characters_of(const std::string &text)
{
    return static_cast<size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

void check_page(const teletext_page &page)
{
    const unsigned magazine = page.page >> 8;
    fuzz_promise(magazine >= 1 && magazine <= 8 && (page.page & 0xF) <= 9 && (page.page >> 4 & 0xF) <= 9);
    fuzz_promise((page.subcode & ~0x3F7Fu) == 0 && page.national_option <= 7 && page.count > 0);
    fuzz_promise(page.first_ticks && page.last_ticks && *page.first_ticks <= *page.last_ticks);
    for (const std::string &row : page.rows) {
        promise_no_controls(row);
        fuzz_promise(characters_of(row) == teletext_column_count && row.find('\n') == std::string::npos);
    }
    fuzz_promise(page.rows[0].substr(0, 8) == "        ");
}

auto key_of(const teletext_page &page)
{
    return std::tie(page.pid, page.page, page.subcode);
}

void check_same(const teletext_page &a, const teletext_page &b)
{
    fuzz_promise(key_of(a) == key_of(b) && a.count == b.count && a.rows == b.rows);
    fuzz_promise(a.first_ticks == b.first_ticks && a.last_ticks == b.last_ticks);
    fuzz_promise(a.national_option == b.national_option);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    const size_t payload_size = 1 + in.byte() % 184;
    const teletext_facts facts = read_all(in, 184);
    const teletext_facts in_pieces = read_all(in, payload_size);

    fuzz_promise(facts.pages.size() <= teletext_page_limit && facts.pages.size() == in_pieces.pages.size());
    fuzz_promise(facts.not_kept == in_pieces.not_kept);
    fuzz_promise(facts.not_kept == 0 || facts.pages.size() == teletext_page_limit);
    for (size_t i = 0; i < facts.pages.size(); ++i) {
        check_page(facts.pages[i]);
        check_same(facts.pages[i], in_pieces.pages[i]);
        fuzz_promise(i == 0 || key_of(facts.pages[i - 1]) < key_of(facts.pages[i]));
    }
    return 0;
}
