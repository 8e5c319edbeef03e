#include "tests/overview_contents/splice_sections.h"

#include "mpeg_ts_overview/contents/splice_info.h"

#include <gtest/gtest.h>
#include <random>

namespace {

cue cue_of(const bytes &section)
{
    return read_splice_info(section.data(), section.data() + section.size());
}

const bytes ad_start = segmentation_descriptor(hex("00000001 7F BF 00 00 30 01 01"));

/// splice_insert() of a whole program at a time, with a break.
const bytes insert_with_break =
    join({hex("11223344 7F EF"), splice_time(900000), break_duration(true, 2700000), hex("0001 00 00")});

} // namespace

TEST(splice_info, commands_have_their_names)
{
    EXPECT_EQ(cue_of(splice_section(0x00, {})).command, "splice_null");
    EXPECT_EQ(cue_of(splice_section(0x04, hex("00"))).command, "splice_schedule");
    EXPECT_EQ(cue_of(splice_section(0x05, insert_with_break)).command, "splice_insert");
    EXPECT_EQ(cue_of(splice_section(0x06, splice_time(0))).command, "time_signal");
    EXPECT_EQ(cue_of(splice_section(0x07, {})).command, "bandwidth_reservation");
    EXPECT_EQ(cue_of(splice_section(0xFF, hex("43554549 00"))).command, "private_command");
    EXPECT_EQ(cue_of(splice_section(0x03, {})).command, "reserved");
    EXPECT_EQ(cue_of(hex("FC 30 01 00")).command, "cut off");
}

TEST(splice_info, a_splice_insert_says_what_when_and_how_long)
{
    const cue found = cue_of(splice_section(0x05, insert_with_break, ad_start));
    EXPECT_EQ(found.splice_event_id, 0x11223344u);
    EXPECT_EQ(found.out_of_network, true);
    EXPECT_EQ(found.immediate, false);
    EXPECT_EQ(found.pts_time, 900000u);
    EXPECT_EQ(found.break_duration, 2700000u);
    EXPECT_EQ(found.auto_return, true);
    EXPECT_FALSE(found.cancelled);
    ASSERT_EQ(found.segmentations.size(), 1u);
    EXPECT_EQ(found.segmentations[0].type, 0x30);
}

TEST(splice_info, an_immediate_splice_has_no_time)
{
    const cue found = cue_of(splice_section(0x05, hex("00000007 7F 5F 0001 00 00")));
    EXPECT_EQ(found.splice_event_id, 7u);
    EXPECT_EQ(found.out_of_network, false);
    EXPECT_EQ(found.immediate, true);
    EXPECT_EQ(found.pts_time, std::nullopt);
    EXPECT_EQ(found.break_duration, std::nullopt);
    EXPECT_EQ(found.auto_return, std::nullopt);
}

TEST(splice_info, a_cancelled_splice_has_its_event_only)
{
    const cue found = cue_of(splice_section(0x05, hex("00000007 FF")));
    EXPECT_TRUE(found.cancelled);
    EXPECT_EQ(found.splice_event_id, 7u);
    EXPECT_EQ(found.out_of_network, std::nullopt);
    EXPECT_EQ(found.immediate, std::nullopt);
    EXPECT_EQ(found.pts_time, std::nullopt);
}

TEST(splice_info, a_splice_by_components_has_the_first_time)
{
    const cue found =
        cue_of(splice_section(0x05, join({hex("00000007 7F AF 03 01 7F 02"), splice_time(4711), hex("03"),
                                          splice_time(9), break_duration(false, 90000), hex("0001 00 00")})));
    EXPECT_EQ(found.pts_time, 4711u);
    EXPECT_EQ(found.break_duration, 90000u);
    EXPECT_EQ(found.auto_return, false);
}

TEST(splice_info, components_of_an_immediate_splice_have_no_times)
{
    const cue found = cue_of(splice_section(
        0x05, join({hex("00000007 7F BF 02 01 02"), break_duration(true, 5), hex("0001 00 00")})));
    EXPECT_EQ(found.pts_time, std::nullopt);
    EXPECT_EQ(found.break_duration, 5u);
}

TEST(splice_info, a_time_signal_has_a_time_or_none)
{
    EXPECT_EQ(cue_of(splice_section(0x06, splice_time(0x1FFFFFFFF))).pts_time, 0x1FFFFFFFFu);
    EXPECT_EQ(cue_of(splice_section(0x06, hex("7F"))).pts_time, std::nullopt);
    EXPECT_EQ(cue_of(splice_section(0x06, splice_time(1))).immediate, std::nullopt);
}

TEST(splice_info, the_adjustment_is_added_modulo_33_bits)
{
    splice_fields fields;
    fields.pts_adjustment = 0x1FFFFFFFF;
    EXPECT_EQ(cue_of(splice_section(0x06, splice_time(100), {}, fields)).pts_time, 99u);
    fields.pts_adjustment = 50;
    EXPECT_EQ(cue_of(splice_section(0x06, splice_time(100), {}, fields)).pts_time, 150u);
}

TEST(splice_info, a_schedule_is_its_first_event)
{
    const bytes first = join({hex("00000009 7F FF 12345678"), break_duration(true, 77), hex("0001 00 00")});
    const bytes second = hex("0000000A FF");
    const cue found = cue_of(splice_section(0x04, join({hex("02"), first, second}), ad_start));
    EXPECT_EQ(found.splice_event_id, 9u);
    EXPECT_EQ(found.out_of_network, true);
    EXPECT_EQ(found.break_duration, 77u);
    EXPECT_EQ(found.pts_time, std::nullopt);
    EXPECT_FALSE(found.cancelled);
    EXPECT_EQ(found.segmentations.size(), 1u);
}

TEST(splice_info, an_encrypted_section_is_not_read)
{
    splice_fields fields;
    fields.encrypted_packet = 1;
    const cue found = cue_of(splice_section(0x05, insert_with_break, ad_start, fields));
    EXPECT_EQ(found.command, "encrypted");
    EXPECT_EQ(found.splice_event_id, std::nullopt);
    EXPECT_EQ(found.pts_time, std::nullopt);
    EXPECT_TRUE(found.segmentations.empty());
}

TEST(splice_info, another_protocol_is_not_read)
{
    bytes section = splice_section(0x05, insert_with_break, ad_start);
    section[3] = 1; // protocol_version
    const cue found = cue_of(section);
    EXPECT_EQ(found.command, "reserved");
    EXPECT_EQ(found.splice_event_id, std::nullopt);
    EXPECT_TRUE(found.segmentations.empty());
}

TEST(splice_info, segmentations_cancel_a_message_when_none_of_them_lives)
{
    const bytes cancelled = segmentation_descriptor(hex("00000002 FF"));
    EXPECT_TRUE(cue_of(splice_section(0x06, splice_time(3), cancelled)).cancelled);
    EXPECT_FALSE(cue_of(splice_section(0x06, splice_time(3), join({cancelled, ad_start}))).cancelled);
    EXPECT_FALSE(cue_of(splice_section(0x06, splice_time(3), join({ad_start, cancelled}))).cancelled);
}

TEST(splice_info, without_a_command_length_the_descriptors_follow_the_command)
{
    splice_fields fields;
    fields.splice_command_length = 0xFFF;
    for (const auto &[type, command] : {
             std::pair<unsigned, bytes>{0x05, insert_with_break                                             },
             {0x06, splice_time(3)                                                },
             {0x06, hex("7F")                                                     },
             {0x00, {}                                                            },
             {0x04, hex("02 0000000A FF 00000009 7F 9F 01 01 12345678 0001 00 00")},
             {0x05, hex("00000007 FF")                                            }
    })
        EXPECT_EQ(cue_of(splice_section(type, command, ad_start, fields)).segmentations.size(), 1u) << type;
    EXPECT_TRUE(cue_of(splice_section(0xFF, hex("43554549"), ad_start, fields)).segmentations.empty());
}

TEST(splice_info, a_command_length_beyond_the_section_leaves_no_descriptors)
{
    splice_fields fields;
    fields.splice_command_length = 100;
    EXPECT_TRUE(cue_of(splice_section(0x06, splice_time(3), ad_start, fields)).segmentations.empty());
}

TEST(splice_info, other_descriptors_are_passed_over)
{
    const bytes avail = descriptor(0x00, join({text_bytes("CUEI"), hex("00000001")}));
    const bytes foreign = descriptor(0x02, join({text_bytes("ABCD"), hex("00000001 7F BF 00 00 30 01 01")}));
    const bytes tiny = descriptor(0x02, hex("43"));
    EXPECT_EQ(cue_of(splice_section(0x06, splice_time(3), join({avail, foreign, tiny, ad_start})))
                  .segmentations.size(),
              1u);
}

TEST(splice_info, a_descriptor_beyond_the_loop_is_not_read)
{
    bytes descriptors = ad_start;
    ++descriptors[1];
    EXPECT_TRUE(cue_of(splice_section(0x06, splice_time(3), descriptors)).segmentations.empty());
}

TEST(splice_info, a_command_that_the_section_cuts_short_says_nothing)
{
    bytes cut = insert_with_break;
    while (cut.size() > 1) {
        cut.pop_back();
        const cue found = cue_of(splice_section(0x05, cut));
        EXPECT_EQ(found.command, "splice_insert");
        // Behind the command stands the length of the descriptors, two bytes.
        if (cut.size() + 2 >= insert_with_break.size()) continue;
        EXPECT_EQ(found.splice_event_id, std::nullopt) << cut.size();
        EXPECT_EQ(found.pts_time, std::nullopt) << cut.size();
        EXPECT_EQ(found.break_duration, std::nullopt) << cut.size();
    }
    EXPECT_EQ(cue_of(splice_section(0x06, hex("FE"))).pts_time, std::nullopt);
}

TEST(splice_info, any_bytes_are_read_within_their_bounds)
{
    std::mt19937 random(1);
    const bytes whole = splice_section(0x05, insert_with_break, ad_start);
    for (unsigned i = 0; i < 20000; ++i) {
        bytes spoiled(whole.begin(), whole.begin() + static_cast<long>(3 + random() % (whole.size() - 2)));
        for (unsigned change = 0; change < 4; ++change)
            spoiled[random() % spoiled.size()] = static_cast<uint8_t>(random());
        EXPECT_FALSE(cue_of(spoiled).command.empty());
    }
}
