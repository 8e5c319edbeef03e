// Signals: the report that has been made so far is not lost.
#pragma once

/// From here on SIGINT and SIGTERM are only noted, unless they are ignored; a second one of a kind ends the
/// program at once. A report beyond the limit on the size of files fails to be written, as on a full disk.
void interrupt_catch();

/// Ends the program as the signal that was noted would have, after the report is out. Returns when none was.
void interrupt_stop_if_noted();
