#include "mpeg_ts_overview/driver/command_line.h"
#include "mpeg_ts_overview/driver/interrupt.h"
#include "mpeg_ts_overview/driver/outputs.h"
#include "mpeg_ts_overview/driver/overview_of.h"
#include "mpeg_ts_overview/driver/recording_file.h"
#include "mpeg_ts_overview/driver/unfinished_outputs.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace {

overview_request request_of(const overview_options &options)
{
    overview_request request;
    request.packet_size = options.packet_size.value_or(0);
    request.whole_multiplex = options.whole_multiplex;
    request.other_limits = options.other_limits;
    request.assume_country = options.assume_country;
    request.atsc_mode = options.atsc_mode;
    if (options.bitrate_bps) {
        request.time_base = time_base_kind::bitrate;
        request.bitrate_bps = *options.bitrate_bps;
    } else if (options.clock == clock_choice::pcr) {
        request.time_base = time_base_kind::pcr;
    } else if (options.clock == clock_choice::arrival) {
        request.time_base = time_base_kind::arrival;
    } else if (options.clock == clock_choice::none) {
        request.time_base = time_base_kind::none;
    }
    return request;
}

bool any_fails(const overview &found, const std::vector<int> &priorities)
{
    return std::any_of(found.checks.begin(), found.checks.end(), [&](const check_result &check) {
        return check.outcome == check_outcome::fail &&
               std::find(priorities.begin(), priorities.end(), check.priority) != priorities.end();
    });
}

/// Reads the recording. Returns false, with a message on standard error, when there is nothing to tell of it.
bool read_recording(recording_file &file, const overview_options &options, overview &found, bool *whole)
{
    const auto source = [&](uint8_t *to, size_t size) { return file.read(to, size); };
    const reading_outcome outcome = overview_of(source, request_of(options), found);
    file.end_progress();

    *whole = outcome == reading_outcome::done;
    if (file.error() != 0)
        std::fprintf(stderr, "mpeg_ts_overview: cannot read '%s': %s\n", options.input.c_str(),
                     std::strerror(file.error()));
    if (outcome == reading_outcome::no_packets)
        std::fputs("mpeg_ts_overview: no transport packets found\n", stderr);
    if (outcome == reading_outcome::no_arrival_time_stamps)
        std::fputs("mpeg_ts_overview: --clock=arrival needs packets of 192 bytes\n", stderr);
    return found.recording.packets > 0;
}

/// Returns the exit status.
int run(const overview_options &options)
{
    recording_file file;
    if (!file.open(options.input)) {
        std::fprintf(stderr, "mpeg_ts_overview: cannot open '%s': %s\n", options.input.c_str(),
                     std::strerror(errno));
        return 1;
    }
    outputs wanted;
    if (!wanted.open(options, file.status())) return 1;

    overview found;
    bool whole = false;
    found.recording.path = options.input;
    if (!read_recording(file, options, found, &whole)) return 1;
    if (!wanted.write(options, found) || !whole) return 1;
    return any_fails(found, options.checked) ? 2 : 0;
}

} // namespace

int main(int argc, char **argv)
{
    overview_options options;
    if (const auto status = parse_command_line(argc, argv, &options)) return *status;

    unfinished_outputs_remove_on({SIGHUP, SIGQUIT});
    interrupt_catch(unfinished_outputs_remove);
    const int status = run(options);
    interrupt_stop_if_noted();
    return status;
}
