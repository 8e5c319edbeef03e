// A whole run over a file: options from the first bytes, the stream behind them. The report must not depend
// on how the file is read, and the error counts must not depend on whether packets are dumped.
#include "fuzz/support.h"

#include "mpeg_ts_analysis/driver/run_analysis.h"

#include <cstdio>
#include <sys/mman.h>
#include <unistd.h>

namespace {

char path[32];
int file = -1;

void write_file(const uint8_t *p, size_t size)
{
    if (file < 0) {
        file = memfd_create("stream", MFD_CLOEXEC);
        std::snprintf(path, sizeof(path), "/proc/self/fd/%d", file);
    }
    fuzz_promise(file >= 0 && ftruncate(file, 0) == 0);
    fuzz_promise(pwrite(file, p, size, 0) == static_cast<ssize_t>(size));
}

/// One run with these settings. Returns false when the stream has asked for a stop.
bool run(const analysis_settings &wanted, size_t block_size)
{
    static int input;

    fuzz_start();
    settings = wanted;
    input = dup(file); // the descriptor that the run is given next
    close(input);
    if (setjmp(fuzz_entry) == 0) {
        fuzz_promise(run_analysis(path, block_size) == 0);
        return true;
    }
    close(input);
    return false;
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static std::string report;
    fuzz_input in = {data, data + size};

    fuzz_start_settings();
    fuzz_settings(in);
    const analysis_settings wanted = settings;
    const unsigned check = in.byte();
    write_file(in.p, in.left());

    const bool completed = run(wanted, packet_file_block_size);
    if ((check & 1) != 0 && wanted.dump_ts_mode != dump_ts_contents) {
        report = fuzz_report();
        fuzz_promise(run(wanted, 1 + 5 * (check >> 2)) == completed && fuzz_report() == report);
    }
    if ((check & 2) != 0) {
        const error_counters before = errors;
        analysis_settings other = wanted;
        other.dump_ts_mode = wanted.dump_ts_mode == dump_ts_off ? dump_ts_header : dump_ts_off;
        fuzz_promise(run(other, packet_file_block_size) == completed);
        fuzz_promise(errors.priority1_errors == before.priority1_errors &&
                     errors.continuity_errors == before.continuity_errors);
    }
    return 0;
}
