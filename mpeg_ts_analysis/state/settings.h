// The run settings: set by the command line and settled by the start-up.
#pragma once

#include <cstdint>

/// Values of dump_descriptors_mode.
constexpr uint8_t dump_descriptors_none = 0;
constexpr uint8_t dump_descriptors_contents = 1;
constexpr uint8_t dump_descriptors_raw = 2;

/// Values of dump_ts_mode.
constexpr uint8_t dump_ts_off = 0;
constexpr uint8_t dump_ts_header = 1;
constexpr uint8_t dump_ts_contents = 2;

struct analysis_settings {
    int32_t packet_size_mode = -1; ///< -1 detect, 0 188-byte packets, 1 192-byte packets
    int32_t bdmv_mode = -1;        ///< Blu-ray M2TS stream: -1 unknown, 0 no, 1 yes
    int32_t atsc_mode = -1;        ///< ATSC stream: -1 unknown, 0 no, 1 yes
    int32_t atsc_mh_mode = -1;     ///< ATSC M/H stream: -1 unknown, 0 no, 1 yes
    double max_pcr_interval = 0.1; ///< seconds permitted between two PCRs of a program
    bool pcr_drift_correction = true;
    uint8_t dump_descriptors_mode = dump_descriptors_contents;
    bool skip_padding = true;
    uint16_t program_focus = 0;  ///< program whose PCR reports are shown; 0 means all
    uint32_t assume_country = 0; ///< private data specifier of every PID when its tracking starts
    bool dump_tables = false;
    bool dump_pcr_analysis = false;
    uint8_t dump_ts_mode = dump_ts_off;
    bool ts_bitrate_auto = false;      ///< estimate the bitrate before the scan
    unsigned long long ts_bitrate = 0; ///< bits per second; 0 means unknown
    uint32_t packet_size = 0;          ///< bytes, 188 or 192 once the input is open
    bool colour_output = false;        ///< standard output, or else standard error, is a terminal
};
