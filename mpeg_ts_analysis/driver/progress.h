// How far a long scan has come, for somebody who watches standard error while the report goes elsewhere.
#pragma once

struct scan_progress {
    bool shown = false; ///< standard error is a terminal, standard output is not, and the size is known
    bool drawn = false; ///< a line stands on the terminal
    unsigned long long size = 0; ///< of the input, bytes
    double started = 0.0;        ///< seconds on the steady clock
    double drawn_at = 0.0;       ///< seconds on the steady clock, at first started
};

/// Starts to watch a scan of size bytes, 0 when unknown.
void progress_start(scan_progress *progress, unsigned long long size);

/// Draws percent, rate and time left, at most 5 times a second. done: bytes read so far.
void progress_show(scan_progress *progress, unsigned long long done);

/// Takes the line away.
void progress_end(scan_progress *progress);
