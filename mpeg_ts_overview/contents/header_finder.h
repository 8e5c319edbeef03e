// Looks for the first codec header in an elementary stream as its packets come by, and stops when it has it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "mpeg_ts_overview/model/codec_details.h"

enum class codec_family {
    mpeg_video, // MPEG-1 and MPEG-2 video
    h264,
    hevc,
    mpeg_audio, // layers I to III
    adts,       // AAC
    ac3,        // AC-3 and E-AC-3
};

/// The family of a stream_type that alone says it (ISO/IEC 13818-1 table 2-34, ATSC A/53); nothing for
/// others.
std::optional<codec_family> codec_family_of(unsigned stream_type);

/// Keeps a piece of at most 8 KiB of the elementary stream: of video from a PES packet's begin, of audio
/// across PES packets. After 1000 pieces without a header it gives up.
class header_finder {
public:
    explicit header_finder(codec_family family);

    /// The payload of the next clear packet of the PID, duplicates aside. A PES header that does not lie
    /// whole in its packet's payload makes its PES packet be passed over.
    void on_payload(const uint8_t *start, const uint8_t *fence, bool payload_unit_start);

    /// Something of the PID is missing or not to be read (lost, scrambled): goes on at the next unit start.
    void on_gap();

    /// No more packets come.
    void on_end();

    /// True when packets are of no more use: the header is found, or given up.
    bool is_done() const { return tries_left == 0; }

    /// True while it has room for a piece.
    bool has_room() const { return piece.capacity() > 0; }

    /// What was found.
    const std::optional<codec_details> &details() const { return found; }

private:
    /// The elementary stream's bytes of a PES packet's first payload, or fence.
    void begin_pes_packet(const uint8_t *start, const uint8_t *fence);
    void keep(const uint8_t *start, const uint8_t *fence);

    /// Reads what is kept and begins a new piece.
    void try_piece();

    using reader = std::optional<codec_details> (*)(const uint8_t *start, const uint8_t *fence);

    reader details_in;
    bool is_video;
    bool is_in_pes_packet = false;
    unsigned tries_left = 1000;
    std::vector<uint8_t> piece; // its room is taken once
    std::optional<codec_details> found;
};
