#include "mpeg_ts_overview/driver/command_line.h"
#include "mpeg_ts_overview/driver/overview_of.h"
#include "mpeg_ts_overview/driver/recording_file.h"
#include "mpeg_ts_overview/output/json.h"
#include "mpeg_ts_overview/output/text.h"

#include <cerrno>
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

} // namespace

int main(int argc, char **argv)
{
    overview_options options;
    if (const auto status = parse_command_line(argc, argv, &options)) return *status;

    recording_file file;
    if (!file.open(options.input)) {
        std::fprintf(stderr, "mpeg_ts_overview: cannot open %s: %s\n", options.input.c_str(),
                     std::strerror(errno));
        return 1;
    }
    overview found;
    found.recording.path = options.input;
    const auto source = [&](uint8_t *to, size_t size) { return file.read(to, size); };
    if (overview_of(source, request_of(options), found) != reading_outcome::done) {
        std::fputs("mpeg_ts_overview: no transport packets found\n", stderr);
        return 1;
    }
    const auto sink = [](std::string_view text) {
        return std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    };
    if (options.json) write_json(found, sink);
    if (options.text) sink(summary_text(found, false));
    return 0;
}
