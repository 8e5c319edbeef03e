#include "mpeg_ts_analysis/driver/progress.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace {

constexpr double seconds_between_lines = 0.2;

double now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

void progress_start(scan_progress *progress, unsigned long long size)
{
    progress->shown = size != 0 && isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) == 0;
    progress->size = size;
    if (progress->shown) progress->started = progress->drawn_at = now();
}

void progress_show(scan_progress *progress, unsigned long long done)
{
    if (!progress->shown) return;
    const double time = now();
    if (time - progress->drawn_at < seconds_between_lines) return;
    progress->drawn_at = time;
    progress->drawn = true;

    const auto size = static_cast<double>(progress->size);
    const double part = std::min(static_cast<double>(done) / size, 1.0);
    const double rate = static_cast<double>(done) / (time - progress->started);
    const auto left = static_cast<unsigned long>(rate > 0.0 ? (1.0 - part) * size / rate : 0.0);
    std::fprintf(stderr, "\r%3.0f%%  %.1f MB/s  %lu:%02lu left\033[K", 100.0 * part, rate / 1e6, left / 60,
                 left % 60);
}

void progress_end(scan_progress *progress)
{
    if (progress->drawn) std::fputs("\r\033[K", stderr);
    progress->shown = progress->drawn = false;
}
