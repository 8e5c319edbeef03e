// The codec headers of the streams of all programs: each stream is looked into until its header is found.
#pragma once

#include "mpeg_ts_overview/contents/header_finder.h"
#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/model/codec_details.h"
#include "mpeg_ts_overview/model/pid_array.h"
#include "mpeg_ts_overview/model/sequence.h"

#include <bitset>
#include <cstdint>
#include <memory>
#include <vector>

/// Headers of so many streams are sought at once; of further ones only when one of those is done.
constexpr size_t sought_header_limit = 512;

class stream_headers {
public:
    /// A program has a stream of that family on the PID. A header that was found in one of another family
    /// counts no more.
    void look_for(uint16_t pid, codec_family family);

    /// True while packets of the PID are of use.
    bool wants(uint16_t pid) const { return wanted[pid]; }

    /// Takes the packets of the PIDs that it wants.
    void on_packet(const ts_packet &packet, const packet_sequence &sequence);

    void on_sync_loss();

    /// No more packets come.
    void on_end();

    /// Streams of which packets were passed over because headers of too many were sought, and no header was
    /// found.
    uint64_t not_found() const;

    /// What the header on the PID, a stream of that family, says; or null.
    const codec_details *details_of(uint16_t pid, codec_family family) const;

private:
    struct search {
        codec_family family;
        header_finder finder;
        bool passed_over = false;
    };

    std::bitset<mpeg_ts_pid_count> wanted; ///< by PID
    pid_array<uint16_t> number_of;         ///< 1 + place in searches; 0: none
    std::vector<std::unique_ptr<search>> searches;
    size_t rooms = 0; ///< of finders, for their pieces
};
