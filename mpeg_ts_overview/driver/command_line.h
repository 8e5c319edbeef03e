// The command line of mpeg_ts_overview.
#pragma once

#include "mpeg_ts_overview/model/limits.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

enum class clock_choice { automatic, pcr, arrival, none };
enum class color_choice { automatic, always, never };

struct overview_options {
    std::string input;               ///< a file, or "-": standard input
    std::optional<std::string> json; ///< where the JSON goes: a file, or "-": standard output
    std::optional<std::string> html; ///< where the page goes, likewise; never both to standard output
    bool text = true;                ///< the summary goes to standard output
    std::vector<int> checked;        ///< priorities, 1 to 3: exit status 2 when one of their checks fails
    bool whole_multiplex = false;
    std::optional<unsigned> packet_size; ///< 188, 192 or 204; else found
    clock_choice clock = clock_choice::automatic;
    std::optional<uint64_t> bitrate_bps; ///< before clock; least_bitrate_bps to most_bitrate_bps
    limits other_limits;
    uint32_t assume_country = 0;   ///< private_data_specifier, 0: none; as the analyser's
    std::optional<bool> atsc_mode; ///< as the analyser's -atsc and -not-atsc; none: found
    color_choice color = color_choice::automatic;
};

/// Between these no time of a recording of up to 40 TB leaves 63 bits.
constexpr uint64_t least_bitrate_bps = 1000;
constexpr uint64_t most_bitrate_bps = 1000000000000;

/// Parses the arguments behind the program's name. Returns the exit status when the run ends here: 0 behind
/// help or version, which have then been written to standard output; 1 behind wrong usage, with a message on
/// standard error.
std::optional<int> parse_command_line(int argc, const char *const *argv, overview_options *options);

/// Whether the summary is coloured. no_color and term: the variables NO_COLOR and TERM of the environment,
/// null when they are not set.
bool color_is_wanted(color_choice choice, bool output_is_terminal, const char *no_color, const char *term);
