// The result of one check, ETSI TR 101 290 V1.4.1 5.2 and what else is looked at.
#pragma once

#include "mpeg_ts_overview/model/violation_log.h"

#include <optional>
#include <string>

enum class check_outcome { pass, fail, not_measured };

struct check_result {
    std::string id;
    int priority = 0; ///< 1 to 3
    std::string name;
    check_outcome outcome = check_outcome::not_measured;
    std::string why;             ///< what could not be measured; empty when all was
    violation_log log;           ///< worst is of passing checks too
    std::string worst_unit;      ///< "s" or "ns"; empty for counts
    std::optional<double> limit; ///< in worst_unit, 0 for counts, none where there is none
};
