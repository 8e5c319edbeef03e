#include "mpeg_ts_overview/contents/codec_mpeg_audio.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_overview/contents/audio_frames.h"

namespace {

constexpr size_t header_bytes = 4;
constexpr unsigned single_channel = 3;

/// By the two bits behind 11 bits of sync word.
enum version_bits : unsigned { mpeg_2_5 = 0, reserved_version = 1, mpeg_2 = 2, mpeg_1 = 3 };

/// In kbit/s by bitrate_index, from 1 on.
constexpr unsigned mpeg_1_bit_rates[3][14] = {
    {32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
    {32, 48, 56, 64,  80,  96,  112, 128, 160, 192, 224, 256, 320, 384},
    {32, 40, 48, 56,  64,  80,  96,  112, 128, 160, 192, 224, 256, 320},
};
constexpr unsigned low_rate_bit_rates[3][14] = {
    {32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
    {8,  16, 24, 32, 40, 48, 56,  64,  80,  96,  112, 128, 144, 160},
    {8,  16, 24, 32, 40, 48, 56,  64,  80,  96,  112, 128, 144, 160},
};

/// Of MPEG-1 by sampling_frequency; half of it in MPEG-2, a quarter in MPEG-2.5.
constexpr unsigned sampling_frequencies[] = {44100, 48000, 32000};

constexpr const char *mpeg_1_names[] = {"MPEG-1 audio layer I", "MPEG-1 audio layer II",
                                        "MPEG-1 audio layer III"};
constexpr const char *mpeg_2_names[] = {"MPEG-2 audio layer I", "MPEG-2 audio layer II",
                                        "MPEG-2 audio layer III"};
constexpr const char *mpeg_2_5_names[] = {"MPEG-2.5 audio layer I", "MPEG-2.5 audio layer II",
                                          "MPEG-2.5 audio layer III"};

struct frame_header {
    unsigned version;
    unsigned layer; // 1 to 3
    unsigned bit_rate_bps;
    unsigned sample_rate_hz;
    unsigned channels;
    size_t frame_bytes;
};

size_t frame_length(const frame_header &header, unsigned padding_bit)
{
    const unsigned rate = header.sample_rate_hz;
    if (header.layer == 1) return 4 * size_t{12 * header.bit_rate_bps / rate + padding_bit};
    const unsigned bytes_per_slot_rate = header.layer == 3 && header.version != mpeg_1 ? 72 : 144;
    return bytes_per_slot_rate * header.bit_rate_bps / rate + padding_bit;
}

std::optional<frame_header> header_at(const uint8_t *start, const uint8_t *fence)
{
    bit_reader in(start, fence);
    if (!in.has(header_bytes)) return {};
    const unsigned syncword = in.bits(11);
    const unsigned version = in.bits(2);
    const unsigned layer_bits = in.bits(2);
    in.bits(1); // protection_bit
    const unsigned bitrate_index = in.bits(4);
    const unsigned sampling_frequency = in.bits(2);
    const unsigned padding_bit = in.bits(1);
    in.bits(1); // private_bit
    const unsigned mode = in.bits(2);
    in.bits(2); // mode_extension
    in.bits(1); // copyright
    in.bits(1); // original/copy
    const unsigned emphasis = in.bits(2);
    if (syncword != 0x7FF || version == reserved_version || layer_bits == 0) return {};
    if (bitrate_index == 0 || bitrate_index == 15 || sampling_frequency == 3 || emphasis == 2) return {};

    frame_header header;
    header.version = version;
    header.layer = 4 - layer_bits;
    const auto &bit_rates = version == mpeg_1 ? mpeg_1_bit_rates : low_rate_bit_rates;
    header.bit_rate_bps = 1000 * bit_rates[header.layer - 1][bitrate_index - 1];
    header.sample_rate_hz = sampling_frequencies[sampling_frequency] / (version == mpeg_1   ? 1
                                                                        : version == mpeg_2 ? 2
                                                                                            : 4);
    header.channels = mode == single_channel ? 1 : 2;
    header.frame_bytes = frame_length(header, padding_bit);
    return header;
}

bool confirms(const frame_header &first, const frame_header &next)
{
    return first.version == next.version && first.layer == next.layer &&
           first.sample_rate_hz == next.sample_rate_hz;
}

} // namespace

const char *mpeg_audio_name(bool is_mpeg_1, unsigned layer)
{
    return (is_mpeg_1 ? mpeg_1_names : mpeg_2_names)[layer - 1];
}

std::optional<codec_details> mpeg_audio_details(const uint8_t *start, const uint8_t *fence)
{
    const auto frame = first_frame<frame_header>(start, fence, header_bytes, header_at, confirms);
    if (!frame) return {};
    const frame_header &header = frame->first;
    codec_details details;
    details.name = header.version == mpeg_2_5 ? mpeg_2_5_names[header.layer - 1]
                                              : mpeg_audio_name(header.version == mpeg_1, header.layer);
    details.sample_rate_hz = header.sample_rate_hz;
    details.channels = header.channels;
    // Frames of different rates are a variable bit rate, which no header tells.
    if (!frame->next || frame->next->bit_rate_bps == header.bit_rate_bps)
        details.bit_rate_bps = header.bit_rate_bps;
    return details;
}
