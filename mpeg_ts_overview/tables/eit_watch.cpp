#include "mpeg_ts_overview/tables/eit_watch.h"

#include "mpeg_ts_overview/tables/eit.h"
#include "mpeg_ts_overview/tables/log_violation.h"
#include "mpeg_ts_overview/tables/sdt.h"
#include "mpeg_ts_overview/tables/standard_limits.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

watched_thing section_of(uint16_t service_id, size_t section_number)
{
    return {eit_pid, eit_present_following_actual_table_id, service_id, static_cast<uint8_t>(section_number)};
}

} // namespace

eit_watch::eit_watch(const time_stretches &times, bool is_whole_multiplex)
    : stretches(times), whole_multiplex(is_whole_multiplex), watch(times)
{
    watch.add_limit(eit_present_following_interval_ticks, true);
}

void eit_watch::on_section(const table_section &section, const table_key &of_table,
                           const program_map &programs)
{
    // A service whose PMT moves to another PID is taken off the list and put on it again.
    for (const program_map::listing_change &change : programs.listing_changes())
        services[change.program_number].is_listed = change.is_listed;
    for (const program_map::listing_change &change : programs.listing_changes())
        decide(change.program_number, services[change.program_number], section.at);
    const uint8_t table_id = section.header.table_id;
    if (table_id == sdt_actual_table_id) on_sdt(section);
    if (table_id == eit_present_following_actual_table_id || table_id == eit_present_following_other_table_id)
        on_eit(section, of_table);
}

void eit_watch::on_sdt(const table_section &section)
{
    if (flagged.holds(section)) return;
    const std::optional<sdt> description = read_sdt(section);
    if (!description) return;
    std::vector<uint16_t> with_flag;
    for (const sdt_service &service : description->services)
        if (service.EIT_present_following_flag) with_flag.push_back(service.service_id);

    const auto count = [&](uint16_t service_id, unsigned by) {
        service_state &service = services[service_id];
        service.flag_count += by;
        decide(service_id, service, section.at);
    };
    flagged.replace(
        section, std::move(with_flag), [&](uint16_t service_id) { count(service_id, 1); },
        [&](uint16_t service_id) { count(service_id, -1u); });
}

void eit_watch::on_eit(const table_section &section, const table_key &of_table)
{
    const uint8_t number = section.header.section_number;
    if (number > 1) return;
    if (arrivals *const table = arrivals_of(of_table)) {
        if (!table->first[number]) table->first[number] = section.at;
    } else {
        ++dropped;
    }

    if (section.header.table_id != eit_present_following_actual_table_id) return;
    const uint16_t service_id = section.header.table_id_extension;
    service_state &service = services[service_id];
    service.came = true;
    if (service.runs) watch.arrive(service.clocks[number], section.at, section_of(service_id, number));
}

/// When the sections of the table came; null when there is no room for it.
eit_watch::arrivals *eit_watch::arrivals_of(const table_key &of_table)
{
    if (const uint32_t *const place = places_of.find(of_table)) return &first_arrivals[*place];
    if (first_arrivals.size() == present_following_limit) return nullptr;
    places_of[of_table] = static_cast<uint32_t>(first_arrivals.size());
    first_arrivals.push_back({of_table, {}});
    return &first_arrivals.back();
}

/// Starts the clocks of the service where they have to run, and ends them where not.
void eit_watch::decide(uint16_t service_id, service_state &service, const moment &at)
{
    const bool has_to_run = service.is_listed && service.flag_count > 0;
    if (has_to_run && !service.runs) service.clocks.fill(watch.started(at));
    if (!has_to_run && service.runs) end(service_id, service, at);
    service.runs = has_to_run;
}

void eit_watch::end(uint16_t service_id, service_state &service, const moment &at)
{
    if (!service.came && !whole_multiplex) return;
    watched_service = true;
    if (!service.came) {
        watch.end_absent(service.clocks[0], at,
                         {eit_pid, eit_present_following_actual_table_id, service_id, {}});
        return;
    }
    for (size_t number = 0; number < service.clocks.size(); ++number)
        watch.end(service.clocks[number], at, section_of(service_id, number));
}

void eit_watch::finish(const moment &end_of_recording)
{
    for (auto &[service_id, service] : services)
        if (service.runs) end(service_id, service, end_of_recording);
    std::sort(first_arrivals.begin(), first_arrivals.end(),
              [](const arrivals &a, const arrivals &b) { return a.key < b.key; });
    judge_halves(end_of_recording, false);
    if (stretches.last_sure()) judge_halves(*stretches.last_sure(), true);
}

/// Looks for tables one section of which was there long enough for the other to come.
void eit_watch::judge_halves(const moment &end_of_recording, bool sure_times_only)
{
    const size_t number = sure_times_only ? 1 : 0;
    for (const auto &[key, first] : first_arrivals) {
        const bool is_actual = key.table_id == eit_present_following_actual_table_id;
        const int64_t limit =
            is_actual ? eit_present_following_interval_ticks : eit_present_following_other_interval_ticks;
        const moment &half = first[0] ? *first[0] : *first[1];
        const bool is_whole = first[0] && first[1];
        const bool begins_sure = !sure_times_only || half.packet >= stretches.first_sure()->packet;
        const std::optional<int64_t> waited =
            waited_until(end_of_recording, begins_sure ? half : *stretches.first_sure());
        const bool was_long_enough = waited && *waited >= limit;
        measured[number] = measured[number] || is_whole || was_long_enough;
        if (is_whole || !was_long_enough) continue;
        const uint16_t service_id = key.table_id_extension.value_or(0);
        log_violation(halves[number], half, key.pid, [service_id, missing = first[0] ? 1 : 0] {
            return fmt::format("service 0x{:04X}: section {} never came", service_id, missing);
        });
    }
}

/// The ticks from a moment, or from the last time break since, to the end.
std::optional<int64_t> eit_watch::waited_until(const moment &end_of_recording, const moment &from) const
{
    if (!stretches.current() || !end_of_recording.ticks) return std::nullopt;
    const moment &last_start = stretches.current()->first;
    return interval_between(from.stretch == last_start.stretch ? from : last_start, end_of_recording);
}
