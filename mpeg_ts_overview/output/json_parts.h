// The members of the JSON object, a subject each.
#pragma once

#include "mpeg_ts_overview/model/overview.h"
#include "mpeg_ts_overview/output/json_stream.h"

/// What stands under "recording": the input, its time base, its rate and its standard.
ordered_json json_of_recording(const overview &found);
ordered_json json_of(const transport_stream_facts &facts);
ordered_json json_of(const program_facts &program);
ordered_json json_of(const pid_facts &facts);
ordered_json json_of(const pcr_facts &facts);
ordered_json json_of(const time_stamp_facts &facts);
ordered_json json_of(const table_facts &table);
ordered_json json_of(const time_break &place);
ordered_json json_of(const check_result &check);
ordered_json json_of(const guide_event &event);
ordered_json json_of(const cue &message);
ordered_json json_of(const teletext_page &page);
ordered_json json_of(const clock_facts &facts);
ordered_json json_of(const fault_group &group);
ordered_json json_of(const transcript_entry &entry);
ordered_json json_of(const limit_reached &limit);

void put_rates(json_stream &out, const rates_facts &rates);
