// What a PID carries and how it is followed.
#pragma once

#include "mpeg12_ts/table_assembly.h"

#include <cstdint>

// Values of type. An elementary stream has its stream_type, 0x0001 to 0x00FF; 0 is not tracked.
constexpr uint16_t TRACK_NONE = 0x0000;
constexpr uint16_t TRACK_AC3 = 0xFEFD;      ///< stream_type 0x06 with an AC-3 descriptor
constexpr uint16_t TRACK_TELETEXT = 0xFEFE; ///< stream_type 0x06 with a teletext descriptor
constexpr uint16_t TRACK_PURE_PCR = 0xFEFF; ///< a PCR PID that is none of its program's streams
constexpr uint16_t TRACK_SCTE35 = 0xFFF7;
constexpr uint16_t TRACK_ATSC_ETT = 0xFFF8;
constexpr uint16_t TRACK_ATSC_EIT = 0xFFF9;
constexpr uint16_t TRACK_ATSC_PSIP = 0xFFFA; ///< the ATSC base PID
constexpr uint16_t TRACK_EIT = 0xFFFB;
constexpr uint16_t TRACK_SDT = 0xFFFC;
constexpr uint16_t TRACK_NIT = 0xFFFD;
constexpr uint16_t TRACK_PMT = 0xFFFE;
constexpr uint16_t TRACK_PAT = 0xFFFF;

constexpr uint8_t no_last_version = 255;

struct mpeg_ts_pid_tracking {
    uint16_t type = TRACK_NONE;
    uint16_t program_number = 0;         ///< 0 for PIDs of no program
    uint32_t private_data_specifier = 0; ///< the last one decoded on this PID, at first assume_country
    mpeg_ts_table_assembly tbl_asm;      ///< with storage only for types that carry sections
    uint8_t last_version = 0; ///< version_number of the last current table, no_last_version when none
};

/// True for a type whose PID carries sections.
constexpr bool carries_sections(uint16_t type)
{
    return type > TRACK_PURE_PCR;
}
