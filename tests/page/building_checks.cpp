#include "page/building.h"

#include <algorithm>

namespace {

struct check_row {
    const char *id;
    int priority;
    const char *name;
    const char *unit;
    double limit;
    double worst;
};

constexpr check_row check_rows[] = {
    {"1.1",  1, "TS_sync_loss",                      "",   0,   0    },
    {"1.2",  1, "Sync_byte_error",                   "",   0,   0    },
    {"1.3a", 1, "PAT_error_2",                       "s",  0.5, 0.11 },
    {"1.4",  1, "Continuity_count_error",            "",   0,   0    },
    {"1.5a", 1, "PMT_error_2",                       "s",  0.5, 0.108},
    {"1.6",  1, "PID_error",                         "s",  5,   0.3  },
    {"2.1",  2, "Transport_error",                   "",   0,   0    },
    {"2.2",  2, "CRC_error",                         "",   0,   0    },
    {"2.3a", 2, "PCR_repetition_error",              "s",  0.1, 0.039},
    {"2.3b", 2, "PCR_discontinuity_indicator_error", "",   0,   0    },
    {"2.4",  2, "PCR_accuracy_error",                "ns", 500, 231.7},
    {"2.5",  2, "PTS_error",                         "s",  0.7, 0.083},
    {"2.6",  2, "CAT_error",                         "",   0,   0    },
    {"3.1a", 3, "NIT_actual_error",                  "s",  10,  5.2  },
    {"3.2",  3, "SI_repetition_error",               "s",  10,  5.4  },
    {"3.4a", 3, "Unreferenced_PID",                  "s",  0.5, 0    },
    {"3.5a", 3, "SDT_actual_error",                  "s",  2,   1.1  },
    {"3.6a", 3, "EIT_actual_error",                  "s",  2,   1.4  },
    {"3.8",  3, "TDT_error",                         "s",  30,  20   },
    {"X.1",  3, "Late_time_stamps",                  "",   0,   0    },
    {"X.3",  3, "Decoding_order",                    "",   0,   0    },
};

} // namespace

void add_checks(overview &found)
{
    for (const check_row &row : check_rows) {
        check_result check;
        check.id = row.id;
        check.priority = row.priority;
        check.name = row.name;
        check.outcome = check_outcome::pass;
        check.worst_unit = row.unit;
        check.limit = row.limit;
        if (row.worst > 0) check.log.worst = row.worst;
        found.checks.push_back(check);
    }
    for (const auto &[id, name] : {
             std::pair{"3.3",  "Buffer_error"      },
             {"3.9",  "Empty_buffer_error"},
             {"3.10", "Data_delay_error"  }
    }) {
        check_result check;
        check.id = id;
        check.priority = 3;
        check.name = name;
        check.why = "needs the decoder model";
        found.checks.push_back(check);
    }
}

void fail(overview &found, const std::string &id, uint64_t count, double first_s, double worst)
{
    const auto check = std::find_if(found.checks.begin(), found.checks.end(),
                                    [&](const check_result &each) { return each.id == id; });
    check->outcome = check_outcome::fail;
    violation_log &log = check->log;
    log.count = count;
    for (uint64_t number = 0; number < count; ++number) {
        log.last = at_s(found, first_s + 3.3 * static_cast<double>(number % 25));
        if (number == 0) log.first = log.last;
        if (log.details.size() < violation_detail_limit)
            log.details.push_back(
                {log.last, static_cast<uint16_t>(0x0101 + number % 3), "expected 5, came 9"});
    }
    if (worst > 0) log.worst = worst;
}

void add_null_packets(overview &found, uint64_t bps)
{
    add_pid(found, 0x1FFF, bps, 0);
    const size_t buckets = found.rates.whole.series_bps.size();
    std::vector<uint64_t> others(buckets);
    for (size_t row = 0; row + 1 < found.rates.pids.size(); ++row)
        for (size_t at = 0; at < found.rates.pids[row].rate.series_bps.size(); ++at)
            others[at] += found.rates.pids[row].rate.series_bps[at];
    rate_facts &nulls = found.rates.pids.back().rate;
    if (nulls.series_bps.empty()) return;
    const uint64_t whole = *found.rates.whole.mean_bps;
    for (size_t at = 0; at < buckets; ++at) {
        nulls.series_bps[at] = others[at] < whole ? whole - others[at] : 0;
        found.rates.whole.series_bps[at] = others[at] + nulls.series_bps[at];
    }
}
