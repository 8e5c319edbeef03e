#include "mpeg_ts_overview/contents/codec_h264.h"

#include "mpeg_ts_overview/contents/frame_rates.h"
#include "mpeg_ts_overview/contents/nal_unit.h"

namespace {

constexpr unsigned nal_unit_type_sps = 7;
constexpr unsigned extended_sar = 255;
/// More than level 6.2 allows in either direction, in macroblocks.
constexpr unsigned most_macroblocks = 1056;

/// In the six bits of constraint_set0_flag to constraint_set5_flag.
constexpr unsigned constraint_set1_flag = 0x10;
constexpr unsigned constraint_set3_flag = 0x04;
constexpr unsigned constraint_set4_flag = 0x02;
constexpr unsigned constraint_set5_flag = 0x01;

bool has_chroma_format(unsigned profile_idc)
{
    switch (profile_idc) {
    case 44:
    case 83:
    case 86:
    case 100:
    case 110:
    case 118:
    case 122:
    case 128:
    case 134:
    case 135:
    case 138:
    case 139:
    case 244:
        return true;
    default:
        return false;
    }
}

/// 7.3.2.1.1.1, read for its length only.
void skip_scaling_list(rbsp_reader &in, unsigned size)
{
    int last_scale = 8;
    int next_scale = 8;
    for (unsigned j = 0; j < size && in.is_good(); ++j) {
        if (next_scale != 0) {
            const int delta_scale = in.se();
            next_scale = (last_scale + delta_scale % 256 + 256) % 256;
        }
        last_scale = next_scale == 0 ? last_scale : next_scale;
    }
}

void skip_scaling_matrix(rbsp_reader &in, unsigned chroma_format_idc)
{
    const unsigned lists = chroma_format_idc != 3 ? 8 : 12;
    for (unsigned i = 0; i < lists; ++i) {
        const bool seq_scaling_list_present_flag = in.flag();
        if (seq_scaling_list_present_flag) skip_scaling_list(in, i < 6 ? 16 : 64);
    }
}

/// E.1.2, read for its length only.
void skip_hrd_parameters(rbsp_reader &in)
{
    const unsigned cpb_cnt_minus1 = in.ue();
    in.u(4); // bit_rate_scale
    in.u(4); // cpb_size_scale
    for (unsigned i = 0; i <= cpb_cnt_minus1 && in.is_good(); ++i) {
        in.ue();   // bit_rate_value_minus1
        in.ue();   // cpb_size_value_minus1
        in.flag(); // cbr_flag
    }
    in.u(5); // initial_cpb_removal_delay_length_minus1
    in.u(5); // cpb_removal_delay_length_minus1
    in.u(5); // dpb_output_delay_length_minus1
    in.u(5); // time_offset_length
}

void skip_video_signal_type(rbsp_reader &in)
{
    in.u(3);   // video_format
    in.flag(); // video_full_range_flag
    const bool colour_description_present_flag = in.flag();
    if (colour_description_present_flag) in.skip(24);
}

/// E.1.1: the frame rate of the timing information, if there is any.
std::optional<frame_rate> read_vui_parameters(rbsp_reader &in)
{
    std::optional<frame_rate> rate;
    const bool aspect_ratio_info_present_flag = in.flag();
    if (aspect_ratio_info_present_flag && in.u(8) == extended_sar) in.skip(32);
    const bool overscan_info_present_flag = in.flag();
    if (overscan_info_present_flag) in.flag();
    const bool video_signal_type_present_flag = in.flag();
    if (video_signal_type_present_flag) skip_video_signal_type(in);
    const bool chroma_loc_info_present_flag = in.flag();
    if (chroma_loc_info_present_flag) {
        in.ue(); // chroma_sample_loc_type_top_field
        in.ue(); // chroma_sample_loc_type_bottom_field
    }
    const bool timing_info_present_flag = in.flag();
    if (timing_info_present_flag) {
        const unsigned long long num_units_in_tick = in.u(32);
        const unsigned long long time_scale = in.u(32);
        in.flag(); // fixed_frame_rate_flag
        rate = frame_rate_of(time_scale, 2 * num_units_in_tick);
    }
    const bool nal_hrd_parameters_present_flag = in.flag();
    if (nal_hrd_parameters_present_flag) skip_hrd_parameters(in);
    const bool vcl_hrd_parameters_present_flag = in.flag();
    if (vcl_hrd_parameters_present_flag) skip_hrd_parameters(in);
    if (nal_hrd_parameters_present_flag || vcl_hrd_parameters_present_flag) in.flag(); // low_delay_hrd_flag
    in.flag(); // pic_struct_present_flag
    const bool bitstream_restriction_flag = in.flag();
    if (bitstream_restriction_flag) {
        in.flag(); // motion_vectors_over_pic_boundaries_flag
        in.ue();   // max_bytes_per_pic_denom
        in.ue();   // max_bits_per_mb_denom
        in.ue();   // log2_max_mv_length_horizontal
        in.ue();   // log2_max_mv_length_vertical
        in.ue();   // max_num_reorder_frames
        in.ue();   // max_dec_frame_buffering
    }
    return rate;
}

void skip_pic_order_cnt(rbsp_reader &in)
{
    const unsigned pic_order_cnt_type = in.ue();
    if (pic_order_cnt_type == 0) in.ue(); // log2_max_pic_order_cnt_lsb_minus4
    if (pic_order_cnt_type != 1) return;
    in.flag(); // delta_pic_order_always_zero_flag
    in.se();   // offset_for_non_ref_pic
    in.se();   // offset_for_top_to_bottom_field
    const unsigned num_ref_frames_in_pic_order_cnt_cycle = in.ue();
    for (unsigned i = 0; i < num_ref_frames_in_pic_order_cnt_cycle && in.is_good(); ++i) in.se();
}

/// The chroma_format_idc as the cropping counts it: 0 for separate colour planes.
unsigned read_chroma_format(rbsp_reader &in)
{
    const unsigned chroma_format_idc = in.ue();
    const bool separate_colour_plane_flag = chroma_format_idc == 3 && in.flag();
    in.ue();   // bit_depth_luma_minus8
    in.ue();   // bit_depth_chroma_minus8
    in.flag(); // qpprime_y_zero_transform_bypass_flag
    const bool seq_scaling_matrix_present_flag = in.flag();
    if (seq_scaling_matrix_present_flag) skip_scaling_matrix(in, chroma_format_idc);
    return separate_colour_plane_flag ? 0 : chroma_format_idc;
}

/// The size behind cropping (7.4.2.1.1); false when it is none.
bool read_size(rbsp_reader &in, unsigned chroma_format_idc, codec_details *details)
{
    const unsigned pic_width_in_mbs_minus1 = in.ue();
    const unsigned pic_height_in_map_units_minus1 = in.ue();
    const bool frame_mbs_only_flag = in.flag();
    if (!frame_mbs_only_flag) in.flag(); // mb_adaptive_frame_field_flag
    in.flag();                           // direct_8x8_inference_flag
    unsigned crop[4] = {};               // left, right, top, bottom
    const bool frame_cropping_flag = in.flag();
    if (frame_cropping_flag)
        for (unsigned &offset : crop) offset = in.ue();
    if (pic_width_in_mbs_minus1 >= most_macroblocks || pic_height_in_map_units_minus1 >= most_macroblocks)
        return false;

    const unsigned fields = frame_mbs_only_flag ? 1 : 2;
    const unsigned crop_unit_x = chroma_format_idc == 1 || chroma_format_idc == 2 ? 2 : 1;
    const unsigned crop_unit_y = (chroma_format_idc == 1 ? 2 : 1) * fields;
    const unsigned width = 16 * (pic_width_in_mbs_minus1 + 1);
    const unsigned height = 16 * (pic_height_in_map_units_minus1 + 1) * fields;
    const unsigned long long cropped_x = crop_unit_x * (static_cast<unsigned long long>(crop[0]) + crop[1]);
    const unsigned long long cropped_y = crop_unit_y * (static_cast<unsigned long long>(crop[2]) + crop[3]);
    if (cropped_x >= width || cropped_y >= height) return false;
    details->width = width - static_cast<unsigned>(cropped_x);
    details->height = height - static_cast<unsigned>(cropped_y);
    details->interlaced = !frame_mbs_only_flag;
    return true;
}

std::optional<codec_details> read_seq_parameter_set(rbsp_reader &in)
{
    const unsigned profile_idc = in.u(8);
    const unsigned constraint_set_flags = in.u(6);
    in.u(2); // reserved_zero_2bits
    const unsigned level_idc = in.u(8);
    const unsigned seq_parameter_set_id = in.ue();
    const unsigned chroma_format_idc = has_chroma_format(profile_idc) ? read_chroma_format(in) : 1;
    in.ue(); // log2_max_frame_num_minus4
    skip_pic_order_cnt(in);
    in.ue();   // max_num_ref_frames
    in.flag(); // gaps_in_frame_num_value_allowed_flag

    codec_details details;
    details.name = "H.264";
    if (!read_size(in, chroma_format_idc, &details)) return {};
    const bool vui_parameters_present_flag = in.flag();
    if (vui_parameters_present_flag) details.rate = read_vui_parameters(in);
    if (seq_parameter_set_id > 31 || chroma_format_idc > 3 || !in.ends_well()) return {};
    details.profile = h264_profile(profile_idc, constraint_set_flags);
    details.level = h264_level(profile_idc, constraint_set_flags, level_idc);
    return details;
}

} // namespace

const char *h264_profile(unsigned profile_idc, unsigned constraint_set_flags)
{
    const auto has = [&](unsigned flag) { return (constraint_set_flags & flag) != 0; };
    switch (profile_idc) {
    case 44:
        return "CAVLC 4:4:4 Intra";
    case 66:
        return has(constraint_set1_flag) ? "Constrained Baseline" : "Baseline";
    case 77:
        return "Main";
    case 83:
        return "Scalable Baseline";
    case 86:
        return "Scalable High";
    case 88:
        return "Extended";
    case 100:
        return !has(constraint_set4_flag)  ? "High"
               : has(constraint_set5_flag) ? "Constrained High"
                                           : "Progressive High";
    case 110:
        return has(constraint_set3_flag) ? "High 10 Intra" : "High 10";
    case 118:
        return "Multiview High";
    case 122:
        return has(constraint_set3_flag) ? "High 4:2:2 Intra" : "High 4:2:2";
    case 128:
        return "Stereo High";
    case 244:
        return has(constraint_set3_flag) ? "High 4:4:4 Intra" : "High 4:4:4 Predictive";
    default:
        return "";
    }
}

std::string h264_level(unsigned profile_idc, unsigned constraint_set_flags, unsigned level_idc)
{
    const bool has_set3 = (constraint_set_flags & constraint_set3_flag) != 0;
    const bool can_be_1b = profile_idc == 66 || profile_idc == 77 || profile_idc == 88;
    if (level_idc == 9 || (level_idc == 11 && can_be_1b && has_set3)) return "1b";
    return std::to_string(level_idc / 10) + "." + std::to_string(level_idc % 10);
}

std::optional<codec_details> h264_details(const uint8_t *start, const uint8_t *fence)
{
    nal_unit nal;
    while (next_nal_unit(&start, fence, &nal)) {
        if (nal.start == nal.fence) continue;
        bit_reader header(nal.start, nal.fence);
        const unsigned forbidden_zero_bit = header.bits(1);
        const unsigned nal_ref_idc = header.bits(2);
        const unsigned nal_unit_type = header.bits(5);
        if (forbidden_zero_bit != 0 || nal_ref_idc == 0 || nal_unit_type != nal_unit_type_sps) continue;
        rbsp_reader payload(nal.start + 1, nal.fence);
        if (auto details = read_seq_parameter_set(payload)) return details;
    }
    return {};
}
