// Steps from which recordings are made up.
#pragma once

#include "mpeg_ts_overview/model/overview.h"

#include <cstdint>
#include <functional>
#include <string>

/// The moment at so many seconds in a recording of the bit rate.
moment at_s(const overview &found, double seconds);

/// Begins a recording of so many seconds at a constant bit rate.
overview begun_recording(const std::string &path, double seconds, uint64_t bps);

/// A PID with a rate that wavers by a part of it.
void add_pid(overview &found, uint16_t pid, uint64_t bps, double wavers);

/// A program with MPEG-2 video, two sounds and teletext on the PIDs behind the PMT's, with its clock. number
/// is below 900.
void add_program(overview &found, uint16_t number, const std::string &name, uint64_t video_bps);

/// Sounds alone; the first carries the clock.
void add_radio(overview &found, uint16_t number, const std::string &name);

/// PCRs every 40 ms or so.
void add_pcr(overview &found, uint16_t pid);

void add_time_stamps(overview &found, uint16_t pid);
void add_table(overview &found, uint16_t pid, uint8_t table_id, uint16_t extension, const std::string &name,
               double interval_s);

/// Present, following and a schedule of so many events.
void add_guide(overview &found, uint16_t service, unsigned events, const std::string &title,
               const std::string &text);
void add_cues(overview &found, uint16_t pid, unsigned count);
void add_teletext(overview &found, uint16_t pid, unsigned pages, const std::string &text);
void add_section(overview &found, uint16_t pid, uint8_t table_id, const std::string &heading,
                 const std::string &lines, double seconds);

/// All rows, passed; those that no recording can tell not measured.
void add_checks(overview &found);

/// Lets the check fail so many times, from the first time on.
void fail(overview &found, const std::string &id, uint64_t count, double first_s, double worst = 0);

/// The series of what is left of the whole, as null packets; sums up the rates of the whole.
void add_null_packets(overview &found, uint64_t bps);
