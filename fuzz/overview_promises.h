// What holds for whatever is found in any recording.
#pragma once

#include "mpeg_ts_overview/model/overview.h"

#include <string>

/// Promises of the input and of what the meters found: that it adds up.
void promise_measurements(const overview &found);

/// Promises of what the tables, the contents and the transcript are.
void promise_contents(const overview &found);

/// Promises of the rows of the verdict.
void promise_checks(const overview &found);

/// The JSON, which can be parsed, holds against its schema, and is the same when it is written again.
std::string promised_json(const overview &found);
