// Parts of HEVC parameter sets, ISO/IEC 23008-2, most of them read only to get behind them. A part that is
// not valid reads on as far as its fields go; the payload's end then tells.
#pragma once

#include "mpeg_ts_overview/contents/nal_unit.h"

/// The general part of profile_tier_level, 7.3.3.
struct profile_tier_level {
    unsigned general_profile_space;
    bool general_tier_flag;
    unsigned general_profile_idc;
    bool general_progressive_source_flag;
    bool general_interlaced_source_flag;
    unsigned general_level_idc; // 30 times the level
};

profile_tier_level read_profile_tier_level(rbsp_reader &in, unsigned max_sub_layers_minus1);

/// sub_layer_ordering_info_present_flag and what it announces, 7.3.2.1 and 7.3.2.2.
void skip_sub_layer_ordering(rbsp_reader &in, unsigned max_sub_layers_minus1);

/// 7.3.4.
void skip_scaling_list_data(rbsp_reader &in);

/// num_short_term_ref_pic_sets and the sets, 7.3.7; false when there are more than the standard allows.
bool skip_short_term_ref_pic_sets(rbsp_reader &in);

/// hrd_parameters with its common information, E.2.2.
void skip_hrd_parameters(rbsp_reader &in, unsigned max_sub_layers_minus1);
