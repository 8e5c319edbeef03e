// Recordings of any packet size, as a script writes them, through input, timeline and meters: each packet
// once, times that never go back, sums that are right, the same whatever the blocks are that it is read in.
#include "fuzz/metered_walk.h"
#include "fuzz/overview_promises.h"
#include "fuzz/scripted_recording.h"
#include "fuzz/support.h"

#include <algorithm>
#include <cstring>

namespace {

byte_source source_of(const std::vector<uint8_t> &recording, size_t piece)
{
    return [&recording, piece, at = size_t{0}](uint8_t *to, size_t size) mutable {
        const size_t given = std::min({size, piece, recording.size() - at});
        if (given > 0) std::memcpy(to, recording.data() + at, given);
        at += given;
        return static_cast<ptrdiff_t>(given);
    };
}

struct reading {
    unsigned packet_size = 0; ///< 0: find it
    std::optional<time_base_kind> time_base;
    int64_t bitrate_bps = 0;
    size_t block_bytes = block_size;
    size_t piece = SIZE_MAX;
};

/// What was found, as JSON; empty without packets.
std::string found_in(const std::vector<uint8_t> &recording, const reading &how)
{
    packet_scanner scanner(source_of(recording, how.piece), how.packet_size, how.block_bytes);
    if (!scanner.find_packets()) return "";
    const packet_grid grid = scanner.grid();
    if (how.time_base == time_base_kind::arrival && grid.sync_offset == 0) return "";

    timeline times(how.time_base, how.bitrate_bps, grid.sync_offset != 0);
    metered_walk meters(grid.packet_size);
    recording_walk walk(scanner, meters);
    while (std::unique_ptr<block> next = scanner.next_block()) {
        times.add_block(*next);
        walk.add(std::move(next));
        walk.go_on(times);
    }
    times.end(scanner.counts().packets, scanner.last_arrival_step());
    walk.go_on(times);
    const uint64_t end_byte =
        scanner.lost_for_good().value_or(scanner.counts().bytes - scanner.counts().trailing_bytes);
    const moment end = walk.end(end_byte, times.duration_ticks());
    if (scanner.lost_for_good()) meters.on_break({end, time_break_kind::sync_loss, std::nullopt});
    const overview found = meters.finish(scanner, times, end);
    promise_measurements(found);
    return json_of(found);
}

reading reading_of(fuzz_input &in, unsigned packet_size)
{
    constexpr time_base_kind bases[] = {time_base_kind::pcr, time_base_kind::arrival, time_base_kind::bitrate,
                                        time_base_kind::none};
    constexpr int64_t bitrates[] = {1000, 1000000, 3333333, 40000000, 1000000000000};
    reading how;
    const unsigned choice = in.byte();
    if ((choice & 8) != 0) how.time_base = bases[choice >> 4 & 3];
    if ((choice & 0x80) != 0) how.packet_size = packet_size;
    how.bitrate_bps = bitrates[(choice & 7) % 5];
    return how;
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    constexpr unsigned packet_sizes[] = {188, 192, 204, 188};
    const unsigned shape = in.byte();
    const unsigned packet_size = packet_sizes[shape & 3];
    reading how = reading_of(in, packet_size);
    const std::vector<uint8_t> recording = scripted_recording(in, packet_size);

    const std::string found = found_in(recording, how);
    if (!found.empty()) promised_json(found);
    how.block_bytes = least_block_size + (shape & 0xFC) * 50;
    how.piece = (shape & 4) != 0 ? 997 * (1 + (shape >> 3)) : SIZE_MAX;
    fuzz_promise(found_in(recording, how) == found);
    return 0;
}
