// What the first header in an elementary stream says of it; what it does not say is empty.
#pragma once

#include <optional>
#include <string>

/// Frames per second: num / den, in lowest terms.
struct frame_rate {
    unsigned long long num;
    unsigned long long den;
};

struct codec_details {
    std::string name;                       // "MPEG-2 video", "H.264", "MPEG-1 audio layer II", "AAC", "AC-3"
    std::optional<unsigned> width;          // samples shown, behind cropping
    std::optional<unsigned> height;         // lines of a frame, behind cropping
    std::optional<frame_rate> rate;         // frames, not fields
    std::optional<bool> interlaced;         // true when frames may be coded as two fields
    std::string profile;                    // "High", "Main 10", "LC"
    std::string level;                      // "4.0", "High 1440"
    std::optional<unsigned> sample_rate_hz; // of the coded core, where a decoder could make more of it
    std::optional<unsigned> channels;       // full range channels
    std::optional<bool> low_frequency_channel;
    std::optional<unsigned> bit_rate_bps; // of the audio header or frame
};
