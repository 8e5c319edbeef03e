// What each check looks at.
#pragma once

#include "mpeg_ts_overview/checks/check_builder.h"

// ETSI TR 101 290 V1.4.1 5.2.1, first priority.
void look_at_sync_loss(check_builder &row);
void look_at_sync_bytes(check_builder &row);
void look_at_pat(check_builder &row);
void look_at_continuity(check_builder &row);
void look_at_pmts(check_builder &row);
void look_at_absent_pids(check_builder &row);

// 5.2.2, second priority.
void look_at_transport_errors(check_builder &row);
void look_at_crcs(check_builder &row);
void look_at_pcr_intervals(check_builder &row);
void look_at_pcr_leaps(check_builder &row);
void look_at_pcr_accuracy(check_builder &row);
void look_at_pts_intervals(check_builder &row);
void look_at_cat(check_builder &row);

// 5.2.3, third priority.
void look_at_nit(check_builder &row);
void look_at_si_repetition(check_builder &row);
void look_at_si_gaps(check_builder &row);
void look_at_unreferenced_pids(check_builder &row);
void look_at_sdt(check_builder &row);
void look_at_eit(check_builder &row);
void look_at_eit_halves(check_builder &row);
void look_at_rst(check_builder &row);
void look_at_tdt(check_builder &row);
void look_at_decoder_model(check_builder &row);

// ATSC A/65 7.1 and A/53 Part 3.
void look_at_psip(check_builder &row);
void look_at_atsc_psi(check_builder &row);

// What no standard numbers.
void look_at_late_time_stamps(check_builder &row);
void look_at_unchanged_versions(check_builder &row);
void look_at_decoding_order(check_builder &row);
