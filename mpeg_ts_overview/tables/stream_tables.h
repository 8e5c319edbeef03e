// The tables of a recording: from packets to sections, and what the sections say of the stream and of
// themselves.
#pragma once

#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/model/limits.h"
#include "mpeg_ts_overview/model/limits_reached.h"
#include "mpeg_ts_overview/model/sequence.h"
#include "mpeg_ts_overview/tables/eit_watch.h"
#include "mpeg_ts_overview/tables/misplaced_tables.h"
#include "mpeg_ts_overview/tables/pid_directory.h"
#include "mpeg_ts_overview/tables/program_map.h"
#include "mpeg_ts_overview/tables/psi_watch.h"
#include "mpeg_ts_overview/tables/psip_watch.h"
#include "mpeg_ts_overview/tables/section_consumer.h"
#include "mpeg_ts_overview/tables/section_gaps.h"
#include "mpeg_ts_overview/tables/section_lists.h"
#include "mpeg_ts_overview/tables/section_router.h"
#include "mpeg_ts_overview/tables/si_watch.h"
#include "mpeg_ts_overview/tables/standard.h"
#include "mpeg_ts_overview/tables/table_rows.h"
#include "mpeg_ts_overview/tables/time_stretches.h"

#include <cstdint>
#include <functional>
#include <vector>

class stream_tables final : private section_consumer {
public:
    /// atsc: whether it is ATSC, where somebody knows.
    stream_tables(const limits &values, bool is_whole_multiplex, std::optional<bool> atsc = std::nullopt);
    stream_tables(const stream_tables &) = delete;
    stream_tables &operator=(const stream_tables &) = delete;

    /// True when the PID's packets have to come to on_packet, each by itself.
    bool collects(uint16_t pid) const { return directory.collects(pid); }

    /// Takes moments that clocks need, in order: where a stretch begins, clock points, the last packet before
    /// a time break.
    void see(const moment &at) { stretches.see(at); }

    /// Takes a packet of a PID that is collected. What the sections that end in it say is known when they are
    /// handed over to the others.
    void on_packet(const ts_packet &packet, const packet_sequence &sequence, section_consumer &others);

    void on_sync_loss() { router.on_sync_loss(); }

    /// The recording ends. has_packets: a packet of the PID came at any time.
    void finish(const moment &end, const std::function<bool(uint16_t pid)> &has_packets);

    const time_stretches &times() const { return stretches; }
    const program_map &programs() const { return map; }
    const pid_directory &uses() const { return directory; }
    const section_router &sections() const { return router; }
    const table_rows &rows() const { return table_list; }
    /// The rows; only their number that was not kept is known afterwards.
    tables_facts take_rows() { return table_list.take_facts(); }
    const char *standard() const { return detection.name(); }
    /// True when a CAT came.
    bool had_cat() const { return cat_came; }

    // What the checks read, after the end.
    const psi_watch &psi() const { return psi_repetition; }
    const si_watch &si() const { return si_repetition; }
    const eit_watch &eit() const { return present_following; }
    const psip_watch &psip() const { return psip_repetition; }
    const section_gaps &gaps() const { return si_gaps; }
    const misplaced_tables &misplaced() const { return misplaced_sections; }
    /// How long there was a PMT with a CA_descriptor and no CAT; of meaning when none came.
    const repetition_limit &cat_absence() const { return cat_wait.limit(0); }
    /// True when a PMT had a CA_descriptor.
    bool needs_cat() const { return cat_needed; }

    /// What the caps of the stores dropped.
    void add_to(std::vector<limit_reached> &reached) const;

private:
    void on_section(const table_section &section) override;
    void on_section_begun(const table_section &section) override;
    void on_bad_section(const table_section &section) override;
    void on_scrambled_packet(uint16_t pid, const moment &at) override;
    void take_names(const table_section &section);
    void watch(const table_section &section, const table_key &key);

    time_stretches stretches;
    pid_directory directory;
    section_router router;
    program_map map;
    section_lists<uint16_t> cat_names;
    section_lists<uint16_t> mgt_names;
    table_rows table_list;
    standard_detection detection;
    psi_watch psi_repetition;
    si_watch si_repetition;
    eit_watch present_following;
    psip_watch psip_repetition;
    section_gaps si_gaps;
    misplaced_tables misplaced_sections;
    repetition_watch cat_wait;
    repetition_clock cat_clock;
    bool cat_came = false;
    bool cat_needed = false;
    section_consumer *consumer = nullptr; ///< the others, while a packet is taken
};
