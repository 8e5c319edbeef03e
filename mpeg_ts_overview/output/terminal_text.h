// Text from the stream, made fit for a terminal: valid UTF-8 without controls, of a known width.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The text without C0 and C1 controls, DEL and what turns lines or ends them; what is no UTF-8 becomes
/// U+FFFD.
std::string without_controls(std::string_view text);

/// How many columns of a terminal the text fills: 2 for wide East Asian characters, 0 for combining marks, 1
/// for any other. The text is valid UTF-8.
size_t columns_of(std::string_view text);

/// As much of the text as fits that many columns, its end replaced by "..." when it does not. The text is
/// valid UTF-8; columns is at least 3.
std::string cut_to(std::string_view text, size_t columns);

/// The text, cut and then filled up with blanks to that many columns.
std::string filled_to(std::string_view text, size_t columns);

/// Columns of a line of the summary.
constexpr size_t line_columns = 100;

/// The items behind first, joined by between, on lines of at most line_columns; lines behind the first begin
/// with indent blanks. Each line has its line end. All is valid UTF-8 without controls; an item that fills
/// more than a line is cut.
std::string wrapped(std::string_view first, const std::vector<std::string> &items, std::string_view between,
                    size_t indent);
