// Made-up recordings, as the overview would find them, for pages to be looked at and tested.
#pragma once

#include "mpeg_ts_overview/model/overview.h"

#include <string>
#include <vector>

struct made_recording {
    std::string name; ///< of the file, without its ending
    overview found;
};

/// One program, 12 s, nothing wrong.
overview small_recording();

/// 30 services with guide, cues and teletext, 5 min.
overview multiplex_recording();

/// One program, 2 min, in which everything is wrong.
overview faulty_recording();

/// 192-byte packets, time by their arrival stamps.
overview disc_recording();

/// Radio: two programs without video.
overview audio_recording();

/// Every text of the stream is markup and script.
overview markup_recording();

/// No times, nothing that a part could show but checks and PIDs.
overview timeless_recording();

/// Nothing but its name.
overview empty_recording();

/// 24 hours, 200 PIDs, 5000 sections, 20000 events.
overview day_recording();

/// More of everything than a page takes; the last event of the guide is on air.
overview overfull_recording();

/// Every store is full.
overview hostile_recording();

std::vector<made_recording> all_recordings();
