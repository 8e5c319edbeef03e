#include "tests/support/report_test.h"

#include <algorithm>

struct tracking_storage : report_test {
    static constexpr uint16_t pmt_pid = 0x0100;

    static mpeg_ts_pid_tracking *start(uint16_t pid, unsigned long size)
    {
        mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_start(pid, TRACK_PMT, 1);
        mpeg_ts_pid_tracking_give_storage(t, size);
        return t;
    }

    static unsigned long storage_of(const mpeg_ts_pid_tracking *t)
    {
        return static_cast<unsigned long>(t->tbl_asm.fence - t->tbl_asm.buffer);
    }

    /// Collects 0xFF bytes in packets of 183 and 184.
    static void collect(mpeg_ts_pid_tracking *t, unsigned packets)
    {
        for (unsigned i = 0; i < packets; ++i) {
            const bytes packet =
                stream_builder().payload(pmt_pid, repeated(i == 0 ? 0 : 0xFF, 184), i == 0).data();
            mpeg_ts_packet tsp;
            ASSERT_NE(mpeg_ts_decode(&tsp, packet.data(), packet.size()), 0);
            if (i == 0)
                mpeg_ts_table_assembly_begin(&t->tbl_asm, nullptr, &tsp);
            else
                mpeg_ts_table_assembly_add(&t->tbl_asm, &tsp);
        }
        ASSERT_GT(t->tbl_asm.write, t->tbl_asm.buffer);
    }

    static bool is_empty_and_zero(const mpeg_ts_table_assembly &assembly)
    {
        return assembly.write == assembly.buffer && !assembly.closed &&
               std::all_of(assembly.buffer, assembly.fence, [](uint8_t byte) { return byte == 0; });
    }
};

TEST_F(tracking_storage, a_stopped_PID_leaves_its_storage_to_the_next)
{
    const uint8_t *const storage = start(pmt_pid, program_section_storage)->tbl_asm.buffer;
    mpeg_ts_pid_tracking_stop_pmts();
    EXPECT_EQ(pid_tracking[pmt_pid].tbl_asm.buffer, nullptr);

    const mpeg_ts_pid_tracking *const next = start(0x0200, program_section_storage);
    EXPECT_EQ(next->tbl_asm.buffer, storage);
    EXPECT_EQ(storage_of(next), program_section_storage + mpeg_ts_table_assembly_reserve);
    EXPECT_EQ(spare_program_storage.count, 0u);
}

TEST_F(tracking_storage, a_restarted_PID_has_its_storage_again)
{
    const uint8_t *const storage = start(pmt_pid, private_section_storage)->tbl_asm.buffer;
    EXPECT_EQ(start(pmt_pid, private_section_storage)->tbl_asm.buffer, storage);
}

TEST_F(tracking_storage, what_is_found_again_is_empty_and_zero_throughout)
{
    for (const unsigned packets : {1u, 2u, 50u, 200u}) {
        mpeg_ts_pid_tracking *const t = start(pmt_pid, program_section_storage);
        collect(t, packets);
        mpeg_ts_table_assembly_complete(&t->tbl_asm);
        EXPECT_TRUE(is_empty_and_zero(start(pmt_pid, program_section_storage)->tbl_asm)) << packets;
    }
}

TEST_F(tracking_storage, what_a_longer_section_wrote_before_the_last_is_zero_too)
{
    mpeg_ts_pid_tracking *const t = start(pmt_pid, program_section_storage);
    collect(t, 20);
    mpeg_ts_table_assembly_discard(&t->tbl_asm);
    collect(t, 2);
    mpeg_ts_table_assembly_discard(&t->tbl_asm);
    EXPECT_TRUE(is_empty_and_zero(start(pmt_pid, program_section_storage)->tbl_asm));
}

TEST_F(tracking_storage, storage_of_one_size_is_not_taken_for_the_other)
{
    const unsigned long reserve = mpeg_ts_table_assembly_reserve;
    start(pmt_pid, program_section_storage);
    mpeg_ts_pid_tracking_stop(pmt_pid);
    EXPECT_EQ(storage_of(start(pmt_pid, private_section_storage)), private_section_storage + reserve);
    mpeg_ts_pid_tracking_stop(pmt_pid);
    EXPECT_EQ(spare_program_storage.count, 1u);
    EXPECT_EQ(spare_private_storage.count, 1u);
    EXPECT_EQ(storage_of(start(pmt_pid, program_section_storage)), program_section_storage + reserve);
}

TEST_F(tracking_storage, storage_of_any_other_size_is_released)
{
    start(pmt_pid, 100);
    mpeg_ts_pid_tracking_stop(pmt_pid);
    EXPECT_EQ(spare_program_storage.count, 0u);
    EXPECT_EQ(spare_private_storage.count, 0u);
    EXPECT_EQ(storage_of(start(pmt_pid, 100)), 100 + mpeg_ts_table_assembly_reserve);
}

TEST_F(tracking_storage, no_more_is_kept_than_one_PAT_section_can_ask_for)
{
    for (unsigned i = 0; i < 300; ++i) start(static_cast<uint16_t>(0x0100 + i), program_section_storage);
    mpeg_ts_pid_tracking_stop_pmts();
    EXPECT_EQ(spare_program_storage.count, 256u);
    for (unsigned i = 0; i < 300; ++i)
        EXPECT_NE(start(static_cast<uint16_t>(0x0100 + i), program_section_storage)->tbl_asm.buffer, nullptr);
    EXPECT_EQ(spare_program_storage.count, 0u);
}

TEST_F(tracking_storage, free_all_and_the_reset_release_what_was_kept)
{
    start(pmt_pid, program_section_storage);
    mpeg_ts_pid_tracking_free_all();
    EXPECT_EQ(spare_program_storage.count, 0u);
    EXPECT_EQ(spare_private_storage.count, 0u);

    start(pmt_pid, private_section_storage);
    mpeg_ts_pid_tracking_stop(pmt_pid);
    EXPECT_EQ(spare_private_storage.count, 1u);
    process_state_reset();
    EXPECT_EQ(spare_private_storage.count, 0u);
    EXPECT_EQ(spare_private_storage.assemblies[0].buffer, nullptr);
}
