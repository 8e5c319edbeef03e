// One row of the checks while it is put together from its clauses: it fails when any of them fails, passes
// when all were measured and none failed, and is not measured else.
#pragma once

#include "mpeg_ts_overview/checks/check_sources.h"
#include "mpeg_ts_overview/model/check_result.h"
#include "mpeg_ts_overview/tables/table_repetition.h"

#include <cstdint>
#include <string>

class check_builder {
public:
    check_builder(const check_sources &all, std::string id, int priority, std::string name);

    const check_sources &from() const { return sources; }

    /// The limit, and the unit of it and of the worst: "s" or "ns"; none for counts, whose limit is 0.
    void set_limit(double value, const char *unit);
    /// Its worst is in seconds, and there is no one limit.
    void set_seconds() { result.worst_unit = "s"; }
    void set_limit_of_counts() { result.limit = 0; }

    /// A clause that was measured: what is in the log are its faults.
    void add_faults(const violation_log &log);

    /// A clause that was not measured.
    void add_unmeasured(const std::string &why);

    /// A clause of intervals that is there to be judged: not measured where no clock ran as
    /// long as the limit.
    void add_intervals(const repetition_limit &limit);

    /// A clause of a table that has to be there: without it not measured, with the whole multiplex a fault.
    void add_table(const table_repetition &table, const std::string &name);

    /// Takes what was measured into the worst, judged or not.
    void show(std::optional<double> value);

    check_result finish() &&;

private:
    const check_sources &sources;
    check_result result;
};

/// 27 MHz ticks in seconds.
double in_seconds(int64_t ticks);
