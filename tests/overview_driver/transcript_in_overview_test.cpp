// Where the transcript of a recording ends before the recording does.
#include "tests/overview_driver/recorded.h"

#include <gtest/gtest.h>

namespace {

/// What is said of a store that reached its limit, or one without a name.
limit_reached limit_of(const overview &found, const std::string &what)
{
    const auto row = std::find_if(found.limits_reached.begin(), found.limits_reached.end(),
                                  [&](const limit_reached &limit) { return limit.what == what; });
    return row == found.limits_reached.end() ? limit_reached() : *row;
}

} // namespace

TEST(transcript, what_finds_no_room_in_the_transcript_is_counted)
{
    stream_builder stream;
    for (unsigned number = 0; number < 300; ++number) {
        bytes body = hex("0001 FF");
        for (unsigned i = 0; i < 800; ++i) body = join({body, big_endian(number, 2), hex("FF 8000")});
        stream.section(0x0011, long_section(0x42, number, body));
    }
    const overview found = found_in(stream.data());
    EXPECT_LT(found.transcript.entries.size(), 300u);
    EXPECT_EQ(limit_of(found, "transcript").limit, 4u << 20);
    EXPECT_EQ(limit_of(found, "transcript").dropped, 300 - found.transcript.entries.size());
}

TEST(transcript, faults_beyond_500_groups_are_counted)
{
    stream_builder stream;
    for (unsigned number = 0; number < 3; ++number) {
        const section_fields fields = {.section_number = number, .last_section_number = 2};
        std::vector<std::pair<unsigned, unsigned>> programs;
        for (unsigned i = 170 * number; i < 170 * (number + 1); ++i) programs.emplace_back(i + 1, 0x100 + i);
        stream.section(0, pat_section(1, programs, fields));
        for (const auto &[program, pid] : programs)
            stream.section(pid, pmt_section(program, 0x1FFF, hex("4D 05"), {})); // a descriptor too long
    }
    const overview found = found_in(stream.data());
    EXPECT_EQ(found.transcript.faults.size(), 500u);
    EXPECT_EQ(limit_of(found, "faults").limit, 500u);
    EXPECT_EQ(limit_of(found, "faults").dropped, 10u);
}

TEST(transcript, a_stop_of_the_analyser_ends_the_transcript_and_nothing_else)
{
    // The analyser ends its run where an MGT puts a table on a PID that has another.
    const bytes mgt = long_section(0xC7, 0, hex("00 0001  0100 E011 E0 00000000 F000  F000"));
    const bytes services = long_section(0x42, 1, hex("0002 FF 0001 FF 8000"));
    stream_builder stream;
    stream.section(0x1FFB, mgt).section(0x0011, services).section(0x0011, services).pcr(0x101, 0);
    stream.section(0, pat_section(1, {
                                         {1, 0x100}
    }));
    const overview found = found_in(stream.data());
    EXPECT_EQ(found.transcript.note, "ends at packet 0, where the analyser stops: PID 0x1ffb, table_id 0xc7");
    EXPECT_EQ(found.transcript.entries.size(), 1u);
    EXPECT_EQ(found.standard, "ATSC");
    EXPECT_EQ(found.tables.rows.size(), 3u);
    EXPECT_EQ(found.programs.size(), 1u);
    EXPECT_EQ(found.recording.packets, 5u);
}
