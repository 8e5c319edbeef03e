#include "mpeg_ts_overview/transcript/transcript.h"

#include "text/utf8_valid.h"

#include <fmt/format.h>
#include <functional>
#include <utility>

namespace {

constexpr uint16_t pat_pid = 0x0000;
constexpr uint8_t program_association_section = 0x00;
constexpr uint8_t first_event_information = 0x4E;
constexpr uint8_t last_event_information = 0x6F;
constexpr uint8_t time_and_date = 0x70;
constexpr uint8_t time_offset = 0x73;
constexpr uint8_t atsc_event_information = 0xCB;
constexpr uint8_t atsc_system_time = 0xCD;

// The first two texts: that of sections of which nothing is printed, and that of all that are not kept.
constexpr uint32_t no_text = 0;
constexpr uint32_t dropped_text = 1;
constexpr uint32_t first_text = 2;

/// Texts that are not kept but whose faults are counted again when they are repeated.
constexpr size_t faulty_text_limit = 65536;

bool is_event_information(uint8_t table_id)
{
    return (table_id >= first_event_information && table_id <= last_event_information) ||
           table_id == atsc_event_information;
}

/// Tables that give the time.
bool changes_each_time(uint8_t table_id)
{
    return table_id == time_and_date || table_id == time_offset || table_id == atsc_system_time;
}

bool is_of_several(const table_section &section)
{
    return section.header.last_section_number > 0;
}

bool is_program_association(const table_section &section)
{
    return section.pid == pat_pid && section.header.table_id == program_association_section;
}

/// Of the text and where it comes from.
uint64_t hash_of(std::string_view text, const table_section &section)
{
    constexpr uint64_t spread = 0x9E3779B97F4A7C15;
    const uint64_t source = uint64_t{section.pid} << 8 | section.header.table_id;
    return std::hash<std::string_view>()(text) ^ source * spread;
}

} // namespace

transcript::transcript(const transcript_settings &from_command_line)
    : words(from_command_line), texts(first_text)
{
}

void transcript::on_section(const table_section &section)
{
    if (ended) return;
    const section_record *const last = last_receptions.find(section);

    if (last == nullptr || last->fingerprint != fingerprint_of(section)) {
        take_new(section);
        return;
    }
    count(last->text, section);
    // Each section of a PAT makes the analyser follow the programs in it, and no others.
    if (is_program_association(section) && is_of_several(section)) print(section);
}

/// A section that differs from the last reception of its table and number.
void transcript::take_new(const table_section &section)
{
    if (!words.follows(section.pid)) return;
    const bool known = last_receptions.find(section) != nullptr;
    section_record *const record = last_receptions.find_or_add(section);
    if (record == nullptr) {
        ++facts.sections_not_kept;
        return;
    }
    std::string text = print(section);
    record->fingerprint = fingerprint_of(section);
    if (changes_each_time(section.header.table_id) && record->text != no_text && known)
        record->text = with_faults_of(text, section, record->text);
    else
        record->text = number_of(std::move(text), section);
    count(record->text, section);
}

/// What the analyser prints for the section, as UTF-8. The transcript ends when it stops at it.
std::string transcript::print(const table_section &section)
{
    const analyser::answer given = words.show(section);

    if (given.stops) {
        ended = true;
        facts.note =
            fmt::format("ends at packet {}, where the analyser stops: PID 0x{:04x}, table_id 0x{:02x}",
                        section.at.packet, section.pid, section.header.table_id);
    }
    return utf8_valid(given.text);
}

uint32_t transcript::number_of(std::string text, const table_section &section)
{
    if (text.empty()) return no_text;

    const uint64_t hash = hash_of(text, section);
    const auto known = with_hash.find(hash);
    return known != with_hash.end() ? known->second : add_text(std::move(text), section, hash);
}

/// The first text of a table that gives the time stands for all of them, but each has faults of its own.
uint32_t transcript::with_faults_of(std::string_view text, const table_section &section, uint32_t number)
{
    fault_tally named = faults.in_text(text, section);
    if (named == texts[number].faults) return number;
    if (!texts[number].of_one_table) {
        texts.push_back({texts[number].entry, {}, true});
        number = static_cast<uint32_t>(texts.size() - 1);
    }
    texts[number].faults = std::move(named);
    return number;
}

/// Gives a new text its number, and room where there is some.
uint32_t transcript::add_text(std::string text, const table_section &section, uint64_t hash)
{
    fault_tally named = faults.in_text(text, section);
    const bool kept = has_room_for(text, section);

    if (!kept && named.empty()) return dropped_text;
    if (!kept && faulty_texts_not_kept >= faulty_text_limit) {
        faults.count(named, section);
        return dropped_text;
    }
    const auto number = static_cast<uint32_t>(texts.size());
    texts.push_back({kept ? facts.entries.size() : no_entry, std::move(named), false});
    with_hash.emplace(hash, number);
    if (kept)
        keep(std::move(text), section);
    else
        ++faulty_texts_not_kept;
    return number;
}

bool transcript::has_room_for(std::string_view text, const table_section &section) const
{
    if (text_size + text.size() > transcript_text_limit) return false;
    return !is_event_information(section.header.table_id) ||
           event_text_size + text.size() <= transcript_event_text_limit;
}

void transcript::keep(std::string text, const table_section &section)
{
    text_size += text.size();
    if (is_event_information(section.header.table_id)) event_text_size += text.size();

    transcript_entry &entry = facts.entries.emplace_back();
    entry.pid = section.pid;
    entry.table_id = section.header.table_id;
    entry.heading = text.substr(0, text.find('\n'));
    entry.lines = std::move(text);
    entry.first = section.at;
}

/// Counts a reception of a section with that text.
void transcript::count(uint32_t text, const table_section &section)
{
    if (text == no_text) return;
    const printed_text &printed = texts[text];

    faults.count(printed.faults, section);
    if (printed.entry == no_entry) {
        ++facts.sections_not_kept;
        return;
    }
    transcript_entry &entry = facts.entries[printed.entry];
    ++entry.count;
    entry.last = section.at;
}

transcript_facts transcript::finish()
{
    facts.faults = faults.take_groups();
    facts.faults_not_kept = faults.not_kept();
    return std::move(facts);
}
