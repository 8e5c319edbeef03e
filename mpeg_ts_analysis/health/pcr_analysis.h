// Checks of the PCRs of each program: interval (PCR_repetition_error of ETSI TR 101 290, 2.3a), drift and
// jumps, against a software clock that predicts them from the packet time. ISO/IEC 13818-1 2.4.2.
#pragma once

#include "mpeg12_ts/packet.h"

/// Follows the clock of the packet's program with the packet's PCR, if it has one, and prints what it finds.
/// t is the packet time in seconds, -1.0 when the bitrate is unknown. A PCR on any tracked PID of a program
/// drives its clock.
void pcr_analysis(const mpeg_ts_packet *tsp, double t);
