// The rates of the page: the series of the programs and of the PIDs that have the most of the stream.
#pragma once

#include "mpeg_ts_overview/model/overview.h"
#include "mpeg_ts_overview/output/page_data.h"

/// Puts the member "rates"; what the series leave out is told to lists.
void put_page_rates(json_stream &out, page_lists &lists, const overview &found);
