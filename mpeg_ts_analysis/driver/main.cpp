#include "mpeg_ts_analysis/driver/command_line.h"
#include "mpeg_ts_analysis/driver/interrupt.h"
#include "mpeg_ts_analysis/driver/run_analysis.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"

#include <unistd.h>

int main(int argc, char **argv)
{
    process_state_reset();
    settings.colour_output = isatty(STDOUT_FILENO) != 0 || isatty(STDERR_FILENO) != 0;

    interrupt_catch();
    const char *const path = parse_command_line(argc, argv);
    const int status = path != nullptr ? run_analysis(path) : 1;
    report_close();
    return status;
}
