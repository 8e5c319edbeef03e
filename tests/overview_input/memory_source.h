// Bytes in memory as a source, and what the scanner makes of them.
#pragma once

#include "mpeg_ts_overview/input/packet_scanner.h"
#include "tests/support/stream_builder.h"

#include <algorithm>

/// Gives the bytes in pieces of at most piece bytes.
inline byte_source source_of(bytes stream, size_t piece = size_t{1} << 30)
{
    return [stream = std::move(stream), piece, at = size_t{0}](uint8_t *to, size_t size) mutable {
        const size_t given = std::min({size, piece, stream.size() - at});
        std::copy_n(stream.begin() + static_cast<ptrdiff_t>(at), given, to);
        at += given;
        return static_cast<ptrdiff_t>(given);
    };
}

struct scan_result {
    bool found = false;
    input_counts counts;
    packet_grid grid;
    std::optional<uint64_t> lost_for_good;
    std::vector<scan_step> steps; ///< their starts are of no use any more
    std::vector<int64_t> arrival;
    std::vector<uint64_t> clock_packets; ///< indexes
};

inline scan_result scan(const bytes &stream, unsigned packet_size = 0, size_t piece = size_t{1} << 30)
{
    packet_scanner scanner(source_of(stream, piece), packet_size, least_block_size);
    scan_result result;

    result.found = scanner.find_packets();
    if (!result.found) return result;
    while (std::unique_ptr<block> b = scanner.next_block()) {
        for (const uint32_t step : b->clock_steps) result.clock_packets.push_back(b->steps[step].index);
        result.steps.insert(result.steps.end(), b->steps.begin(), b->steps.end());
        result.arrival.insert(result.arrival.end(), b->arrival.begin(), b->arrival.end());
        scanner.give_back(std::move(b));
    }
    result.counts = scanner.counts();
    result.grid = scanner.grid();
    result.lost_for_good = scanner.lost_for_good();
    return result;
}

/// How many steps of that kind there are.
inline size_t steps_of(const scan_result &result, step_kind kind)
{
    return static_cast<size_t>(std::count_if(result.steps.begin(), result.steps.end(),
                                             [&](const scan_step &s) { return s.kind == kind; }));
}

/// Packets of 204 bytes: 16 bytes of parity behind each.
inline bytes with_parity(const bytes &packets)
{
    bytes stream;
    for (size_t at = 0; at < packets.size(); at += 188) {
        stream.insert(stream.end(), packets.begin() + static_cast<ptrdiff_t>(at),
                      packets.begin() + static_cast<ptrdiff_t>(at + 188));
        stream.insert(stream.end(), 16, 0xA5);
    }
    return stream;
}
