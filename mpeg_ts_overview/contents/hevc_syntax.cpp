#include "mpeg_ts_overview/contents/hevc_syntax.h"

#include <algorithm>

namespace {

constexpr unsigned most_sets = 64;
constexpr unsigned most_pictures = 16;

/// A candidate short-term reference picture set: distances from the current picture in picture order.
struct ref_pic_set {
    int delta_poc[most_pictures]; // nearest first: those before the current picture, then those behind
    unsigned negative_pics = 0;
    unsigned delta_pocs = 0;

    void add(int delta)
    {
        if (delta_pocs < most_pictures) delta_poc[delta_pocs++] = delta;
    }
};

/// The set by its neighbour's, 7.4.8 (7-61) and (7-62).
ref_pic_set predicted_set(rbsp_reader &in, const ref_pic_set &ref)
{
    const bool delta_rps_sign = in.flag();
    const auto abs_delta_rps = static_cast<int>(in.ue() & 0x7FFF) + 1;
    const int delta_rps = delta_rps_sign ? -abs_delta_rps : abs_delta_rps;
    bool use_delta_flag[most_pictures + 1] = {};
    for (unsigned j = 0; j <= ref.delta_pocs; ++j) {
        const bool used_by_curr_pic_flag = in.flag();
        use_delta_flag[j] = used_by_curr_pic_flag || in.flag();
    }

    ref_pic_set set;
    const auto add = [&](unsigned j, bool is_negative) {
        const int delta = (j < ref.delta_pocs ? ref.delta_poc[j] : 0) + delta_rps;
        if (use_delta_flag[j] && (is_negative ? delta < 0 : delta > 0)) set.add(delta);
    };
    for (unsigned j = ref.delta_pocs; j-- > ref.negative_pics;) add(j, true);
    add(ref.delta_pocs, true);
    for (unsigned j = 0; j < ref.negative_pics; ++j) add(j, true);
    set.negative_pics = set.delta_pocs;
    for (unsigned j = ref.negative_pics; j-- > 0;) add(j, false);
    add(ref.delta_pocs, false);
    for (unsigned j = ref.negative_pics; j < ref.delta_pocs; ++j) add(j, false);
    return set;
}

ref_pic_set explicit_set(rbsp_reader &in)
{
    ref_pic_set set;
    const unsigned num_negative_pics = in.ue();
    const unsigned num_positive_pics = in.ue();
    int delta_poc = 0;
    for (unsigned i = 0; i < num_negative_pics && in.is_good(); ++i) {
        delta_poc -= static_cast<int>(in.ue() & 0x7FFF) + 1;
        in.flag(); // used_by_curr_pic_s0_flag
        set.add(delta_poc);
    }
    set.negative_pics = set.delta_pocs;
    delta_poc = 0;
    for (unsigned i = 0; i < num_positive_pics && in.is_good(); ++i) {
        delta_poc += static_cast<int>(in.ue() & 0x7FFF) + 1;
        in.flag(); // used_by_curr_pic_s1_flag
        set.add(delta_poc);
    }
    return set;
}

struct hrd_flags {
    bool nal_hrd_parameters_present_flag = false;
    bool vcl_hrd_parameters_present_flag = false;
    bool sub_pic_hrd_params_present_flag = false;
};

hrd_flags read_common_hrd(rbsp_reader &in)
{
    hrd_flags flags;
    flags.nal_hrd_parameters_present_flag = in.flag();
    flags.vcl_hrd_parameters_present_flag = in.flag();
    if (!flags.nal_hrd_parameters_present_flag && !flags.vcl_hrd_parameters_present_flag) return flags;
    flags.sub_pic_hrd_params_present_flag = in.flag();
    if (flags.sub_pic_hrd_params_present_flag) {
        in.u(8);   // tick_divisor_minus2
        in.u(5);   // du_cpb_removal_delay_increment_length_minus1
        in.flag(); // sub_pic_cpb_params_in_pic_timing_sei_flag
        in.u(5);   // dpb_output_delay_du_length_minus1
    }
    in.u(4);                                            // bit_rate_scale
    in.u(4);                                            // cpb_size_scale
    if (flags.sub_pic_hrd_params_present_flag) in.u(4); // cpb_size_du_scale
    in.u(5);                                            // initial_cpb_removal_delay_length_minus1
    in.u(5);                                            // au_cpb_removal_delay_length_minus1
    in.u(5);                                            // dpb_output_delay_length_minus1
    return flags;
}

/// E.2.3.
void skip_sub_layer_hrd(rbsp_reader &in, unsigned cpb_cnt_minus1, bool sub_pic_hrd_params_present_flag)
{
    for (unsigned i = 0; i <= cpb_cnt_minus1 && in.is_good(); ++i) {
        in.ue(); // bit_rate_value_minus1
        in.ue(); // cpb_size_value_minus1
        if (sub_pic_hrd_params_present_flag) {
            in.ue(); // cpb_size_du_value_minus1
            in.ue(); // bit_rate_du_value_minus1
        }
        in.flag(); // cbr_flag
    }
}

} // namespace

profile_tier_level read_profile_tier_level(rbsp_reader &in, unsigned max_sub_layers_minus1)
{
    profile_tier_level read;
    read.general_profile_space = in.u(2);
    read.general_tier_flag = in.flag();
    read.general_profile_idc = in.u(5);
    in.u(32); // general_profile_compatibility_flag
    read.general_progressive_source_flag = in.flag();
    read.general_interlaced_source_flag = in.flag();
    in.flag();   // general_non_packed_constraint_flag
    in.flag();   // general_frame_only_constraint_flag
    in.skip(44); // constraints of some profiles
    read.general_level_idc = in.u(8);

    constexpr unsigned most_sub_layers = 8;
    bool sub_layer_profile_present_flag[most_sub_layers] = {};
    bool sub_layer_level_present_flag[most_sub_layers] = {};
    for (unsigned i = 0; i < max_sub_layers_minus1; ++i) {
        sub_layer_profile_present_flag[i] = in.flag();
        sub_layer_level_present_flag[i] = in.flag();
    }
    if (max_sub_layers_minus1 > 0)
        in.skip(2 * (most_sub_layers - max_sub_layers_minus1)); // reserved_zero_2bits
    for (unsigned i = 0; i < max_sub_layers_minus1; ++i) {
        if (sub_layer_profile_present_flag[i]) in.skip(88);
        if (sub_layer_level_present_flag[i]) in.u(8);
    }
    return read;
}

void skip_sub_layer_ordering(rbsp_reader &in, unsigned max_sub_layers_minus1)
{
    const bool sub_layer_ordering_info_present_flag = in.flag();
    for (unsigned i = sub_layer_ordering_info_present_flag ? 0 : max_sub_layers_minus1;
         i <= max_sub_layers_minus1; ++i) {
        in.ue(); // max_dec_pic_buffering_minus1
        in.ue(); // max_num_reorder_pics
        in.ue(); // max_latency_increase_plus1
    }
}

void skip_scaling_list_data(rbsp_reader &in)
{
    for (unsigned size_id = 0; size_id < 4; ++size_id)
        for (unsigned matrix_id = 0; matrix_id < 6; matrix_id += size_id == 3 ? 3 : 1) {
            const bool scaling_list_pred_mode_flag = in.flag();
            if (!scaling_list_pred_mode_flag) {
                in.ue(); // scaling_list_pred_matrix_id_delta
                continue;
            }
            if (size_id > 1) in.se(); // scaling_list_dc_coef_minus8
            const unsigned coef_num = std::min(64u, 1u << (4 + 2 * size_id));
            for (unsigned i = 0; i < coef_num && in.is_good(); ++i) in.se(); // scaling_list_delta_coef
        }
}

bool skip_short_term_ref_pic_sets(rbsp_reader &in)
{
    const unsigned num_short_term_ref_pic_sets = in.ue();
    if (num_short_term_ref_pic_sets > most_sets) return false;
    ref_pic_set last;
    for (unsigned i = 0; i < num_short_term_ref_pic_sets && in.is_good(); ++i) {
        const bool inter_ref_pic_set_prediction_flag = i != 0 && in.flag();
        last = inter_ref_pic_set_prediction_flag ? predicted_set(in, last) : explicit_set(in);
    }
    return true;
}

void skip_hrd_parameters(rbsp_reader &in, unsigned max_sub_layers_minus1)
{
    const hrd_flags common = read_common_hrd(in);
    for (unsigned i = 0; i <= max_sub_layers_minus1; ++i) {
        const bool fixed_pic_rate_general_flag = in.flag();
        const bool fixed_pic_rate_within_cvs_flag = fixed_pic_rate_general_flag || in.flag();
        bool low_delay_hrd_flag = false;
        if (fixed_pic_rate_within_cvs_flag)
            in.ue(); // elemental_duration_in_tc_minus1
        else
            low_delay_hrd_flag = in.flag();
        const unsigned cpb_cnt_minus1 = low_delay_hrd_flag ? 0 : in.ue();
        if (common.nal_hrd_parameters_present_flag)
            skip_sub_layer_hrd(in, cpb_cnt_minus1, common.sub_pic_hrd_params_present_flag);
        if (common.vcl_hrd_parameters_present_flag)
            skip_sub_layer_hrd(in, cpb_cnt_minus1, common.sub_pic_hrd_params_present_flag);
    }
}
