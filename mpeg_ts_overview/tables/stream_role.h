// What the current PAT and PMTs make of a PID.
#pragma once

#include <cstdint>
#include <optional>

enum class stream_kind : uint8_t { other, video, audio };

struct stream_role {
    stream_kind kind = stream_kind::other;
    bool still_pictures = false;     ///< a video descriptor says so
    std::optional<uint16_t> pcr_pid; ///< of the first program of the PAT whose current PMT lists the PID
    std::optional<uint16_t> program; ///< its program_number
};
