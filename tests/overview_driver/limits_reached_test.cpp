// Caps of the stores, reached by streams, and that each is said.
#include "tests/overview_contents/si_sections.h"
#include "tests/overview_contents/splice_sections.h"
#include "tests/overview_contents/teletext_stream.h"
#include "tests/overview_driver/recorded.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

constexpr uint64_t second = 27000000;

limit_reached limit_of(const overview &found, const std::string &what)
{
    const auto row = std::find_if(found.limits_reached.begin(), found.limits_reached.end(),
                                  [&](const limit_reached &limit) { return limit.what == what; });
    return row == found.limits_reached.end() ? limit_reached() : *row;
}

/// The overview of so many sections of a PID, back to back, behind the stream.
overview found_with_sections(stream_builder stream, unsigned pid, size_t count,
                             const std::function<bytes(unsigned number)> &section)
{
    constexpr unsigned at_once = 64;
    std::vector<bytes> sections;
    for (unsigned i = 0; i < count; ++i) {
        sections.push_back(section(i));
        if (sections.size() < at_once && i + 1 < count) continue;
        stream.sections(pid, sections);
        sections.clear();
    }
    return found_in(stream.data());
}

/// A program with one stream.
stream_builder one_program(const pmt_stream &stream)
{
    return stream_builder()
        .section(0, pat_section(1,
                                {
                                    {1, 0x1000}
    }))
        .section(0x1000, pmt_section(1, 0x1FFF, {}, {stream}));
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

TEST(limits, of_tables_65536_have_rows)
{
    const overview found = found_with_sections({}, 0x10, 65536 + 10, [](unsigned i) {
        return long_section(i < 65536 ? 0x41 : 0x40, i & 0xFFFF, {});
    });
    EXPECT_EQ(found.tables.rows.size(), 65536u);
    EXPECT_EQ(limit_of(found, "tables").limit, 65536u);
    EXPECT_EQ(limit_of(found, "tables").dropped, 10u);
    EXPECT_EQ(limit_of(found, "tables whose intervals are judged").limit, 16384u);
    EXPECT_EQ(limit_of(found, "tables whose intervals are judged").dropped, 65536u - 16384);
}

TEST(limits, of_sections_262144_are_compared_with_their_next_arrival)
{
    constexpr unsigned sections = 262144 + 10;
    const overview found = found_with_sections({}, 0x12, sections, [](unsigned i) {
        return long_section(0x60, i / 256, {}, {.section_number = i % 256, .last_section_number = 255});
    });
    EXPECT_EQ(found.tables.rows.size(), 1025u);
    EXPECT_EQ(limit_of(found, "tables").dropped, 10u);
    EXPECT_GE(limit_of(found, "transcript").dropped, 10u);
    EXPECT_EQ(limit_of(found, "tables whose intervals are judged").dropped, sections - 131072u);
}

TEST(limits, of_tables_16384_have_gaps)
{
    const overview found = found_with_sections(
        {}, 0x12, 16384 + 10, [](unsigned i) { return long_section(0x4E, i, hex("0001 0002 00 4E")); });
    EXPECT_EQ(limit_of(found, "tables whose gaps are judged").limit, 16384u);
    EXPECT_EQ(limit_of(found, "tables whose gaps are judged").dropped, 10u);
}

TEST(limits, of_streams_of_programs_4096_are_kept)
{
    stream_builder stream;
    std::vector<std::pair<unsigned, unsigned>> programs;
    std::vector<pmt_stream> streams;
    for (unsigned number = 1; number <= 21; ++number) programs.emplace_back(number, 0x1000);
    for (unsigned i = 0; i < 200; ++i) streams.push_back({0x02, 0x100 + i, {}});
    stream.section(0, pat_section(1, programs));
    const overview found = found_with_sections(
        stream, 0x1000, 21, [&](unsigned i) { return pmt_section(i + 1, 0x1FFF, {}, streams); });
    EXPECT_EQ(limit_of(found, "streams of programs").limit, 4096u);
    EXPECT_EQ(limit_of(found, "streams of programs").dropped, 21u * 200 - 4096);
}

TEST(limits, of_services_4096_are_described)
{
    const overview found = found_with_sections({}, 0x11, 4096 + 10, [](unsigned i) {
        return long_section(0x42, i, join({hex("0001 FF"), big_endian(i, 2), hex("FC 8000")}));
    });
    EXPECT_EQ(limit_of(found, "services").limit, 4096u);
    EXPECT_EQ(limit_of(found, "services").dropped, 10u);
}

TEST(limits, of_channel_numbers_16384_are_kept)
{
    const overview found = found_with_sections({}, 0x10, 16384 + 10, [](unsigned i) {
        const bytes number = descriptor(0x83, join({big_endian(i, 2), hex("FC01")}));
        return long_section(0x40, 1, join({hex("F000 F00C 0001 0002 F006"), number}),
                            {.version_number = i % 32});
    });
    EXPECT_EQ(limit_of(found, "channel numbers").limit, 16384u);
    EXPECT_EQ(limit_of(found, "channel numbers").dropped, 10u);
}

TEST(limits, of_events_20000_are_kept)
{
    const overview found = found_with_sections({}, 0x12, 20000 + 10, [](unsigned i) {
        return long_section(0x50, 1,
                            join({hex("0001 0002 00 50"), big_endian(i, 2), hex("C079124500 013000 0000")}),
                            {.version_number = i % 32});
    });
    EXPECT_EQ(found.guide.events.size(), 20000u);
    EXPECT_EQ(limit_of(found, "guide").limit, 20000u);
    EXPECT_EQ(limit_of(found, "guide").dropped, 10u);
}

TEST(limits, of_the_texts_of_events_8_MiB_are_kept)
{
    bytes texts;
    for (unsigned number = 0; number < 15; ++number)
        texts = join({texts, extended_event(number, 14, std::string(245, 'x'))});
    const size_t text_of_event = 3 + 15 * 245;
    const size_t whole_events = (8u << 20) / text_of_event;
    const overview found = found_with_sections({}, 0x12, whole_events + 10, [&](unsigned i) {
        return eit_section(0x50, 1, eit_entry(i, "C079 120000", "010000", texts), {.version_number = i % 32});
    });
    EXPECT_EQ(limit_of(found, "guide texts").limit, 8u << 20);
    EXPECT_EQ(limit_of(found, "guide texts").dropped, 10u * 15 * 245);
}

TEST(limits, of_cues_5000_are_kept)
{
    const overview found =
        found_with_sections(one_program({0x86, 0x100, {}}), 0x100, 5000 + 10,
                            [](unsigned i) { return splice_section(0x06, splice_time(i)); });
    EXPECT_EQ(found.cues.cues.size(), 5000u);
    EXPECT_EQ(limit_of(found, "cues").limit, 5000u);
    EXPECT_EQ(limit_of(found, "cues").dropped, 10u);
}

TEST(limits, of_teletext_pages_2000_are_kept)
{
    stream_builder stream = one_program({0x06, 0x100, descriptor(0x56, hex("656E67 09 00"))});
    for (unsigned i = 0; i <= 2010; ++i) {
        const unsigned page = 0x100 | (i / 10 % 10) << 4 | i % 10;
        stream.unit(0x100, teletext_pes_of({header(page, i / 100)}));
    }
    const overview found = found_in(stream.data());
    EXPECT_EQ(found.teletext.pages.size(), 2000u);
    EXPECT_EQ(limit_of(found, "teletext").limit, 2000u);
    EXPECT_EQ(limit_of(found, "teletext").dropped, 10u);
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
