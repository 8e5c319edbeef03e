// The command line, parsed into the run settings.
#pragma once

/// Parses the arguments behind the program name into settings, left to right; a later switch overrides an
/// earlier one. Returns the file to analyse, or null when the run ends here with exit status 1: help was
/// asked for, a switch is unknown, or no file was named. What is to be said about that has then been written
/// to standard error.
const char *parse_command_line(int argc, const char *const *argv);
