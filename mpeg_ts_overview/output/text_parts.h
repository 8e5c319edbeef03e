// The parts of the summary: whole lines each, or nothing.
#pragma once

#include "mpeg_ts_overview/model/overview.h"

#include <string>

/// What the recording is.
std::string text_of_recording(const overview &found, bool color);

/// The checks that fail, one by one, and what of the others was measured.
std::string text_of_checks(const overview &found, bool color);

/// Each program with its streams, and what belongs to none.
std::string text_of_programs(const overview &found, bool color);

/// Tables, PCRs and how much of each content there is; what reached its limit.
std::string text_of_contents(const overview &found);

/// The first length bytes at position of a text, coloured by the parameters of an SGR sequence
/// (ECMA-48 8.3.117).
std::string colored(std::string text, size_t position, size_t length, const char *parameters);
