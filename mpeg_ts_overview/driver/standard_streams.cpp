#include "mpeg_ts_overview/driver/standard_streams.h"

#include "mpeg_ts_overview/output/terminal_text.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

void standard_streams_hold_their_places()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) != -1) continue;
        // The least free descriptor is this one.
        const int opened = open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        if (opened != stream && opened >= 0) close(opened);
    }
}

int say_failure(const std::string &reason)
{
    std::fprintf(stderr, "mpeg_ts_overview: %s\n", without_controls(reason).c_str());
    return 1;
}
