// Broadcasts without a fault, into which tests plant one.
#pragma once

#include "tests/overview_verdict/timed_multiplex.h"

constexpr unsigned dvb_length_ms = 40000;
constexpr unsigned atsc_length_ms = 70000;

constexpr unsigned pat_pid_of_all = 0x0000;
constexpr unsigned first_map_pid = 0x0020;
constexpr unsigned second_map_pid = 0x0021;
constexpr unsigned video = 0x0100;        ///< and PCRs, which are the clock of the recording
constexpr unsigned audio = 0x0101;        ///< of the first program
constexpr unsigned second_audio = 0x0200; ///< and PCRs, of the second program
constexpr unsigned unstamped = 0x0201;    ///< audio of the second program without time stamps
constexpr unsigned private_data = 0x0202; ///< private sections of the second program, which may come
constexpr unsigned entitlements = 0x0300; ///< ECM of the second program
constexpr unsigned psip = 0x1FFB;
constexpr unsigned atsc_events = 0x1D00;
constexpr unsigned unnamed = 0x0345; ///< is nobody's

/// One of the 40 packets of 40 ms that is always null.
constexpr unsigned free_slot = 39;

/// The sections of the broadcasts.
struct broadcast_sections {
    bytes pat, first_pmt, second_pmt, cat;
    bytes nit, other_nit, bat, sdt, other_sdt, tdt, tot;
    bytes present, following, other_present, other_following, schedule;
    bytes atsc_pat, atsc_pmt, mgt, tvct, stt, rrt, atsc_eit;
};
const broadcast_sections &sections();

/// Two programs and all tables of EN 300 468 but the RST.
timed_multiplex dvb_broadcast();

/// One program and the tables of A/65.
timed_multiplex atsc_broadcast();

/// The section with another body, but with its table_id, extension and version_number.
bytes with_body(const bytes &section, const bytes &body);
