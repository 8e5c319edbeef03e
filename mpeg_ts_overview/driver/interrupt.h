// Signals: what has been read so far is not lost.
#pragma once

/// From here on SIGINT and SIGTERM are only noted, unless they are ignored; a second one ends the program at
/// once, after at_second was called, which may do only what a signal handler may. An output beyond the limit
/// on the size of files fails to be written, as on a full disk, and so does one to a pipe that is closed.
void interrupt_catch(void (*at_second)());

/// True once a signal came.
bool interrupt_noted();

/// Waits until reading from the descriptor would not wait. Returns false as soon as a signal was noted,
/// before or while it waits.
bool interrupt_wait_to_read(int descriptor);

/// Ends the program as the signal that was noted would have. Returns when none was.
void interrupt_stop_if_noted();
