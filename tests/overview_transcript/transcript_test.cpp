#include "tests/support/report_test.h"
#include "tests/support/table_sections.h"

#include "mpeg_ts_overview/transcript/transcript.h"

#include <gtest/gtest.h>
#include <optional>
#include <random>

namespace {

/// A section and the PID that it comes on.
struct carried {
    unsigned pid;
    bytes data;
};

const carried pat = {
    0x0000, pat_section(1, {{0x0001, 0x0100}}
      )
};
const carried pmt = {
    0x0100, pmt_section(1, 0x0101, {                  },
       { {0x02, 0x0101, {}}, {0x86, 0x0500, {}}}
       )
};
const carried sdt = {
    0x0011, long_section(0x42, 1, join({hex("0001 FF 0001 FD 8004"), descriptor(0xFF, hex("01 02"))}))};
const carried nit = {0x0010, long_section(0x40, 1, hex("F000 F000"))};
const carried splice_null = {0x0500, hex("FC 30 11 00 00 00000000 00 FFF000 00 0000 7A4FBFFF")};
const carried system_time = {0x1FFB, long_section(0xCD, 0, hex("00 40000000 0D 0000"))};
const carried later_system_time = {0x1FFB, long_section(0xCD, 0, hex("00 40000001 0D 0000"))};

carried eit_of_version(unsigned version_number)
{
    section_fields fields;
    fields.version_number = version_number;
    return {0x0012, long_section(0x4E, 1, hex("0001 0002 00 4E"), fields)};
}

bytes eit_with(const bytes &descriptors)
{
    return long_section(0x4E, 1,
                        join({hex("0001 0002 00 4E 0007 C079124500 013000"),
                              big_endian(descriptors.size(), 2), descriptors}));
}

bytes mgt_with(unsigned table_type, unsigned pid)
{
    return long_section(0xC7, 0,
                        join({hex("00 0001"), big_endian(table_type, 2), big_endian(0xE000u | pid, 2),
                              hex("E0 00000000 F000"), hex("F000")}));
}

} // namespace

struct transcript_of : report_test {
    std::optional<transcript> words;
    uint64_t packet = 0;

    /// What the analyser prints for each, one after the other.
    std::vector<std::string> analyser_prints(const std::vector<carried> &sections)
    {
        std::vector<std::string> texts;
        for (const carried &section : sections) texts.push_back(report_of_section(section.pid, section.data));
        return texts;
    }

    /// Shows it to the transcript, in a packet of its own.
    void receive(const carried &section)
    {
        if (!words) words.emplace();
        const offered_section offered(section.pid, section.data, at_packet(packet++));
        words->on_section(*offered);
    }

    transcript_facts finish()
    {
        transcript_facts facts = words->finish();
        words.reset();
        return facts;
    }
};

TEST_F(transcript_of, the_texts_are_what_the_analyser_prints)
{
    const std::vector<carried> sections = {
        pat, pmt, sdt, nit, {0x0012, eit_with(descriptor(0x4D, hex("656E67 03 414243 00")))},
            splice_null
    };
    const std::vector<std::string> expected = analyser_prints(sections);
    for (const carried &section : sections) receive(section);
    const transcript_facts facts = finish();
    ASSERT_EQ(facts.entries.size(), sections.size());
    for (size_t i = 0; i < sections.size(); ++i) {
        EXPECT_NE(expected[i], "");
        EXPECT_EQ(facts.entries[i].lines, expected[i]);
        EXPECT_EQ(facts.entries[i].heading, expected[i].substr(0, expected[i].find('\n')));
        EXPECT_EQ(facts.entries[i].pid, sections[i].pid);
        EXPECT_EQ(facts.entries[i].table_id, sections[i].data[0]);
        EXPECT_EQ(facts.entries[i].count, 1u);
        EXPECT_EQ(facts.entries[i].first.packet, i);
    }
    EXPECT_EQ(facts.note, "");
    EXPECT_EQ(facts.sections_not_kept, 0u);
}

TEST_F(transcript_of, a_repetition_is_counted)
{
    for (unsigned i = 0; i < 3; ++i) receive(sdt);
    receive(nit);
    receive(sdt);
    const transcript_facts facts = finish();
    ASSERT_EQ(facts.entries.size(), 2u);
    EXPECT_EQ(facts.entries[0].count, 4u);
    EXPECT_EQ(facts.entries[0].first.packet, 0u);
    EXPECT_EQ(facts.entries[0].last.packet, 4u);
    EXPECT_EQ(facts.entries[1].count, 1u);
}

TEST_F(transcript_of, what_comes_back_has_its_text_once)
{
    receive(eit_of_version(1));
    receive(eit_of_version(2));
    receive(eit_of_version(1));
    receive(eit_of_version(1));
    const transcript_facts facts = finish();
    ASSERT_EQ(facts.entries.size(), 2u);
    EXPECT_EQ(facts.entries[0].count, 3u);
    EXPECT_EQ(facts.entries[1].count, 1u);
}

TEST_F(transcript_of, the_same_words_on_two_pids_are_two_entries)
{
    receive({0x0010, sdt.data});
    receive({0x0011, sdt.data});
    EXPECT_EQ(finish().entries.size(), 2u);
}

TEST_F(transcript_of, tables_that_the_analyser_does_not_follow_have_no_words)
{
    receive({0x0001, long_section(0x01, 0xFFFF, {})});
    receive({0x0014, short_section(0x70, hex("C079124500"))});
    receive({0x0100, pmt.data});
    EXPECT_TRUE(finish().entries.empty());
}

TEST_F(transcript_of, a_pmt_is_told_of_once_its_pat_has_come)
{
    receive(pmt);
    receive(pat);
    receive(pmt);
    receive(pmt);
    const transcript_facts facts = finish();
    ASSERT_EQ(facts.entries.size(), 2u);
    EXPECT_EQ(facts.entries[1].pid, 0x0100);
    EXPECT_EQ(facts.entries[1].count, 2u);
}

TEST_F(transcript_of, programs_of_each_section_of_a_pat_get_their_turn)
{
    section_fields first;
    first.last_section_number = 1;
    section_fields second = first;
    second.section_number = 1;
    const carried pat_0 = {
        0, pat_section(1, {{1, 0x0100}},
          first)
    };
    const carried pat_1 = {
        0, pat_section(1, {{2, 0x0200}},
          second)
    };
    const carried pmt_2 = {0x0200, pmt_section(2, 0x1FFF, {}, {})};
    for (const carried &section : {pat_0, pat_1, pmt_2, pat_0, pmt, pat_1, pmt_2}) receive(section);
    const transcript_facts facts = finish();
    ASSERT_EQ(facts.entries.size(), 4u);
    EXPECT_EQ(facts.entries[0].count, 2u);
    EXPECT_EQ(facts.entries[2].pid, 0x0200);
    EXPECT_EQ(facts.entries[2].count, 2u);
    EXPECT_EQ(facts.entries[3].pid, 0x0100);
}

TEST_F(transcript_of, a_table_that_changes_each_time_stands_once)
{
    settings.atsc_mode = 1;
    const std::string expected = analyser_prints({system_time})[0];
    words.emplace();
    words->on_atsc_packet();
    receive(system_time);
    receive(later_system_time);
    receive(later_system_time);
    const transcript_facts facts = finish();
    ASSERT_EQ(facts.entries.size(), 1u);
    EXPECT_EQ(facts.entries[0].lines, expected);
    EXPECT_EQ(facts.entries[0].count, 3u);
    EXPECT_EQ(facts.entries[0].last.packet, 2u);
}

TEST_F(transcript_of, faults_of_a_table_that_changes_each_time_are_those_of_each_reception)
{
    const auto time = [](const char *body) { return carried{0x1FFB, long_section(0xCD, 0, hex(body))}; };
    words.emplace();
    words->on_atsc_packet();
    receive(time("00 40000001 0F 0000"));
    receive(time("00 40000002 0F 0000 4D 05"));
    receive(time("00 40000002 0F 0000 4D 05"));
    receive(time("00 40000003 0F 0000"));
    receive(time("00 40000004 0F 0000 4D 05"));
    const transcript_facts facts = finish();
    ASSERT_EQ(facts.entries.size(), 1u);
    EXPECT_EQ(facts.entries[0].count, 5u);
    ASSERT_EQ(facts.faults.size(), 1u);
    EXPECT_EQ(facts.faults[0].count, 3u);
    EXPECT_EQ(facts.faults[0].packets, (std::vector<uint64_t>{1, 2, 4}));
}

TEST_F(transcript_of, each_system_time_is_shown_to_the_analyser)
{
    const carried other_offset = {0x1FFB, long_section(0xCD, 0, hex("00 40000001 0F 0000"))};
    words.emplace();
    words->on_atsc_packet();
    receive(system_time);
    receive(other_offset);
    EXPECT_EQ(atsc_gps_utc_offset, 15);
}

TEST_F(transcript_of, atsc_tables_are_told_of_from_the_first_packet_of_their_pid_on)
{
    receive({0x1FFB, mgt_with(0x0100, 0x0600)});
    EXPECT_TRUE(finish().entries.empty());
    words.emplace();
    words->on_atsc_packet();
    receive({0x1FFB, mgt_with(0x0100, 0x0600)});
    receive({0x0600, long_section(0xCB, 5, hex("00 00"))});
    EXPECT_EQ(finish().entries.size(), 2u);
}

TEST_F(transcript_of, the_command_line_decides_on_atsc_before_the_packets_do)
{
    transcript_settings from_command_line;
    from_command_line.atsc_mode = 1;
    words.emplace(from_command_line);
    receive(system_time);
    EXPECT_EQ(finish().entries.size(), 1u);

    from_command_line.atsc_mode = 0;
    words.emplace(from_command_line);
    words->on_atsc_packet();
    EXPECT_EQ(settings.atsc_mode, 0);
    words.reset();

    from_command_line.atsc_mode = -1;
    from_command_line.assume_country = 0x3200;
    words.emplace(from_command_line);
    words->on_atsc_packet();
    EXPECT_EQ(settings.atsc_mode, -1);
    EXPECT_EQ(settings.assume_country, 0x3200u);
}

TEST_F(transcript_of, a_run_knows_nothing_of_the_one_before)
{
    settings.dump_tables = true;
    for (unsigned run = 0; run < 2; ++run) {
        receive(pat);
        const transcript_facts facts = finish();
        ASSERT_EQ(facts.entries.size(), 1u);
        EXPECT_NE(facts.entries[0].lines.find("First aware of, tracking program 0x0001"), std::string::npos);
        EXPECT_EQ(facts.entries[0].heading, "* Program Association Table");
    }
    EXPECT_EQ(pid_tracking[0].type, TRACK_NONE);
}

TEST_F(transcript_of, bytes_that_are_no_text_are_replaced)
{
    receive({0x0012, eit_with(descriptor(0x4D, hex("656E67 03 41FF43 00")))});
    const transcript_facts facts = finish();
    ASSERT_EQ(facts.entries.size(), 1u);
    EXPECT_NE(facts.entries[0].lines.find("A\uFFFD"
                                          "C"),
              std::string::npos);
    EXPECT_EQ(facts.entries[0].lines.find('\xFF'), std::string::npos);
}

TEST_F(transcript_of, faults_are_counted_with_repetitions)
{
    const carried faulty = {0x0012, eit_with(hex("4D 05"))};
    for (unsigned i = 0; i < 3; ++i) receive(faulty);
    const transcript_facts facts = finish();
    ASSERT_EQ(facts.faults.size(), 1u);
    EXPECT_EQ(facts.faults[0].text, "!!!! descriptor too long");
    EXPECT_EQ(facts.faults[0].pid, 0x0012);
    EXPECT_EQ(facts.faults[0].table_id, 0x4E);
    EXPECT_EQ(facts.faults[0].count, 3u);
    EXPECT_EQ(facts.faults[0].packets, (std::vector<uint64_t>{0, 1, 2}));
}

TEST_F(transcript_of, a_stop_of_the_analyser_ends_the_transcript)
{
    words.emplace();
    words->on_atsc_packet();
    receive(sdt);
    receive({0x1FFB, mgt_with(0x0100, 0x0011)});
    receive(sdt);
    receive(nit);
    const transcript_facts facts = finish();
    EXPECT_EQ(facts.note, "ends at packet 1, where the analyser stops: PID 0x1ffb, table_id 0xc7");
    ASSERT_EQ(facts.entries.size(), 2u);
    EXPECT_EQ(facts.entries[0].count, 1u);
    EXPECT_TRUE(facts.entries[1].lines.ends_with("            table_type_descriptors_length=0\n"));
    receive(sdt);
    EXPECT_EQ(finish().entries.size(), 1u);
}

TEST_F(transcript_of, any_sections_are_survived)
{
    std::mt19937 random(1);
    const std::vector<carried> seeds = {
        pat,
        pmt,
        sdt,
        nit,
        splice_null,
        system_time,
        {0x1FFB, mgt_with(0x0100,          0x0600)                     },
        {0x0012, eit_with(descriptor(0x4D, hex("656E67 03 414243 00")))}
    };
    size_t entries = 0;
    for (unsigned run = 0; run < 40; ++run) {
        words.emplace();
        words->on_atsc_packet();
        for (unsigned i = 0; i < 200; ++i) {
            carried section = seeds[random() % seeds.size()];
            const size_t body_size = section.data.size() - 12;
            bytes body(section.data.begin() + 8, section.data.begin() + 8 + static_cast<long>(body_size));
            for (unsigned change = random() % 4; change > 0; --change)
                body[random() % body.size()] = static_cast<uint8_t>(random());
            body.resize(random() % 8 == 0 ? random() % 4000 : body.size());
            section.data = long_section(section.data[0], random() % 2, body);
            receive(section);
        }
        entries += finish().entries.size();
    }
    EXPECT_GT(entries, 1000u);
}
