#include "mpeg_ts_overview/tables/stream_type.h"

#include "mpeg_ts_overview/tables/descriptor_loop.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr uint8_t video_types[] = {0x01, 0x02, 0x10, 0x1B, 0x1E, 0x1F, 0x20, 0x21,
                                   0x24, 0x25, 0x33, 0x42, 0xD1, 0xD2, 0xD4, 0xEA};
constexpr uint8_t audio_types[] = {0x03, 0x04, 0x0F, 0x11, 0x1C, 0x2D, 0x2E, 0x81, 0x87};
constexpr uint8_t blu_ray_audio_types[] = {0x80, 0x82, 0x83, 0x84, 0x85, 0x86, 0xA1, 0xA2};
constexpr uint8_t private_pes_type = 0x06;
constexpr uint8_t splice_type = 0x86;

constexpr uint8_t video_stream_descriptor = 0x02;
constexpr uint8_t registration_descriptor = 0x05;
constexpr uint8_t AVC_video_descriptor = 0x28;
constexpr uint8_t HEVC_video_descriptor = 0x38;
constexpr uint8_t AC_3_descriptor = 0x6A;
constexpr uint8_t enhanced_AC_3_descriptor = 0x7A;
constexpr uint8_t DTS_descriptor = 0x7B;
constexpr uint8_t AAC_descriptor = 0x7C;
constexpr uint8_t extension_descriptor = 0x7F;
constexpr uint8_t AC_4_descriptor_extension = 0x15;

template <size_t count>
bool is_among(uint8_t type, const uint8_t (&types)[count])
{
    return std::find(std::begin(types), std::end(types), type) != std::end(types);
}

bool is_private_audio(byte_range ES_info)
{
    descriptor_loop descriptors(ES_info);
    descriptor next;
    while (descriptors.next(next)) {
        switch (next.tag) {
        case AC_3_descriptor:
        case enhanced_AC_3_descriptor:
        case DTS_descriptor:
        case AAC_descriptor:
            return true;
        case extension_descriptor:
            if (next.body.size() >= 1 && next.body.start[0] == AC_4_descriptor_extension) return true;
            break;
        default:
            break;
        }
    }
    return is_registered(ES_info, "AC-3") || is_registered(ES_info, "EAC3") ||
           is_registered(ES_info, "DTS1") || is_registered(ES_info, "DTS2") ||
           is_registered(ES_info, "DTS3") || is_registered(ES_info, "Opus");
}

/// still_picture_flag, ISO/IEC 13818-1 2.6.2; AVC_still_present, 2.6.64; HEVC_still_present_flag, 2.6.95.
bool says_still_pictures(byte_range ES_info)
{
    descriptor_loop descriptors(ES_info);
    descriptor next;
    while (descriptors.next(next)) {
        bit_reader in = next.body.reader();
        if (next.tag == video_stream_descriptor) {
            in.bits(7); // multiple_frame_rate_flag to constrained_parameter_flag
            if (in.bits(1) != 0) return true;
        } else if (next.tag == AVC_video_descriptor) {
            in.skip(3); // profile_idc to level_idc
            if (in.bits(1) != 0) return true;
        } else if (next.tag == HEVC_video_descriptor) {
            in.skip(12); // profile_space to level_idc
            in.bits(1);  // temporal_layer_subset_flag
            if (in.bits(1) != 0) return true;
        }
    }
    return false;
}

} // namespace

bool is_registered(byte_range loop, const char (&format_identifier)[5])
{
    descriptor_loop descriptors(loop);
    descriptor next;
    while (descriptors.next(next)) {
        if (next.tag == registration_descriptor && next.body.size() >= 4 &&
            std::memcmp(next.body.start, format_identifier, 4) == 0)
            return true;
    }
    return false;
}

stream_nature nature_of(const pmt_entry &stream, bool blu_ray_program)
{
    stream_nature nature;
    const uint8_t type = stream.stream_type;

    nature.splices = type == splice_type && !blu_ray_program;
    if (nature.splices) return nature;
    const bool blu_ray = blu_ray_program || is_registered(stream.ES_info, "HDMV");
    if (is_among(type, video_types)) {
        nature.kind = stream_kind::video;
        nature.still_pictures = says_still_pictures(stream.ES_info);
    } else if (is_among(type, audio_types) || (blu_ray && is_among(type, blu_ray_audio_types)) ||
               (type == private_pes_type && is_private_audio(stream.ES_info))) {
        nature.kind = stream_kind::audio;
    }
    return nature;
}
