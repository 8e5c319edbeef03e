// What holds for whatever is found in any recording.
#pragma once

#include "mpeg_ts_overview/model/overview.h"

#include <nlohmann/json.hpp>

#include <string>

/// Promises of the input and of what the meters found: that it adds up.
void promise_measurements(const overview &found);

/// Promises of what the tables, the contents and the transcript are.
void promise_contents(const overview &found);

/// Promises of the rows of the verdict.
void promise_checks(const overview &found);

/// The JSON of what was found.
std::string json_of(const overview &found);

/// That text parsed, having promised that it can be and holds against its schema.
nlohmann::ordered_json promised_json(const std::string &text);
