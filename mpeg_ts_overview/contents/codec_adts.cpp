#include "mpeg_ts_overview/contents/codec_adts.h"

#include <iterator>

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_overview/contents/audio_frames.h"

namespace {

constexpr size_t header_bytes = 7;

/// By sampling_frequency_index.
constexpr unsigned sample_rates_hz[] = {96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                        22050, 16000, 12000, 11025, 8000,  7350};

/// By profile_ObjectType; the last is reserved in MPEG-2.
constexpr const char *profiles[] = {"Main", "LC", "SSR", "LTP"};

struct frame_header {
    unsigned id; // 1: MPEG-2, 0: MPEG-4
    unsigned profile;
    unsigned sample_rate_hz;
    unsigned channel_configuration;
    size_t frame_bytes;
};

std::optional<frame_header> header_at(const uint8_t *start, const uint8_t *fence)
{
    bit_reader in(start, fence);
    if (!in.has(header_bytes)) return {};
    frame_header header;
    const unsigned syncword = in.bits(12);
    header.id = in.bits(1);
    const unsigned layer = in.bits(2);
    const unsigned protection_absent = in.bits(1);
    header.profile = in.bits(2);
    const unsigned sampling_frequency_index = in.bits(4);
    in.bits(1); // private_bit
    header.channel_configuration = in.bits(3);
    in.bits(4); // original/copy, home, copyright_identification_bit, copyright_identification_start
    header.frame_bytes = in.bits(13);
    if (syncword != 0xFFF || layer != 0 || sampling_frequency_index >= std::size(sample_rates_hz)) return {};
    if (header.id == 1 && header.profile == 3) return {};
    if (header.frame_bytes < header_bytes + (protection_absent == 1 ? 0 : 2)) return {};
    header.sample_rate_hz = sample_rates_hz[sampling_frequency_index];
    return header;
}

bool confirms(const frame_header &first, const frame_header &next)
{
    return first.id == next.id && first.profile == next.profile &&
           first.sample_rate_hz == next.sample_rate_hz &&
           first.channel_configuration == next.channel_configuration;
}

} // namespace

const char *mpeg_2_aac_profile(unsigned profile)
{
    return profile < 3 ? profiles[profile] : "";
}

void set_aac_channels(unsigned channel_configuration, codec_details &details)
{
    if (channel_configuration == 0 || channel_configuration > 7) return;
    const bool has_low_frequency_channel = channel_configuration >= 6;
    details.channels = !has_low_frequency_channel   ? channel_configuration
                       : channel_configuration == 6 ? 5
                                                    : 7;
    details.low_frequency_channel = has_low_frequency_channel;
}

std::optional<codec_details> adts_details(const uint8_t *start, const uint8_t *fence)
{
    const auto frame = first_frame<frame_header>(start, fence, header_bytes, header_at, confirms);
    if (!frame) return {};
    const frame_header &header = frame->first;
    codec_details details;
    details.name = "AAC";
    details.profile = profiles[header.profile];
    details.sample_rate_hz = header.sample_rate_hz;
    set_aac_channels(header.channel_configuration, details);
    return details;
}
