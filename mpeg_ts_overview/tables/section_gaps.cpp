#include "mpeg_ts_overview/tables/section_gaps.h"

#include "mpeg_ts_overview/tables/eit.h"
#include "mpeg_ts_overview/tables/log_violation.h"
#include "mpeg_ts_overview/tables/nit.h"
#include "mpeg_ts_overview/tables/sdt.h"
#include "mpeg_ts_overview/tables/table_home.h"
#include "mpeg_ts_overview/tables/table_name.h"
#include "mpeg_ts_overview/tables/tdt.h"

#include <algorithm>

namespace {

constexpr int64_t tolerance_divisor = 20; // 5 %

bool has_minimum_gap(uint8_t table_id)
{
    return table_id == nit_actual_table_id || table_id == sdt_actual_table_id ||
           table_id == eit_present_following_actual_table_id || table_id == tdt_table_id ||
           table_id == rst_table_id;
}

} // namespace

void section_gaps::on_section(const table_section &section, const table_key &of_table)
{
    if (!has_minimum_gap(section.header.table_id)) return;
    const auto before = last_of.find(of_table);
    if (before == last_of.end()) {
        if (last_of.size() < gap_table_limit)
            last_of.emplace(of_table, section.at);
        else
            ++dropped;
        return;
    }
    if (const std::optional<int64_t> gap = interval_between(before->second, section.begun)) {
        judge(found[0], *gap, section);
        const bool is_sure = !before->second.extrapolated && !section.begun.extrapolated;
        if (is_sure) judge(found[1], *gap, section);
    }
    before->second = section.at;
}

void section_gaps::judge(findings &here, int64_t gap, const table_section &section) const
{
    here.shortest = std::min(gap, here.shortest.value_or(gap));
    if (!least || gap * tolerance_divisor >= *least * (tolerance_divisor - 1)) return;
    log_violation(here.log, section.begun, section.pid, [&] {
        return table_name(section.header.table_id) + " " + in_ms(gap) + " behind the section before";
    });
}
