// The report's one buffer, for the files of this folder that put bytes into it. Everybody else uses report.h.
#pragma once

#include <cstddef>

/// What may be asked of report_room at once, bytes.
constexpr size_t report_room_limit = 2048;
constexpr size_t report_buffer_size = size_t{64} * 1024;

extern char report_bytes[report_buffer_size];

/// One past the last byte held.
extern char *report_write;

/// Writes out what the buffer holds.
void report_flush();

/// A place for at least report_room_limit more bytes. The caller hands back where it stopped to report_put.
inline char *report_room()
{
    if (report_write > report_bytes + (report_buffer_size - report_room_limit)) [[unlikely]]
        report_flush();
    return report_write;
}

inline void report_put(char *end)
{
    report_write = end;
}
