#include "mpeg_ts_overview/contents/codec_mpeg_video.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_overview/contents/frame_rates.h"
#include "mpeg_ts_overview/contents/start_code.h"

namespace {

constexpr unsigned picture_start_code = 0x00;
constexpr unsigned user_data_start_code = 0xB2;
constexpr unsigned sequence_header_code = 0xB3;
constexpr unsigned extension_start_code = 0xB5;
constexpr unsigned group_start_code = 0xB8;
constexpr unsigned sequence_extension_id = 1;

/// By frame_rate_code, from 1 on: table 6-4.
constexpr frame_rate frame_rates[] = {
    {24000, 1001},
    {24,    1   },
    {25,    1   },
    {30000, 1001},
    {30,    1   },
    {50,    1   },
    {60000, 1001},
    {60,    1   },
};

struct sequence_header {
    unsigned horizontal_size_value;
    unsigned vertical_size_value;
    unsigned frame_rate_code;
    const uint8_t *fence; // the byte behind
};

/// The header behind its start code; nothing when it is cut or holds what the standard forbids.
std::optional<sequence_header> read_sequence_header(const uint8_t *start, const uint8_t *fence)
{
    bit_reader in(start, fence);
    sequence_header header;
    header.horizontal_size_value = in.bits(12);
    header.vertical_size_value = in.bits(12);
    const unsigned aspect_ratio_information = in.bits(4);
    header.frame_rate_code = in.bits(4);
    in.bits(18); // bit_rate_value
    const unsigned marker_bit = in.bits(1);
    in.bits(10); // vbv_buffer_size_value
    in.bits(1);  // constrained_parameters_flag
    const unsigned load_intra_quantiser_matrix = in.bits(1);
    if (load_intra_quantiser_matrix == 1) in.skip(64);
    const unsigned load_non_intra_quantiser_matrix = in.bits(1);
    if (load_non_intra_quantiser_matrix == 1) in.skip(64);

    if (in.bytes_read() > static_cast<size_t>(fence - start) || marker_bit != 1) return {};
    if (aspect_ratio_information == 0 || header.horizontal_size_value == 0 || header.vertical_size_value == 0)
        return {};
    if (header.frame_rate_code == 0 || header.frame_rate_code > std::size(frame_rates)) return {};
    header.fence = in.position();
    return header;
}

codec_details mpeg_1_details(const sequence_header &header)
{
    codec_details details;
    details.name = "MPEG-1 video";
    details.width = header.horizontal_size_value;
    details.height = header.vertical_size_value;
    details.rate = frame_rates[header.frame_rate_code - 1];
    details.interlaced = false;
    return details;
}

/// The sequence_extension behind its start code; nothing when it is another extension, cut or invalid.
std::optional<codec_details> mpeg_2_details(const sequence_header &header, const uint8_t *start,
                                            const uint8_t *fence)
{
    bit_reader in(start, fence);
    const unsigned extension_start_code_identifier = in.bits(4);
    const unsigned profile_and_level_indication = in.bits(8);
    const unsigned progressive_sequence = in.bits(1);
    const unsigned chroma_format = in.bits(2);
    const unsigned horizontal_size_extension = in.bits(2);
    const unsigned vertical_size_extension = in.bits(2);
    in.bits(12); // bit_rate_extension
    const unsigned marker_bit = in.bits(1);
    in.bits(8); // vbv_buffer_size_extension
    in.bits(1); // low_delay
    const unsigned frame_rate_extension_n = in.bits(2);
    const unsigned frame_rate_extension_d = in.bits(5);

    if (in.bytes_read() > static_cast<size_t>(fence - start)) return {};
    if (extension_start_code_identifier != sequence_extension_id || marker_bit != 1 || chroma_format == 0)
        return {};

    const frame_rate &rate = frame_rates[header.frame_rate_code - 1];
    codec_details details;
    details.name = "MPEG-2 video";
    details.width = horizontal_size_extension << 12 | header.horizontal_size_value;
    details.height = vertical_size_extension << 12 | header.vertical_size_value;
    details.rate =
        frame_rate_of(rate.num * (frame_rate_extension_n + 1), rate.den * (frame_rate_extension_d + 1));
    details.interlaced = progressive_sequence == 0;
    details.profile = mpeg_video_profile(profile_and_level_indication);
    details.level = mpeg_video_level(profile_and_level_indication);
    return details;
}

/// What a header and the start code behind it say; p is behind the header's own start code.
std::optional<codec_details> sequence_details(const uint8_t *p, const uint8_t *fence)
{
    const auto header = read_sequence_header(p, fence);
    if (!header) return {};
    const uint8_t *const next = behind_start_code(header->fence, fence);
    if (next == nullptr || next == fence) return {};
    // Between a header and the next start code stand zeros only.
    for (const uint8_t *stuffing = header->fence; stuffing < next - 3; ++stuffing)
        if (*stuffing != 0) return {};

    if (*next == extension_start_code) return mpeg_2_details(*header, next + 1, fence);
    if (*next == picture_start_code || *next == user_data_start_code || *next == group_start_code)
        return mpeg_1_details(*header);
    return {};
}

} // namespace

const char *mpeg_video_profile(unsigned profile_and_level_indication)
{
    switch (profile_and_level_indication >> 4) {
    case 1:
        return "High";
    case 2:
        return "Spatially Scalable";
    case 3:
        return "SNR Scalable";
    case 4:
        return "Main";
    case 5:
        return "Simple";
    case 8:
        break;
    default:
        return "";
    }
    switch (profile_and_level_indication) {
    case 0x82:
    case 0x85:
        return "4:2:2";
    case 0x8A:
    case 0x8B:
    case 0x8D:
    case 0x8E:
        return "Multi-view";
    default:
        return "";
    }
}

const char *mpeg_video_level(unsigned profile_and_level_indication)
{
    switch (profile_and_level_indication) {
    case 0x82:
    case 0x8A:
        return "High";
    case 0x8B:
        return "High 1440";
    case 0x85:
    case 0x8D:
        return "Main";
    case 0x8E:
        return "Low";
    default:
        break;
    }
    if (profile_and_level_indication >= 0x80) return "";
    switch (profile_and_level_indication & 0x0F) {
    case 4:
        return "High";
    case 6:
        return "High 1440";
    case 8:
        return "Main";
    case 10:
        return "Low";
    default:
        return "";
    }
}

std::optional<frame_rate> mpeg_video_frame_rate(unsigned frame_rate_code)
{
    if (frame_rate_code == 0 || frame_rate_code > std::size(frame_rates)) return {};
    return frame_rates[frame_rate_code - 1];
}

std::optional<codec_details> mpeg_video_details(const uint8_t *start, const uint8_t *fence)
{
    for (const uint8_t *p = behind_start_code(start, fence); p != nullptr && p < fence;
         p = behind_start_code(p, fence)) {
        if (*p != sequence_header_code) continue;
        if (auto details = sequence_details(p + 1, fence)) return details;
    }
    return {};
}
