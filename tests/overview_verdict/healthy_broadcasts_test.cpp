// Broadcasts without a fault raise nothing, wherever they are cut.
#include "tests/overview_verdict/broadcasts.h"

#include "mpeg_ts_overview/driver/overview_of.h"
#include "tests/overview_input/memory_source.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

std::vector<std::string> checks_with(check_outcome outcome, const bytes &stream,
                                     const overview_request &request = {})
{
    overview found;
    std::vector<std::string> ids;
    EXPECT_EQ(overview_of(source_of(stream), request, found), reading_outcome::done);
    for (const check_result &check : found.checks)
        if (check.outcome == outcome) ids.push_back(check.id);
    return ids;
}

using check_ids = std::vector<std::string>;

TEST(healthy, a_dvb_broadcast_passes_all_that_can_be_measured)
{
    EXPECT_EQ(checks_with(check_outcome::not_measured, dvb_broadcast().packets()),
              (check_ids{"3.3", "3.9", "3.10", "A.1", "A.2"}));
    EXPECT_EQ(checks_with(check_outcome::fail, dvb_broadcast().packets()), check_ids());
}

TEST(healthy, an_atsc_broadcast_passes_all_that_can_be_measured)
{
    const bytes stream = atsc_broadcast().packets();
    EXPECT_EQ(checks_with(check_outcome::fail, stream), check_ids());
    EXPECT_EQ(checks_with(check_outcome::not_measured, stream),
              (check_ids{"3.1a", "3.2", "3.2b", "3.5a", "3.6a", "3.6c", "3.7", "3.8", "3.3", "3.9", "3.10"}));
}

TEST(healthy, whole_multiplexes_have_all_that_they_must)
{
    overview_request whole;
    whole.whole_multiplex = true;
    EXPECT_EQ(checks_with(check_outcome::fail, dvb_broadcast().packets(), whole), check_ids());
    EXPECT_EQ(checks_with(check_outcome::fail, atsc_broadcast().packets(), whole), check_ids());
}

TEST(healthy, recordings_begin_and_end_anywhere)
{
    const bytes stream = dvb_broadcast().packets();
    for (const size_t first : {1u, 188u, 1000u, 5555u, 300001u, 3000000u, 6666666u}) {
        for (const size_t size : {376u, 2000u, 18800u, 94001u, 377000u, 450000u, 800001u}) {
            const auto start = stream.begin() + static_cast<ptrdiff_t>(first);
            EXPECT_EQ(checks_with(check_outcome::fail, bytes(start, start + static_cast<ptrdiff_t>(size))),
                      check_ids())
                << size << " bytes from " << first;
        }
    }
}

TEST(healthy, a_tdt_comes_each_30_s_with_jitter)
{
    timed_multiplex stream = dvb_broadcast();
    stream.away(sections().tdt, 101, 31501); // 1.4 s late
    EXPECT_EQ(checks_with(check_outcome::fail, stream.packets()), check_ids());
}

TEST(healthy, an_stt_comes_each_second_with_jitter)
{
    timed_multiplex stream = atsc_broadcast();
    for (unsigned ms = 12; ms < atsc_length_ms; ms += 1000) stream.clear(ms);
    for (unsigned second = 0; second < atsc_length_ms / 1000; ++second) {
        const bytes body = join({hex("00"), big_endian(0x40000000u + second, 4), hex("12 6000")});
        stream.section(1000 * second + (second % 2 != 0 ? 49 : 1), psip, long_section(0xCD, 0x0000, body));
    }
    EXPECT_EQ(checks_with(check_outcome::fail, stream.packets()), check_ids());
}

TEST(healthy, a_program_changes_the_pid_of_its_sound)
{
    constexpr unsigned new_audio = 0x0105;
    const bytes new_pmt = pmt_section(1, video,
                                      {
    },
                                      {{0x02, video, {}}, {0x03, new_audio, {}}}, {.version_number = 1});
    timed_multiplex stream = dvb_broadcast();
    stream.replace(sections().first_pmt, 20000, new_pmt).without_data(audio, 20100, dvb_length_ms - 1);
    for (unsigned ms = 19921; ms < dvb_length_ms; ms += 40) stream.unit(ms, new_audio, 0xC0, 100);
    EXPECT_EQ(checks_with(check_outcome::fail, stream.packets()), check_ids());
}

TEST(healthy, a_program_changes_the_pid_of_its_clock)
{
    constexpr unsigned new_clock = 0x0105;
    const bytes new_pmt = pmt_section(1, new_clock,
                                      {
    },
                                      {{0x02, video, {}}, {0x03, audio, {}}}, {.version_number = 1});
    timed_multiplex stream = dvb_broadcast();
    stream.replace(sections().first_pmt, 20000, new_pmt).without_pcr(video, 20000, dvb_length_ms - 1);
    for (unsigned ms = 19921; ms < dvb_length_ms; ms += 40) stream.pcr(ms, new_clock);
    EXPECT_EQ(checks_with(check_outcome::fail, stream.packets()), check_ids());
}

TEST(healthy, a_program_leaves_the_multiplex)
{
    const bytes new_pat = pat_section(1,
                                      {
                                          {0, 0x10         },
                                          {1, first_map_pid}
    },
                                      {.version_number = 1});
    timed_multiplex stream = dvb_broadcast();
    stream.replace(sections().pat, 20000, new_pat);
    for (const unsigned pid : {second_map_pid, second_audio, unstamped, entitlements})
        stream.without_pid(pid, 20000);
    EXPECT_EQ(checks_with(check_outcome::fail, stream.packets()), check_ids());
}

TEST(healthy, a_program_comes_into_the_multiplex)
{
    const bytes old_pat = pat_section(1,
                                      {
                                          {0, 0x10         },
                                          {1, first_map_pid}
    },
                                      {.version_number = 31});
    timed_multiplex stream = dvb_broadcast();
    stream.replace(sections().pat, 0, old_pat).replace(old_pat, 20000, sections().pat);
    for (const unsigned pid : {second_map_pid, second_audio, unstamped, entitlements})
        stream.without_pid(pid, 0, 20000);
    EXPECT_EQ(checks_with(check_outcome::fail, stream.packets()), check_ids());
}

TEST(healthy, a_program_is_scrambled)
{
    bytes stream = dvb_broadcast().packets();
    for (size_t at = 0; at < stream.size(); at += 188)
        if (stream[at + 1] % 0x20 == second_audio >> 8 && stream[at + 2] <= 1 && (stream[at + 3] & 0x10) != 0)
            stream[at + 3] |= (at / 188 / 10000) % 2 != 0 ? 0x80 : 0xC0; // even and odd keys
    EXPECT_EQ(checks_with(check_outcome::fail, stream), check_ids());
}

TEST(healthy, null_packets_are_taken_out)
{
    const bytes stream = dvb_broadcast().packets();
    bytes stripped;
    for (size_t at = 0; at < stream.size(); at += 188)
        if ((stream[at + 1] & 0x1F) != 0x1F || stream[at + 2] != 0xFF)
            stripped.insert(stripped.end(), stream.begin() + static_cast<ptrdiff_t>(at),
                            stream.begin() + static_cast<ptrdiff_t>(at + 188));
    EXPECT_EQ(checks_with(check_outcome::fail, stripped), check_ids());
}

TEST(healthy, one_service_is_cut_out_with_and_without_its_tables)
{
    for (const std::set<unsigned> &tables : {
             std::set<unsigned>(), {0x10, 0x11, 0x12, 0x14}
    }) {
        timed_multiplex stream = dvb_broadcast();
        for (const unsigned pid : {0x01u, second_map_pid, second_audio, unstamped, entitlements})
            stream.without_pid(pid);
        for (const unsigned pid : {0x10u, 0x11u, 0x12u, 0x14u})
            if (tables.count(pid) == 0) stream.without_pid(pid);
        EXPECT_EQ(checks_with(check_outcome::fail, stream.packets()), check_ids());
    }
}

} // namespace
