// Caps of the stores, reached by streams, and that each is said.
#include "tests/overview_driver/recorded.h"

#include <gtest/gtest.h>

namespace {

constexpr uint64_t second = 27000000;

limit_reached limit_of(const overview &found, const std::string &what)
{
    const auto row = std::find_if(found.limits_reached.begin(), found.limits_reached.end(),
                                  [&](const limit_reached &limit) { return limit.what == what; });
    return row == found.limits_reached.end() ? limit_reached() : *row;
}

} // namespace

TEST(limits, all_8192_pids_have_rows_and_256_have_series)
{
    stream_builder stream;
    stream.pcr(0, 0).pcr(0, second / 10);
    for (unsigned pid = 0; pid < 0x2000; ++pid) stream.payload(pid, repeated(0x11, 184));
    const overview found = found_in(stream.data());
    EXPECT_EQ(found.pids.size(), 8192u);
    EXPECT_EQ(found.rates.pids.size(), 8192u);
    EXPECT_EQ(limit_of(found, "rate series").limit, 256u);
    EXPECT_EQ(limit_of(found, "rate series").dropped, 8192u - 256);
}

TEST(limits, pcrs_of_256_pids_are_measured)
{
    stream_builder stream;
    for (unsigned i = 0; i < 2; ++i)
        for (unsigned pid = 0x100; pid < 0x100 + 300; ++pid) stream.pcr(pid, i * second / 25);
    const overview found = found_in(stream.data());
    EXPECT_EQ(found.pcr.size(), 256u);
    EXPECT_EQ(limit_of(found, "PCR PIDs").limit, 256u);
    EXPECT_EQ(limit_of(found, "PCR PIDs").dropped, 44u);
}

TEST(limits, a_table_has_32_versions_however_often_they_change)
{
    stream_builder stream;
    for (unsigned i = 0; i < 100; ++i) stream.section(0, pat_section(1, {}, {.version_number = i % 32}));
    const overview found = found_in(stream.data());
    EXPECT_EQ(found.tables.rows.at(0).versions.size(), 32u);
    EXPECT_EQ(found.tables.rows[0].versions[31].first_packet, 31u);
    EXPECT_EQ(found.tables.rows[0].versions[31].first_ticks, table_version::no_ticks);
}

TEST(limits, teletext_of_256_pids_is_read)
{
    std::vector<pmt_stream> streams;
    for (unsigned i = 0; i < 100; ++i)
        streams.push_back({0x06, 0x100 + i, descriptor(0x56, hex("656E67 09 00"))});
    stream_builder stream;
    stream.section(0, pat_section(1, {
                                         {1, 0x1000},
                                         {2, 0x1000},
                                         {3, 0x1000}
    }));
    for (unsigned program = 1; program <= 3; ++program) {
        stream.section(0x1000, pmt_section(program, 0x1FFF, {}, streams));
        for (pmt_stream &one : streams) one.elementary_PID += 100;
    }
    for (unsigned pid = 0x100; pid < 0x100 + 300; ++pid) stream.payload(pid, repeated(0x11, 184));
    const overview found = found_in(stream.data());
    EXPECT_EQ(limit_of(found, "teletext PIDs").limit, 256u);
    EXPECT_EQ(limit_of(found, "teletext PIDs").dropped, 44u);
}

TEST(limits, pcrs_that_jump_in_each_packet_are_breaks_without_end)
{
    stream_builder stream;
    stream.pcr(0x100, 0).pcr(0x100, 1000);
    for (unsigned i = 0; i < 70000; ++i) stream.pcr(0x100, i % 2 == 0 ? 5000 * second : 0);
    const overview found = found_in(stream.data());
    EXPECT_EQ(found.breaks.kept.size(), 1000u);
    EXPECT_EQ(limit_of(found, "breaks").dropped, 69000u);
    EXPECT_EQ(found.pcr.at(0).discontinuities_unflagged, 70000u);
    const check_result leaps = check_row(found, "2.3b");
    EXPECT_LE(leaps.log.details.size(), 20u);
}

TEST(limits, a_clock_that_never_comes_leaves_all_packets_without_times)
{
    stream_builder stream;
    for (unsigned i = 0; i < 70000; ++i) stream.payload(0x100, repeated(0x11, 184));
    const overview found = found_in(stream.data());
    EXPECT_EQ(found.recording.time_base, time_base_kind::none);
    EXPECT_EQ(found.pids.at(0).packets, 70000u);
    EXPECT_FALSE(found.pids[0].last_ticks);
}
