// The streams of the golden reports and of samples/, as recipes.
#pragma once

#include "tests/support/stream_builder.h"

/// A full DVB multiplex: NIT with satellite and terrestrial delivery, SDT, EIT present/following and
/// schedule, two programs with video, audio, AC-3 and teletext, PCRs, Australian logical channels.
stream_builder dvb_multiplex();

/// A terrestrial ATSC stream: every PSIP table, events, extended texts, ATSC descriptors in the PMT.
stream_builder atsc_multiplex();

/// A program with splice information: inserts in all their shapes, other commands, avail descriptors.
stream_builder splice_points();

/// A program with a teletext PID: page rows, stuffing, subtitles, coding faults.
stream_builder teletext_pages();

/// Lost packets, jumps of the PCR, wrong checksums, cut sections, illegal adaptation_field_control, scrambled
/// packets.
stream_builder faults();
