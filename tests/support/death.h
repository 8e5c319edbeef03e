// For tests of invariants: what a stopped program has written.
#pragma once

#include <string>
#include <string_view>

/// From here on the report goes where standard error goes, so that a death test sees both in order. For the
/// statement of a death test.
void report_to_standard_error();

/// What ends the regular expression for all that a process stopped by a signal has written: emulators add a
/// line.
inline const std::string end_of_errors = "(qemu: uncaught target signal [^\n]*\n)?$";

/// The regular expression that matches this text and nothing else.
std::string exactly(std::string_view text);
