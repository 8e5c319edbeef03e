// How often tables have to come, 27 MHz ticks: ETSI TR 101 290 V1.4.1 5.2, ATSC A/65 7.1 and A/53 Part 3.
#pragma once

#include "mpeg_ts_overview/model/moment.h"

#include <cstdint>

constexpr int64_t ticks_per_millisecond = ticks_per_second / 1000;

constexpr int64_t pat_interval_ticks = 500 * ticks_per_millisecond;
constexpr int64_t pmt_interval_ticks = 500 * ticks_per_millisecond;
constexpr int64_t cat_absence_ticks = 10 * ticks_per_second;

constexpr int64_t nit_interval_ticks = 10 * ticks_per_second;
constexpr int64_t nit_other_interval_ticks = 10 * ticks_per_second;
constexpr int64_t sdt_interval_ticks = 2 * ticks_per_second;
constexpr int64_t sdt_other_interval_ticks = 10 * ticks_per_second;
constexpr int64_t bat_interval_ticks = 10 * ticks_per_second;
constexpr int64_t eit_present_following_interval_ticks = 2 * ticks_per_second;
constexpr int64_t eit_present_following_other_interval_ticks = 20 * ticks_per_second;
constexpr int64_t tdt_interval_ticks = 30 * ticks_per_second;
constexpr int64_t tot_interval_ticks = 30 * ticks_per_second;
constexpr int64_t si_minimum_gap_ticks = 25 * ticks_per_millisecond;

constexpr int64_t atsc_pat_interval_ticks = 100 * ticks_per_millisecond;
constexpr int64_t atsc_pmt_interval_ticks = 400 * ticks_per_millisecond;
constexpr int64_t mgt_interval_ticks = 150 * ticks_per_millisecond;
constexpr int64_t tvct_interval_ticks = 400 * ticks_per_millisecond;
constexpr int64_t stt_interval_ticks = ticks_per_second;
constexpr int64_t rrt_interval_ticks = 60 * ticks_per_second;
