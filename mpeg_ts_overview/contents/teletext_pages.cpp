#include "mpeg_ts_overview/contents/teletext_pages.h"

#include "mpeg_ts_overview/contents/teletext_hamming.h"

#include <utility>

namespace {

constexpr uint8_t framing_code = 0x27;
constexpr unsigned address_offset = 2; ///< of magazine and packet number in a data unit
constexpr unsigned block_offset = 4;   ///< of the data block
constexpr unsigned header_text_offset = 8;
constexpr unsigned last_row = teletext_row_count - 1;

/// What each of the 256 bytes stands for, as it is sent.
struct byte_tables {
    static constexpr uint8_t wrong = 0xFF;
    std::array<uint8_t, 256> hamming_values; ///< or wrong
    std::array<uint8_t, 256> characters;     ///< or teletext_wrong_parity

    constexpr byte_tables() : hamming_values(), characters()
    {
        for (unsigned sent = 0; sent < 256; ++sent) {
            const uint8_t byte = teletext_byte(static_cast<uint8_t>(sent));
            hamming_values[sent] = static_cast<uint8_t>(hamming_8_4_value(byte).value_or(wrong));
            characters[sent] = parity_is_odd(byte) ? byte & 0x7F : teletext_wrong_parity;
        }
    }
};
constexpr byte_tables tables;

/// The values of count bytes as they are sent, 4 bits each, the first lowest; nothing when one cannot be put
/// right.
std::optional<uint32_t> hamming_values(const uint8_t *p, unsigned count)
{
    uint32_t values = 0;
    for (unsigned i = 0; i < count; ++i) {
        const uint8_t value = tables.hamming_values[p[i]];
        if (value == byte_tables::wrong) return std::nullopt;
        values |= uint32_t{value} << (4 * i);
    }
    return values;
}

/// Fills a row from a column on with what is sent at p; the columns before are blanks.
void take_characters(teletext_row &row, unsigned column, const uint8_t *p)
{
    std::fill(row.begin(), row.begin() + column, uint8_t{' '});
    for (; column < teletext_column_count; ++column, ++p) row[column] = tables.characters[*p];
}

bool is_page_number(unsigned two_digits)
{
    return (two_digits & 0xF) <= 9 && two_digits >> 4 <= 9;
}

} // namespace

void teletext_pages::on_packet(const ts_packet &packet, const packet_sequence &sequence)
{
    if (sequence.duplicate) return;
    service *const found = service_of(packet.pid);
    if (found == nullptr) return;
    service &to = *found;
    const bool unreadable = packet.transport_error_indicator || packet.transport_scrambling_control != 0;

    if (sequence.broken || unreadable) drop(to);
    if (unreadable || packet.payload == packet.fence) return;
    to.units.on_payload(packet.payload, packet.fence, packet.payload_unit_start_indicator);
    while (const uint8_t *const unit = to.units.next_unit()) take_unit(to, unit, packet.at);
}

void teletext_pages::on_sync_loss()
{
    for (const std::unique_ptr<service> &lost : services) drop(*lost);
}

void teletext_pages::on_other_contents(uint16_t pid)
{
    const uint16_t number = service_number[pid];
    if (number != 0 && number != no_service) drop(*services[number - 1u]);
}

/// What is received on the PID; null when there is no room for it.
teletext_pages::service *teletext_pages::service_of(uint16_t pid)
{
    uint16_t &number = service_number[pid];
    if (number == no_service) return nullptr;
    if (number == 0 && services.size() == teletext_pid_limit) {
        number = no_service;
        ++dropped_pids;
        return nullptr;
    }
    if (number == 0) {
        services.push_back(std::make_unique<service>());
        services.back()->pid = pid;
        number = static_cast<uint16_t>(services.size());
    }
    return services[number - 1u].get();
}

void teletext_pages::drop(service &from)
{
    from.units.drop();
    for (reception &received : from.magazines) received.in_hand = false;
}

/// EN 300 472 4.3 and EN 300 706 7.1: the packet of a page.
void teletext_pages::take_unit(service &to, const uint8_t *unit, const moment &at)
{
    if (teletext_byte(unit[1]) != framing_code) return;
    const std::optional<uint32_t> address = hamming_values(unit + address_offset, 2);
    if (!address) return;
    const unsigned magazine = *address & 7;
    const unsigned packet_number = *address >> 3;
    const uint8_t *const block = unit + block_offset;

    if (packet_number == 0) {
        take_header(to, magazine, block, at);
        return;
    }
    reception &received = to.magazines[magazine];
    if (!received.in_hand || packet_number > last_row) return;
    take_characters(received.rows[packet_number], 0, block);
    received.received |= 1u << packet_number;
}

/// EN 300 706 9.3.1: ends what it must and begins the next reception.
void teletext_pages::take_header(service &to, unsigned magazine, const uint8_t *block, const moment &at)
{
    const std::optional<uint32_t> fields = hamming_values(block, header_text_offset);
    const bool serial = fields && (*fields >> 28 & 1) != 0; // C11

    for (unsigned other = 0; other < magazine_count; ++other) {
        reception &received = to.magazines[other];
        if (received.in_hand && (other == magazine || serial || received.serial)) complete(to.pid, received);
    }
    if (!fields) return;
    const unsigned two_digits = *fields & 0xFF; // units, tens
    if (!is_page_number(two_digits)) return;

    reception &next = to.magazines[magazine];
    next.in_hand = true;
    next.serial = serial;
    next.page = (magazine == 0 ? 8u : magazine) << 8 | two_digits;
    next.subcode = *fields >> 8 & 0x3F7F;  // S1 to S4, C4 and C5, C6 between and behind
    next.erase = (*fields >> 15 & 1) != 0; // C4
    next.national_option = (*fields >> 29 & 1) << 2 | (*fields >> 30 & 1) << 1 | *fields >> 31; // C12 to C14
    next.at = at;
    next.received = 1;
    take_characters(next.rows[0], header_text_offset, block + header_text_offset);
}

void teletext_pages::complete(uint16_t pid, reception &received)
{
    received.in_hand = false;
    known_page *const known = page_of(pid, received);
    if (known == nullptr) {
        ++not_kept;
        return;
    }
    ++known->facts.count;
    known->facts.last_ticks = received.at.ticks;
    known->facts.national_option = received.national_option;
    for (unsigned row = 0; row < teletext_row_count; ++row) {
        if ((received.received >> row & 1) != 0)
            known->rows[row] = received.rows[row];
        else if (received.erase)
            known->rows[row].fill(' ');
    }
}

/// The page, a blank one where it is new; null when there is no room for another.
teletext_pages::known_page *teletext_pages::page_of(uint16_t pid, const reception &received)
{
    const uint64_t key = uint64_t{pid} << 32 | uint64_t{received.page} << 16 | received.subcode;
    const auto found = pages.find(key);
    if (found != pages.end()) return found->second.get();
    if (pages.size() >= teletext_page_limit) return nullptr;

    known_page *const added = pages.emplace(key, std::make_unique<known_page>()).first->second.get();
    added->facts.pid = pid;
    added->facts.page = received.page;
    added->facts.subcode = received.subcode;
    added->facts.first_ticks = received.at.ticks;
    for (teletext_row &row : added->rows) row.fill(' ');
    return added;
}

teletext_facts teletext_pages::finish() const
{
    teletext_facts facts;

    facts.not_kept = not_kept;
    for (const auto &[key, known] : pages) {
        teletext_page &page = facts.pages.emplace_back(known->facts);
        for (unsigned row = 0; row < teletext_row_count; ++row)
            page.rows[row] = teletext_row_text(known->rows[row], page.national_option);
    }
    return facts;
}
