#include "mpeg_ts_overview/driver/command_line.h"
#include "mpeg_ts_overview/driver/interrupt.h"
#include "mpeg_ts_overview/driver/overview_of.h"
#include "mpeg_ts_overview/driver/overview_outputs.h"
#include "mpeg_ts_overview/driver/recording_file.h"
#include "mpeg_ts_overview/driver/standard_streams.h"
#include "mpeg_ts_overview/driver/unfinished_outputs.h"
#include "text/utf8_valid.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#ifdef __GLIBC__
#include <malloc.h>
#endif

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

/// What ended the reading, in words; empty when it was the end of the recording, or an interrupt.
std::string reason_of(reading_outcome outcome, const recording_file &file, const std::string &path)
{
    switch (outcome) {
    case reading_outcome::done:
        return "";
    case reading_outcome::no_packets:
        // Who stopped the reading knows that there may be more behind.
        return interrupt_noted() ? "" : "no transport packets found";
    case reading_outcome::no_arrival_time_stamps:
        return "--clock=arrival: only packets of 192 bytes have arrival time stamps";
    case reading_outcome::read_error:
        break;
    }
    return fmt::format("cannot read '{}': {}", path, std::strerror(file.error()));
}

bool a_check_fails(const overview &found, const std::vector<int> &priorities)
{
    return std::any_of(found.checks.begin(), found.checks.end(), [&](const check_result &check) {
        return check.outcome == check_outcome::fail &&
               std::find(priorities.begin(), priorities.end(), check.priority) != priorities.end();
    });
}

/// Says why there is nothing to read or to write, unless it is that an interrupt came first. Returns the exit
/// status.
int nothing_done(const std::string &reason)
{
    return interrupt_noted() ? 1 : say_failure(reason);
}

/// Returns the exit status.
int run(const overview_options &options)
{
    recording_file file;
    if (!file.open(options.input))
        return nothing_done(fmt::format("cannot open '{}': {}", options.input, std::strerror(errno)));
    overview_outputs outputs;
    if (!outputs.open(options, file.identity())) return nothing_done(outputs.error());

    overview found;
    found.recording.path = utf8_valid(options.input);
    const auto source = [&](uint8_t *to, size_t size) { return file.read(to, size); };
    const reading_outcome outcome = overview_of(source, request_of(options), found);
    file.end_progress();
    const std::string reason = reason_of(outcome, file, options.input);
    // What was read before an error is not lost.
    if (found.recording.packet_size != 0 && !outputs.write(found)) return say_failure(outputs.error());
    if (!reason.empty()) return say_failure(reason);
    return a_check_fails(found, options.checked) ? 2 : 0;
}

/// Has each larger piece of memory mapped by itself: what is never touched of it then takes none, and all of
/// it goes back when it is released.
void give_back_large_memory()
{
#ifdef __GLIBC__
    mallopt(M_MMAP_THRESHOLD, 16384);
#endif
}

} // namespace

int main(int argc, char **argv)
{
    give_back_large_memory();
    standard_streams_hold_their_places();
    overview_options options;
    if (const auto status = parse_command_line(argc, argv, &options)) return *status;

    interrupt_catch(unfinished_outputs_remove);
    unfinished_outputs_remove_on({SIGHUP, SIGQUIT, SIGABRT, SIGXCPU});
    const int status = run(options);
    interrupt_stop_if_noted();
    return status;
}
