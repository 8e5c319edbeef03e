#include "tests/support/death.h"
#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/tables/scte_35.h"

#include <csignal>

struct scte_35_death : report_test {
    scte_35_death()
    {
        t = track(0x0300, TRACK_SCTE35, 0x0102);
        h.table_id = 0xFC;
        fence = t->tbl_asm.fence;
        buffer = t->tbl_asm.buffer;
    }

    /// The report up to the assertions, then the message of the C library's assert.
    static std::string stop(const std::string &condition)
    {
        return "^" +
               exactly("* SCTE-35 message [ANSI/SCTE-35] for program 0x0102\n"
                       "    Table ID:                   0xfc\n"
                       "    splice_info_section() [ANSI/SCTE-35 2016 Table 5 Section 9.2]\n"
                       "tables_tests: ") +
               "[^\n :]*" + exactly("mpeg_ts_analysis/tables/scte_35.cpp:") + "[0-9]+" +
               exactly(": void on_ts_scte_35(mpeg_ts_pid_tracking") + "[^\n]*" +
               exactly("): Assertion `" + condition + "' failed.\n");
    }

    void run(const uint8_t *section_base, const uint8_t *section_fence)
    {
        report_to_standard_error();
        on_ts_scte_35(t, &h, section_base, section_fence);
    }

    mpeg_ts_pid_tracking *t;
    mpeg_ts_pat_main_header h;
    uint8_t *buffer;
    uint8_t *fence;
};

TEST_F(scte_35_death, an_assembly_without_a_buffer_stops_the_program)
{
    mpeg_ts_table_assembly_init(&t->tbl_asm, 0);
    EXPECT_EXIT(run(nullptr, nullptr), testing::KilledBySignal(SIGABRT), stop("t->tbl_asm.buffer != NULL"));
}

TEST_F(scte_35_death, a_body_outside_the_buffer_stops_the_program)
{
    const std::string condition = "base >= t->tbl_asm.buffer && base <= (t->tbl_asm.fence)";
    t->tbl_asm.buffer = buffer + 1;
    EXPECT_EXIT(run(buffer, buffer + 20), testing::KilledBySignal(SIGABRT), stop(condition));
    t->tbl_asm.buffer = buffer;
    t->tbl_asm.fence = fence - 1;
    EXPECT_EXIT(run(fence, buffer + 20), testing::KilledBySignal(SIGABRT), stop(condition));
    t->tbl_asm.fence = fence;
}

TEST_F(scte_35_death, a_fence_outside_the_buffer_stops_the_program)
{
    const std::string condition = "fence >= t->tbl_asm.buffer && (fence+128) <= (t->tbl_asm.fence)";
    t->tbl_asm.buffer = buffer + 1;
    EXPECT_EXIT(run(buffer + 3, buffer), testing::KilledBySignal(SIGABRT), stop(condition));
    t->tbl_asm.buffer = buffer;
    EXPECT_EXIT(run(buffer + 3, fence - 127), testing::KilledBySignal(SIGABRT), stop(condition));
}

TEST_F(scte_35_death, a_fence_128_bytes_before_the_end_of_the_storage_is_well)
{
    on_ts_scte_35(t, &h, buffer + 3, fence - 128);
    EXPECT_NE(report(), "");
    on_ts_scte_35(t, &h, fence, fence - 128);
    EXPECT_NE(report(), "");
}

TEST_F(scte_35_death, another_table_id_is_not_tested)
{
    h.table_id = 0xFD;
    mpeg_ts_table_assembly_init(&t->tbl_asm, 0);
    on_ts_scte_35(t, &h, nullptr, nullptr);
    EXPECT_EQ(report(), "* SCTE-35 message [ANSI/SCTE-35] for program 0x0102\n"
                        "    Table ID:                   0xfd\n"
                        "    !!! Unknown table ID\n");
}
