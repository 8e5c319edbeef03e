#include "mpeg_ts_overview/contents/codec_hevc.h"

#include "mpeg_ts_overview/contents/frame_rates.h"
#include "mpeg_ts_overview/contents/hevc_syntax.h"
#include "mpeg_ts_overview/contents/nal_unit.h"

namespace {

constexpr unsigned nal_unit_type_vps = 32;
constexpr unsigned nal_unit_type_sps = 33;
constexpr unsigned extended_sar = 255;
/// More than level 6.2 allows in either direction.
constexpr unsigned most_samples = 16888;

/// Clock ticks, each a picture: E.2.1 and 7.3.2.1.
std::optional<frame_rate> read_timing(rbsp_reader &in, bool field_seq_flag)
{
    const unsigned long long num_units_in_tick = in.u(32);
    const unsigned long long time_scale = in.u(32);
    return frame_rate_of(time_scale, (field_seq_flag ? 2 : 1) * num_units_in_tick);
}

/// The frame rate of a video_parameter_set_rbsp, 7.3.2.1, if it has one; pictures are taken for frames.
std::optional<frame_rate> read_video_parameter_set(rbsp_reader &in)
{
    in.u(4); // vps_video_parameter_set_id
    in.u(2); // vps_base_layer_internal_flag, vps_base_layer_available_flag
    in.u(6); // vps_max_layers_minus1
    const unsigned vps_max_sub_layers_minus1 = in.u(3);
    in.flag(); // vps_temporal_id_nesting_flag
    in.u(16);  // vps_reserved_0xffff_16bits
    if (vps_max_sub_layers_minus1 > 6) return {};
    read_profile_tier_level(in, vps_max_sub_layers_minus1);
    skip_sub_layer_ordering(in, vps_max_sub_layers_minus1);
    const unsigned vps_max_layer_id = in.u(6);
    const unsigned vps_num_layer_sets_minus1 = in.ue();
    if (vps_num_layer_sets_minus1 > 1023) return {};
    for (unsigned i = 1; i <= vps_num_layer_sets_minus1; ++i)
        in.skip(vps_max_layer_id + 1); // layer_id_included_flag
    const bool vps_timing_info_present_flag = in.flag();
    if (!vps_timing_info_present_flag) return {};
    const auto rate = read_timing(in, false);
    return in.is_good() ? rate : std::nullopt;
}

struct vui {
    bool field_seq_flag = false;
    std::optional<frame_rate> rate;
};

/// E.2.1.
vui read_vui_parameters(rbsp_reader &in, unsigned max_sub_layers_minus1)
{
    vui read;
    const bool aspect_ratio_info_present_flag = in.flag();
    if (aspect_ratio_info_present_flag && in.u(8) == extended_sar) in.skip(32);
    const bool overscan_info_present_flag = in.flag();
    if (overscan_info_present_flag) in.flag();
    const bool video_signal_type_present_flag = in.flag();
    if (video_signal_type_present_flag) {
        in.u(3);   // video_format
        in.flag(); // video_full_range_flag
        const bool colour_description_present_flag = in.flag();
        if (colour_description_present_flag) in.skip(24);
    }
    const bool chroma_loc_info_present_flag = in.flag();
    if (chroma_loc_info_present_flag) {
        in.ue(); // chroma_sample_loc_type_top_field
        in.ue(); // chroma_sample_loc_type_bottom_field
    }
    in.flag(); // neutral_chroma_indication_flag
    read.field_seq_flag = in.flag();
    in.flag(); // frame_field_info_present_flag
    const bool default_display_window_flag = in.flag();
    if (default_display_window_flag)
        for (unsigned i = 0; i < 4; ++i) in.ue();
    const bool vui_timing_info_present_flag = in.flag();
    if (vui_timing_info_present_flag) {
        read.rate = read_timing(in, read.field_seq_flag);
        const bool vui_poc_proportional_to_timing_flag = in.flag();
        if (vui_poc_proportional_to_timing_flag) in.ue();
        const bool vui_hrd_parameters_present_flag = in.flag();
        if (vui_hrd_parameters_present_flag) skip_hrd_parameters(in, max_sub_layers_minus1);
    }
    const bool bitstream_restriction_flag = in.flag();
    if (bitstream_restriction_flag) {
        in.u(3); // tiles_fixed_structure_flag, motion_vectors_over_pic_boundaries_flag,
                 // restricted_ref_pic_lists_flag
        in.ue(); // min_spatial_segmentation_idc
        in.ue(); // max_bytes_per_pic_denom
        in.ue(); // max_bits_per_min_cu_denom
        in.ue(); // log2_max_mv_length_horizontal
        in.ue(); // log2_max_mv_length_vertical
    }
    return read;
}

/// The size behind the conformance window; false when it is none.
bool read_size(rbsp_reader &in, codec_details *details)
{
    const unsigned chroma_format_idc = in.ue();
    const bool separate_colour_plane_flag = chroma_format_idc == 3 && in.flag();
    const unsigned pic_width_in_luma_samples = in.ue();
    const unsigned pic_height_in_luma_samples = in.ue();
    unsigned offsets[4] = {}; // left, right, top, bottom
    const bool conformance_window_flag = in.flag();
    if (conformance_window_flag)
        for (unsigned &offset : offsets) offset = in.ue();
    if (chroma_format_idc > 3 || pic_width_in_luma_samples > most_samples ||
        pic_height_in_luma_samples > most_samples)
        return false;

    const bool is_subsampled = !separate_colour_plane_flag;
    const unsigned sub_width_c = is_subsampled && (chroma_format_idc == 1 || chroma_format_idc == 2) ? 2 : 1;
    const unsigned sub_height_c = is_subsampled && chroma_format_idc == 1 ? 2 : 1;
    const unsigned long long cut_x = sub_width_c * (static_cast<unsigned long long>(offsets[0]) + offsets[1]);
    const unsigned long long cut_y =
        sub_height_c * (static_cast<unsigned long long>(offsets[2]) + offsets[3]);
    if (cut_x >= pic_width_in_luma_samples || cut_y >= pic_height_in_luma_samples) return false;
    details->width = pic_width_in_luma_samples - static_cast<unsigned>(cut_x);
    details->height = pic_height_in_luma_samples - static_cast<unsigned>(cut_y);
    return true;
}

void skip_coding_tools(rbsp_reader &in)
{
    in.ue(); // log2_min_luma_coding_block_size_minus3
    in.ue(); // log2_diff_max_min_luma_coding_block_size
    in.ue(); // log2_min_luma_transform_block_size_minus2
    in.ue(); // log2_diff_max_min_luma_transform_block_size
    in.ue(); // max_transform_hierarchy_depth_inter
    in.ue(); // max_transform_hierarchy_depth_intra
    const bool scaling_list_enabled_flag = in.flag();
    if (scaling_list_enabled_flag) {
        const bool sps_scaling_list_data_present_flag = in.flag();
        if (sps_scaling_list_data_present_flag) skip_scaling_list_data(in);
    }
    in.flag(); // amp_enabled_flag
    in.flag(); // sample_adaptive_offset_enabled_flag
    const bool pcm_enabled_flag = in.flag();
    if (!pcm_enabled_flag) return;
    in.u(4);   // pcm_sample_bit_depth_luma_minus1
    in.u(4);   // pcm_sample_bit_depth_chroma_minus1
    in.ue();   // log2_min_pcm_luma_coding_block_size_minus3
    in.ue();   // log2_diff_max_min_pcm_luma_coding_block_size
    in.flag(); // pcm_loop_filter_disabled_flag
}

void skip_long_term_ref_pics(rbsp_reader &in, unsigned log2_max_pic_order_cnt_lsb)
{
    const bool long_term_ref_pics_present_flag = in.flag();
    if (!long_term_ref_pics_present_flag) return;
    const unsigned num_long_term_ref_pics_sps = in.ue();
    for (unsigned i = 0; i < num_long_term_ref_pics_sps && in.is_good(); ++i) {
        in.u(log2_max_pic_order_cnt_lsb); // lt_ref_pic_poc_lsb_sps
        in.flag();                        // used_by_curr_pic_lt_sps_flag
    }
}

/// Known only where the source flags tell one from the other, or pictures are fields.
std::optional<bool> is_interlaced(const profile_tier_level &levels, bool field_seq_flag)
{
    if (field_seq_flag) return true;
    if (levels.general_progressive_source_flag == levels.general_interlaced_source_flag) return {};
    return levels.general_interlaced_source_flag;
}

/// 7.3.2.2; vps_rate is the rate where this set has none.
std::optional<codec_details> read_seq_parameter_set(rbsp_reader &in, std::optional<frame_rate> vps_rate)
{
    in.u(4); // sps_video_parameter_set_id
    const unsigned sps_max_sub_layers_minus1 = in.u(3);
    in.flag(); // sps_temporal_id_nesting_flag
    if (sps_max_sub_layers_minus1 > 6) return {};
    const profile_tier_level levels = read_profile_tier_level(in, sps_max_sub_layers_minus1);
    const unsigned sps_seq_parameter_set_id = in.ue();
    codec_details details;
    details.name = "HEVC";
    if (!read_size(in, &details)) return {};
    in.ue(); // bit_depth_luma_minus8
    in.ue(); // bit_depth_chroma_minus8
    const unsigned log2_max_pic_order_cnt_lsb_minus4 = in.ue();
    skip_sub_layer_ordering(in, sps_max_sub_layers_minus1);
    skip_coding_tools(in);
    if (sps_seq_parameter_set_id > 15 || log2_max_pic_order_cnt_lsb_minus4 > 12) return {};
    if (!skip_short_term_ref_pic_sets(in)) return {};
    skip_long_term_ref_pics(in, log2_max_pic_order_cnt_lsb_minus4 + 4);
    in.flag(); // sps_temporal_mvp_enabled_flag
    in.flag(); // strong_intra_smoothing_enabled_flag
    vui display;
    const bool vui_parameters_present_flag = in.flag();
    if (vui_parameters_present_flag) display = read_vui_parameters(in, sps_max_sub_layers_minus1);
    // Extensions have no end that could be checked.
    const bool sps_extension_present_flag = in.flag();
    if (sps_extension_present_flag ? !in.is_good() : !in.ends_well()) return {};

    if (!display.rate && vps_rate)
        display.rate = frame_rate_of(vps_rate->num, vps_rate->den * (display.field_seq_flag ? 2 : 1));
    if (display.field_seq_flag) details.height = *details.height * 2;
    details.rate = display.rate;
    details.interlaced = is_interlaced(levels, display.field_seq_flag);
    if (levels.general_profile_space == 0) {
        details.profile = hevc_profile(levels.general_profile_idc);
        details.level = hevc_level(levels.general_tier_flag, levels.general_level_idc);
    }
    return details;
}

} // namespace

const char *hevc_profile(unsigned general_profile_idc)
{
    switch (general_profile_idc) {
    case 1:
        return "Main";
    case 2:
        return "Main 10";
    case 3:
        return "Main Still Picture";
    case 4:
        return "Range Extensions";
    case 5:
        return "High Throughput";
    case 9:
        return "Screen Content Coding";
    case 11:
        return "High Throughput Screen Content Coding";
    default:
        return "";
    }
}

std::string hevc_level(bool general_tier_flag, unsigned general_level_idc)
{
    const unsigned tenths = general_level_idc / 3;
    const std::string level = std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
    return general_tier_flag ? level + " high tier" : level;
}

std::optional<codec_details> hevc_details(const uint8_t *start, const uint8_t *fence)
{
    std::optional<frame_rate> vps_rate;
    nal_unit nal;
    while (next_nal_unit(&start, fence, &nal)) {
        if (nal.fence - nal.start < 2) continue;
        bit_reader header(nal.start, nal.fence);
        const unsigned forbidden_zero_bit = header.bits(1);
        const unsigned nal_unit_type = header.bits(6);
        const unsigned nuh_layer_id = header.bits(6);
        const unsigned nuh_temporal_id_plus1 = header.bits(3);
        if (forbidden_zero_bit != 0 || nuh_layer_id != 0 || nuh_temporal_id_plus1 != 1) continue;
        rbsp_reader payload(nal.start + 2, nal.fence);
        if (nal_unit_type == nal_unit_type_vps) vps_rate = read_video_parameter_set(payload);
        if (nal_unit_type != nal_unit_type_sps) continue;
        if (auto details = read_seq_parameter_set(payload, vps_rate)) return details;
    }
    return {};
}
