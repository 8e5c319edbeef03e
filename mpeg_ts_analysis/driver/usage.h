// The usage text.
#pragma once

/// Writes the usage text to standard error.
void print_usage();
