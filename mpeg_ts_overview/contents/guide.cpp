#include "mpeg_ts_overview/contents/guide.h"

#include "mpeg12_ts/crc32.h"
#include "mpeg_ts_overview/contents/atsc_text.h"
#include "mpeg_ts_overview/tables/atsc_eit.h"
#include "mpeg_ts_overview/tables/psip.h"
#include "mpeg_ts_overview/tables/stt.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

bool is_actual(uint8_t table_id)
{
    return table_id == eit_present_following_actual_table_id ||
           (table_id >= eit_first_schedule_actual_table_id && table_id < eit_first_schedule_other_table_id);
}

const char *source_of(const table_section &section)
{
    if (section.header.table_id != eit_present_following_actual_table_id) return "schedule";
    return section.header.section_number == 0 ? "present" : "following";
}

uint32_t key_of(uint16_t service, uint16_t event_id)
{
    return uint32_t{service} << 16 | event_id;
}

size_t size_of(const guide_event &event)
{
    return event.title.size() + event.text.size() + event.language.size();
}

/// The string in that language; else the first; empty when there is none.
atsc_string string_in(byte_range structure, const std::string &language)
{
    const std::vector<atsc_string> strings = atsc_strings(structure.start, structure.fence);
    const auto found = std::find_if(strings.begin(), strings.end(),
                                    [&](const atsc_string &one) { return one.language == language; });
    if (found != strings.end()) return *found;
    return strings.empty() ? atsc_string{} : strings.front();
}

} // namespace

size_t programme_guide::key_hash::operator()(uint32_t key) const
{
    constexpr uint32_t neighbours = 4;
    return spread_bits(key / neighbours) * neighbours + key % neighbours;
}

void programme_guide::on_section(const table_section &section)
{
    const uint8_t table_id = section.header.table_id;

    ++receptions;
    if (table_id >= eit_present_following_actual_table_id && table_id <= eit_last_table_id) on_eit(section);
    if (table_id == atsc_eit_table_id) on_atsc_eit(section);
    if (table_id == ett_table_id) on_ett(section);
    if (table_id == stt_table_id) on_stt(section);
}

void programme_guide::on_section_begun(const table_section &section) const
{
    constexpr size_t fixed_part = 6;
    if (!is_actual(section.header.table_id)) return;
    bit_reader in(section.body, section.body_fence);
    in.skip(fixed_part);
    const auto first_event_id = static_cast<uint16_t>(in.bits(16));
    place_of.fetch(key_of(section.header.table_id_extension, first_event_id));
}

void programme_guide::on_eit(const table_section &section)
{
    const std::optional<eit> information = read_eit(section);
    if (!information) return;
    eit_event_loop events(information->events);
    eit_event said;
    if (!is_actual(section.header.table_id)) {
        while (events.next(said)) ++facts.events_of_others;
        return;
    }
    const bool is_present = source_of(section) == std::string_view("present");
    while (events.next(said)) {
        const auto place = place_for(section, information->service_id, said.event_id);
        if (!place) continue;
        guide_event &event = facts.events[*place];
        origins[*place].gps_start.reset();
        event.start_utc_s = said.start_utc_s();
        event.duration_s = said.duration_s();
        event.source = source_of(section);
        take_descriptors(*place, said.descriptors);
        if (!is_present || event.was_present) continue;
        event.was_present = true;
        event.present_ticks = section.at.ticks;
    }
}

/// Gives the event the texts in its descriptors, unless it has them: what is on now stands in present and
/// following and in the schedule, mostly in the same words.
void programme_guide::take_descriptors(size_t place, byte_range descriptors)
{
    origin &from = origins[place];
    const uint64_t fingerprint =
        uint64_t{descriptors.size()} << 32 | mpeg_ts_crc32(descriptors.start, descriptors.fence);
    if (from.descriptors == fingerprint) return;
    const uint64_t not_kept = facts.text_bytes_not_kept;
    set_texts(facts.events[place], read_event_texts(descriptors, texts));
    from.descriptors.reset();
    if (facts.text_bytes_not_kept == not_kept) from.descriptors = fingerprint;
}

void programme_guide::on_atsc_eit(const table_section &section)
{
    for (const atsc_event &said : read_atsc_eit(section)) {
        const auto place = place_for(section, section.header.table_id_extension, said.event_id);
        if (!place) continue;
        guide_event &event = facts.events[*place];
        origins[*place].gps_start = said.start_time;
        origins[*place].descriptors.reset();
        event.duration_s = said.length_in_seconds;
        event.source = "atsc";
        const atsc_string title = string_in(said.title_text, "");
        // In another language the extended text is another string of the same section.
        if (title.language != event.language) origins[*place].ett_crc_32.reset();
        set_texts(event, {title.text, event.text, title.language});
    }
}

void programme_guide::on_ett(const table_section &section)
{
    const std::optional<ett> extended = read_ett(section);
    if (!extended || !extended->is_of_event()) return;
    const uint32_t *const place = place_of.find(key_of(extended->source_id(), extended->event_id()));
    if (place == nullptr) return;
    origin &from = origins[*place];
    if (from.ett_crc_32 == section.crc_32) return;
    from.ett_crc_32 = section.crc_32;
    from.descriptors.reset();
    guide_event &event = facts.events[*place];
    const atsc_string text = string_in(extended->extended_text_message, event.language);
    set_texts(event, {event.title, text.text, event.language});
}

void programme_guide::on_stt(const table_section &section)
{
    if (const std::optional<stt> time = read_stt(section)) GPS_UTC_offset = time->GPS_UTC_offset;
}

std::optional<size_t> programme_guide::place_for(const table_section &section, uint16_t service,
                                                 uint16_t event_id)
{
    const uint8_t table_id = section.header.table_id;
    const uint32_t key = key_of(service, event_id);
    if (const uint32_t *const known = place_of.find(key)) {
        origin &from = origins[*known];
        const bool is_repeated = from.table_id == table_id && from.crc_32 == section.crc_32;
        if (is_repeated && from.reception != receptions) return std::nullopt;
        from.reception = receptions;
        from.table_id = table_id;
        from.crc_32 = section.crc_32;
        return *known;
    }
    if (facts.events.size() == guide_event_limit) {
        ++facts.not_kept;
        return std::nullopt;
    }
    const size_t place = facts.events.size();
    place_of[key] = static_cast<uint32_t>(place);
    origins.push_back({receptions, table_id, section.crc_32, {}, {}, {}});
    guide_event &event = facts.events.emplace_back();
    event.service = service;
    event.event_id = event_id;
    return place;
}

/// Gives the event its texts: the title first where not all have room.
void programme_guide::set_texts(guide_event &event, event_texts said)
{
    text_bytes -= size_of(event);
    const auto take = [&](std::string &to, std::string &text) {
        if (text_bytes + text.size() > guide_text_limit) {
            facts.text_bytes_not_kept += text.size();
            text.clear();
        }
        text_bytes += text.size();
        to = std::move(text);
    };
    take(event.language, said.language);
    take(event.title, said.title);
    take(event.text, said.text);
}

guide_facts programme_guide::finish()
{
    for (size_t i = 0; i < facts.events.size(); ++i) {
        const std::optional<uint32_t> &gps_start = origins[i].gps_start;
        if (gps_start && GPS_UTC_offset)
            facts.events[i].start_utc_s = stt{*gps_start, *GPS_UTC_offset}.utc_s();
    }
    return std::move(facts);
}
