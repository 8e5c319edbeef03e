#include "tests/support/report_test.h"

struct tracking : report_test {
    static unsigned long storage_of(const mpeg_ts_pid_tracking *t)
    {
        return static_cast<unsigned long>(t->tbl_asm.fence - t->tbl_asm.buffer);
    }

    /// A packet that starts a section which is not whole.
    static void begin_section(mpeg_ts_pid_tracking *t)
    {
        const bytes packet = stream_builder().payload(0x100, hex("00 02 B0 50"), true).data();
        mpeg_ts_packet tsp;
        ASSERT_NE(mpeg_ts_decode(&tsp, packet.data(), packet.size()), 0);
        mpeg_ts_table_assembly_begin(&t->tbl_asm, nullptr, &tsp);
        ASSERT_GT(t->tbl_asm.write, t->tbl_asm.buffer);
    }
};

TEST_F(tracking, begins_with_five_fixed_PIDs)
{
    const struct {
        uint16_t pid;
        uint16_t type;
        unsigned long storage;
    } fixed[] = {
        {0x0000, 0xFFFF, 16384},
        {0x0010, 0xFFFD, 32768},
        {0x0011, 0xFFFC, 32768},
        {0x0012, 0xFFFB, 32768},
        {0x1FFB, 0xFFFA, 32768},
    };
    settings.assume_country = 0x3200;
    mpeg_ts_pid_tracking_init_tracking();

    unsigned tracked = 0;
    for (unsigned pid = 0; pid < mpeg_ts_pid_count; ++pid)
        if (mpeg_ts_pid_tracking_get(static_cast<uint16_t>(pid)) != nullptr) ++tracked;
    EXPECT_EQ(tracked, 5u);
    for (const auto &expected : fixed) {
        const mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(expected.pid);
        ASSERT_NE(t, nullptr) << expected.pid;
        EXPECT_EQ(t->type, expected.type);
        EXPECT_EQ(t->program_number, 0);
        EXPECT_EQ(t->private_data_specifier, 0x3200u);
        EXPECT_EQ(t->last_version, 255);
        EXPECT_EQ(storage_of(t), expected.storage + mpeg_ts_table_assembly_reserve);
        EXPECT_EQ(t->tbl_asm.write, t->tbl_asm.buffer);
    }
}

TEST_F(tracking, types_have_their_values)
{
    EXPECT_EQ(TRACK_AC3, 0xFEFD);
    EXPECT_EQ(TRACK_TELETEXT, 0xFEFE);
    EXPECT_EQ(TRACK_PURE_PCR, 0xFEFF);
    EXPECT_EQ(TRACK_SCTE35, 0xFFF7);
    EXPECT_EQ(TRACK_ATSC_ETT, 0xFFF8);
    EXPECT_EQ(TRACK_ATSC_EIT, 0xFFF9);
    EXPECT_EQ(TRACK_ATSC_PSIP, 0xFFFA);
    EXPECT_EQ(TRACK_EIT, 0xFFFB);
    EXPECT_EQ(TRACK_SDT, 0xFFFC);
    EXPECT_EQ(TRACK_NIT, 0xFFFD);
    EXPECT_EQ(TRACK_PMT, 0xFFFE);
    EXPECT_EQ(TRACK_PAT, 0xFFFF);
}

TEST_F(tracking, types_above_that_of_a_pure_PCR_carry_sections)
{
    for (unsigned type = 0; type <= 0xFFFF; ++type)
        ASSERT_EQ(carries_sections(static_cast<uint16_t>(type)), type > 0xFEFF) << type;
}

TEST_F(tracking, the_ATSC_base_PID_is_followed_in_every_mode)
{
    for (const int mode : {-1, 0, 1}) {
        settings.atsc_mode = mode;
        mpeg_ts_pid_tracking_init_tracking();
        EXPECT_NE(mpeg_ts_pid_tracking_get(0x1FFB), nullptr);
    }
}

TEST_F(tracking, init_forgets_what_was_tracked)
{
    track(0x0100, TRACK_PMT, 1);
    track(0x0101, 0x02, 1);
    mpeg_ts_pid_tracking_stop(0x0011);
    track(0x0011, TRACK_SCTE35, 3);
    mpeg_ts_pid_tracking_init_tracking();
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0100), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0101), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0011)->type, TRACK_SDT);
}

TEST_F(tracking, get_returns_null_for_what_is_not_tracked)
{
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0100), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x1FFF), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x2000), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0xFFFF), nullptr);
    track(0x1FFF, TRACK_PURE_PCR, 1);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x1FFF), &pid_tracking[0x1FFF]);
}

TEST_F(tracking, start_fills_the_record_and_leaves_it_without_storage)
{
    settings.assume_country = 0x3210;
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_start(0x0100, 0x1B, 0xABCD);
    ASSERT_EQ(t, &pid_tracking[0x0100]);
    EXPECT_EQ(t->type, 0x1B);
    EXPECT_EQ(t->program_number, 0xABCD);
    EXPECT_EQ(t->private_data_specifier, 0x3210u);
    EXPECT_EQ(t->last_version, 255);
    EXPECT_EQ(t->tbl_asm.buffer, nullptr);
    EXPECT_EQ(t->tbl_asm.fence, nullptr);
    EXPECT_EQ(t->tbl_asm.write, nullptr);
}

TEST_F(tracking, start_again_with_the_same_type_restarts_the_PID)
{
    mpeg_ts_pid_tracking *const t = track(0x0100, TRACK_PMT, 1);
    t->private_data_specifier = 0x28;
    t->last_version = 3;
    begin_section(t);

    EXPECT_EQ(mpeg_ts_pid_tracking_start(0x0100, TRACK_PMT, 2), t);
    EXPECT_EQ(t->type, TRACK_PMT);
    EXPECT_EQ(t->program_number, 2);
    EXPECT_EQ(t->private_data_specifier, 0u);
    EXPECT_EQ(t->last_version, 255);
    EXPECT_EQ(t->tbl_asm.buffer, nullptr);
}

TEST_F(tracking, start_with_another_type_is_refused_and_changes_nothing)
{
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_start(0x0100, 0x02, 1);
    t->private_data_specifier = 0x28;
    t->last_version = 3;
    EXPECT_EQ(mpeg_ts_pid_tracking_start(0x0100, TRACK_PMT, 2), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_start(0x0100, 0x03, 2), nullptr);
    EXPECT_EQ(t->type, 0x02);
    EXPECT_EQ(t->program_number, 1);
    EXPECT_EQ(t->private_data_specifier, 0x28u);
    EXPECT_EQ(t->last_version, 3);

    mpeg_ts_pid_tracking *const section = track(0x0101, TRACK_NIT, 0);
    begin_section(section);
    EXPECT_EQ(mpeg_ts_pid_tracking_start(0x0101, TRACK_SDT, 0), nullptr);
    EXPECT_GT(section->tbl_asm.write, section->tbl_asm.buffer);
}

TEST_F(tracking, start_above_the_last_PID_is_refused)
{
    EXPECT_EQ(mpeg_ts_pid_tracking_start(0x2000, TRACK_PMT, 1), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_start(0xFFFF, 0x02, 1), nullptr);
    EXPECT_NE(mpeg_ts_pid_tracking_start(0x1FFF, 0x02, 1), nullptr);
}

TEST_F(tracking, stop_clears_the_record)
{
    mpeg_ts_pid_tracking *const t = track(0x0100, TRACK_PMT, 1);
    begin_section(t);
    mpeg_ts_pid_tracking_stop(0x0100);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0100), nullptr);
    EXPECT_EQ(t->type, 0);
    EXPECT_EQ(t->program_number, 0);
    EXPECT_EQ(t->private_data_specifier, 0u);
    EXPECT_EQ(t->last_version, 0);
    EXPECT_EQ(t->tbl_asm.buffer, nullptr);
    EXPECT_EQ(t->tbl_asm.fence, nullptr);
    EXPECT_EQ(t->tbl_asm.write, nullptr);

    EXPECT_NE(mpeg_ts_pid_tracking_start(0x0100, 0x02, 1), nullptr) << "another type is welcome now";
}

TEST_F(tracking, stop_of_what_is_not_tracked_does_nothing)
{
    mpeg_ts_pid_tracking_stop(0x0100);
    mpeg_ts_pid_tracking_stop(0x2000);
    mpeg_ts_pid_tracking_stop(0xFFFF);
    EXPECT_NE(mpeg_ts_pid_tracking_get(0x0000), nullptr);
}

TEST_F(tracking, stop_pmts_stops_PMTs_from_0x0010_to_0x1FFE_only)
{
    mpeg_ts_pid_tracking_stop(0x0010);
    for (const unsigned pid : {0x000Fu, 0x0010u, 0x0100u, 0x1FFEu, 0x1FFFu}) track(pid, TRACK_PMT, 1);
    track(0x0101, 0x02, 1);
    track(0x0102, TRACK_SCTE35, 1);
    mpeg_ts_pid_tracking_stop_pmts();

    EXPECT_NE(mpeg_ts_pid_tracking_get(0x000F), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0010), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0100), nullptr);
    EXPECT_EQ(pid_tracking[0x0100].tbl_asm.buffer, nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x1FFE), nullptr);
    EXPECT_NE(mpeg_ts_pid_tracking_get(0x1FFF), nullptr);
    for (const uint16_t pid : {uint16_t{0x0000}, uint16_t{0x0011}, uint16_t{0x0012}, uint16_t{0x1FFB},
                               uint16_t{0x0101}, uint16_t{0x0102}})
        EXPECT_NE(mpeg_ts_pid_tracking_get(pid), nullptr) << pid;
}

TEST_F(tracking, free_all_releases_every_record)
{
    track(0x0100, TRACK_PMT, 1);
    track(0x1FFF, 0x02, 1);
    mpeg_ts_pid_tracking_free_all();
    for (const mpeg_ts_pid_tracking &t : pid_tracking) {
        ASSERT_EQ(t.type, 0);
        ASSERT_EQ(t.program_number, 0);
        ASSERT_EQ(t.last_version, 0);
        ASSERT_EQ(t.tbl_asm.buffer, nullptr);
    }
}
