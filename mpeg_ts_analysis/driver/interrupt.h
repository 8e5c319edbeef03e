// SIGINT and SIGTERM: the report that has been made so far is not lost.
#pragma once

/// From here on the two signals are only noted, unless they are ignored; a second one of a kind ends the
/// program at once.
void interrupt_catch();

/// Ends the program as the signal that was noted would have, after the report is out. Returns when none was.
void interrupt_stop_if_noted();
