// EIT present and following: how often it comes of services that say they have it, ETSI TR 101 290 3.6a, and
// whether both of its sections come, 3.6c.
#pragma once

#include "mpeg_ts_overview/tables/flat_map.h"
#include "mpeg_ts_overview/tables/program_map.h"
#include "mpeg_ts_overview/tables/repetition_watch.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/section_lists.h"
#include "mpeg_ts_overview/tables/table_key.h"

#include <array>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

/// Of so many services, or of so many tables of others, both sections are waited for.
constexpr size_t present_following_limit = 16384;

class eit_watch {
public:
    eit_watch(const time_stretches &times, bool is_whole_multiplex);

    /// Takes current PAT sections, and DVB sections on their own PIDs, whose CRC_32 is right.
    void on_section(const table_section &section, const table_key &of_table, const program_map &programs);

    /// The recording ends.
    void finish(const moment &end);

    // After the end.

    /// Both sections of each service of the PAT that has the EIT_present_following_flag.
    const repetition_limit &repetition() const { return watch.limit(0); }
    /// True when such a service had EIT, or has to have it.
    bool had_service() const { return watched_service; }
    /// True when any present or following section came.
    bool came() const { return !first_arrivals.empty(); }
    uint64_t not_kept() const { return dropped; }
    /// Tables of which one section came long before the end, without a time break since, and the other never
    /// did.
    const violation_log &incomplete(bool sure_times_only) const { return halves[sure_times_only ? 1 : 0]; }

    /// True when a table had both, or time enough for both.
    bool is_completeness_measured(bool sure_times_only) const { return measured[sure_times_only ? 1 : 0]; }

private:
    struct service_state {
        bool is_listed = false;                 ///< by the PAT
        unsigned flag_count = 0;                ///< entries of the SDT that set the flag
        bool came = false;                      ///< its EIT, at any time
        bool runs = false;                      ///< the clocks do: it is listed and has the flag
        std::array<repetition_clock, 2> clocks; ///< by section_number
    };
    /// When the sections of a table came first, by section_number.
    struct arrivals {
        table_key key;
        std::array<std::optional<moment>, 2> first;
    };

    void on_sdt(const table_section &section);
    void on_eit(const table_section &section, const table_key &of_table);
    arrivals *arrivals_of(const table_key &of_table);
    void decide(uint16_t service_id, service_state &service, const moment &at);
    void end(uint16_t service_id, service_state &service, const moment &at);
    void judge_halves(const moment &end, bool sure_times_only);
    std::optional<int64_t> waited_until(const moment &end, const moment &from) const;

    const time_stretches &stretches;
    bool whole_multiplex;
    repetition_watch watch;
    std::unordered_map<uint16_t, service_state> services;
    section_lists<uint16_t> flagged; ///< services by SDT section
    bool watched_service = false;
    std::vector<arrivals> first_arrivals;                    ///< in order of tables' first arrival
    flat_map<table_key, uint32_t, table_key_hash> places_of; ///< in first_arrivals
    uint64_t dropped = 0;
    std::array<violation_log, 2> halves; ///< by all times, and by sure ones
    std::array<bool, 2> measured = {};   ///< likewise: a table was whole, or came long before the end
};
