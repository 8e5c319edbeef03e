#include "tests/support/death.h"
#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/tables/table_dispatch.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>

struct pat_memory : report_test {};

namespace {

bool memory_is_short = false;

/// Runs a stream of two programs with memory for neither, its report on standard error.
void run_without_memory()
{
    report_to_standard_error();
    const bytes stream = stream_builder()
                             .section(0, pat_section(1,
                                                     {
                                                         {1, 0x0100},
                                                         {2, 0x0200}
    }))
                             .data();
    mpeg_ts_packet packet;
    mpeg_ts_decode(&packet, stream.data(), 188);
    memory_is_short = true;
    on_ts_table_packet(mpeg_ts_pid_tracking_get(0), &packet);
}

} // namespace

/// In place of the C library's; fails when the test says so.
void *aligned_alloc(size_t alignment, size_t size) noexcept
{
    void *memory = nullptr;
    if (memory_is_short || posix_memalign(&memory, std::max(alignment, sizeof(void *)), size) != 0)
        return nullptr;
    return memory;
}

TEST_F(pat_memory, without_memory_for_a_program_the_report_is_written_and_the_process_aborts)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(run_without_memory(), testing::KilledBySignal(SIGABRT),
                "^\\* Program Association Table\n"
                "    Transport stream ID:              0x0001\n"
                "    Version:                          0\n"
                "    Section:                          0 / 0\n"
                "      Program 0x0001: PMT PID is 0x0100\n"
                "!!! Not tracking program 0x0001, cannot start\n" +
                    end_of_errors);
}
