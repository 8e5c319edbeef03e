#include "mpeg_ts_overview/contents/codec_descriptors.h"

#include "mpeg_ts_overview/contents/codec_ac3.h"
#include "mpeg_ts_overview/contents/codec_adts.h"
#include "mpeg_ts_overview/contents/codec_h264.h"
#include "mpeg_ts_overview/contents/codec_hevc.h"
#include "mpeg_ts_overview/contents/codec_mpeg_audio.h"
#include "mpeg_ts_overview/contents/codec_mpeg_video.h"
#include "mpeg_ts_overview/tables/descriptor_loop.h"

#include <cstdint>
#include <iterator>

namespace {

using optional_details = std::optional<codec_details>;

/// ISO/IEC 13818-1 2.6.2.
optional_details of_video_stream(bit_reader in)
{
    codec_details details;
    if (!in.has(1)) return {};
    const unsigned multiple_frame_rate_flag = in.bits(1);
    const unsigned frame_rate_code = in.bits(4);
    const unsigned MPEG_1_only_flag = in.bits(1);
    in.bits(1); // constrained_parameter_flag
    in.bits(1); // still_picture_flag
    if (multiple_frame_rate_flag == 0) details.rate = mpeg_video_frame_rate(frame_rate_code);
    details.name = MPEG_1_only_flag == 1 ? "MPEG-1 video" : "MPEG-2 video";
    if (MPEG_1_only_flag == 1) return details;

    if (!in.has(2)) return {};
    const unsigned profile_and_level_indication = in.bits(8);
    in.bits(2); // chroma_format
    const unsigned frame_rate_extension_flag = in.bits(1);
    if (frame_rate_extension_flag == 1) details.rate.reset();
    details.profile = mpeg_video_profile(profile_and_level_indication);
    details.level = mpeg_video_level(profile_and_level_indication);
    return details;
}

/// ISO/IEC 13818-1 2.6.4.
optional_details of_audio_stream(bit_reader in)
{
    codec_details details;
    if (!in.has(1)) return {};
    in.bits(1); // free_format_flag
    const unsigned ID = in.bits(1);
    const unsigned layer = in.bits(2);
    if (layer == 0) return {};
    details.name = mpeg_audio_name(ID == 1, 4 - layer);
    return details;
}

/// ISO/IEC 13818-1 2.6.64.
optional_details of_avc_video(bit_reader in)
{
    codec_details details;
    if (!in.has(4)) return {};
    const unsigned profile_idc = in.bits(8);
    const unsigned constraint_set_flags = in.bits(6);
    in.bits(2); // AVC_compatible_flags
    const unsigned level_idc = in.bits(8);
    details.name = "H.264";
    details.profile = h264_profile(profile_idc, constraint_set_flags);
    details.level = h264_level(profile_idc, constraint_set_flags, level_idc);
    return details;
}

/// ISO/IEC 13818-1 2.6.95.
optional_details of_hevc_video(bit_reader in)
{
    codec_details details;
    if (!in.has(13)) return {};
    const unsigned profile_space = in.bits(2);
    const unsigned tier_flag = in.bits(1);
    const unsigned profile_idc = in.bits(5);
    in.bits(32); // profile_compatibility_indication
    const unsigned progressive_source_flag = in.bits(1);
    const unsigned interlaced_source_flag = in.bits(1);
    in.bits64(46); // non_packed_constraint_flag, frame_only_constraint_flag, reserved_zero_44bits
    const unsigned level_idc = in.bits(8);
    details.name = "HEVC";
    if (progressive_source_flag != interlaced_source_flag) details.interlaced = interlaced_source_flag == 1;
    if (profile_space != 0) return details;
    details.profile = hevc_profile(profile_idc);
    details.level = hevc_level(tier_flag == 1, level_idc);
    return details;
}

/// ISO/IEC 13818-1 2.6.68.
optional_details of_mpeg_2_aac_audio(bit_reader in)
{
    codec_details details;
    if (!in.has(3)) return {};
    const unsigned MPEG_2_AAC_profile = in.bits(8);
    const unsigned MPEG_2_AAC_channel_configuration = in.bits(8);
    details.name = "AAC";
    details.profile = mpeg_2_aac_profile(MPEG_2_AAC_profile);
    set_aac_channels(MPEG_2_AAC_channel_configuration, details);
    return details;
}

/// EN 300 468 D.3 and D.5: both begin with component_type_flag and component_type, table D.1.
optional_details of_dvb_ac3(bit_reader in)
{
    constexpr unsigned channels[] = {1, 2, 2, 2}; // mono, 1+1, 2, 2 of matrixed surround; above: more
    codec_details details;
    if (!in.has(2)) return {};
    const unsigned component_type_flag = in.bits(1);
    in.bits(7); // other flags, reserved
    const unsigned component_type = in.bits(8);
    const unsigned number_of_channels = component_type & 7;
    if (component_type_flag == 0 || number_of_channels >= std::size(channels)) return {};
    details.channels = channels[number_of_channels];
    return details;
}

/// ATSC A/52 Annex A4.3.
optional_details of_atsc_ac3(bit_reader in)
{
    constexpr unsigned exact_sample_rates = 3;
    constexpr unsigned exact_channels = 8; // above: at most so many
    codec_details details;
    if (!in.has(3)) return {};
    const unsigned sample_rate_code = in.bits(3);
    in.bits(5); // bsid
    const unsigned bit_rate_code = in.bits(6);
    in.bits(2); // surround_mode
    in.bits(3); // bsmod
    const unsigned num_channels = in.bits(4);
    if (sample_rate_code < exact_sample_rates) details.sample_rate_hz = ac3_sample_rate_hz(sample_rate_code);
    details.bit_rate_bps = ac3_bit_rate_bps(bit_rate_code);
    if (num_channels < exact_channels) details.channels = ac3_channels(num_channels);
    return details;
}

struct known_descriptor {
    codec_family family;
    uint8_t tag;
    optional_details (*read)(bit_reader in);
};

constexpr known_descriptor known_descriptors[] = {
    {codec_family::mpeg_video, 0x02, of_video_stream    },
    {codec_family::mpeg_audio, 0x03, of_audio_stream    },
    {codec_family::h264,       0x28, of_avc_video       },
    {codec_family::adts,       0x2B, of_mpeg_2_aac_audio},
    {codec_family::hevc,       0x38, of_hevc_video      },
    {codec_family::ac3,        0x6A, of_dvb_ac3         },
    {codec_family::ac3,        0x7A, of_dvb_ac3         },
    {codec_family::ac3,        0x81, of_atsc_ac3        },
};

} // namespace

std::optional<codec_details> described_details(byte_range ES_info, codec_family family)
{
    descriptor_loop descriptors(ES_info);
    descriptor next;
    while (descriptors.next(next))
        for (const known_descriptor &known : known_descriptors) {
            if (known.tag != next.tag || known.family != family) continue;
            if (optional_details details = known.read(next.body.reader())) return details;
        }
    return {};
}
