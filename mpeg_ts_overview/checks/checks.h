// The verdict: one row for each check of ETSI TR 101 290 V1.4.1 5.2, of ATSC, and of what no standard
// numbers.
#pragma once

#include "mpeg_ts_overview/checks/check_sources.h"
#include "mpeg_ts_overview/model/check_result.h"

#include <vector>

/// The rows, in the order of the manual.
std::vector<check_result> judge(const check_sources &sources);
