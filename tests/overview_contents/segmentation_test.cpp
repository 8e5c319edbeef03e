#include "tests/overview_contents/splice_sections.h"

#include "mpeg_ts_overview/contents/segmentation.h"

#include <gtest/gtest.h>

namespace {

cue cue_with(const bytes &body)
{
    cue message;
    read_segmentation(body.data(), body.data() + body.size(), message);
    return message;
}

/// The only segmentation of this body.
cue_segmentation segmentation_of(const bytes &body)
{
    const cue message = cue_with(body);
    EXPECT_EQ(message.segmentations.size(), 1u);
    return message.segmentations.empty() ? cue_segmentation{} : message.segmentations[0];
}

/// What a upid of this type is shown as.
std::string upid_of(unsigned segmentation_upid_type, const bytes &upid)
{
    return segmentation_of(join({hex("00000001 7F BF"), big_endian(segmentation_upid_type, 1),
                                 big_endian(upid.size(), 1), upid, hex("30 00 00")}))
        .upid;
}

} // namespace

TEST(segmentation, types_have_the_names_of_the_table)
{
    const std::pair<unsigned, const char *> names[] = {
        {0x00, "Not Indicated"                        },
        {0x01, "Content Identification"               },
        {0x10, "Program Start"                        },
        {0x11, "Program End"                          },
        {0x22, "Break Start"                          },
        {0x30, "Provider Advertisement Start"         },
        {0x31, "Provider Advertisement End"           },
        {0x34, "Provider Placement Opportunity Start" },
        {0x37, "Distributor Placement Opportunity End"},
        {0x40, "Unscheduled Event Start"              },
        {0x47, "Distributor Ad Block End"             },
        {0x51, "Network End"                          },
        {0x52, "reserved"                             },
        {0xFF, "reserved"                             },
    };
    for (const auto &[type, name] : names) {
        const cue_segmentation found =
            segmentation_of(join({hex("00000001 7F BF 00 00"), big_endian(type, 1), hex("00 00")}));
        EXPECT_EQ(found.type, type);
        EXPECT_EQ(found.name, name);
        EXPECT_EQ(found.upid, "");
    }
}

TEST(segmentation, a_duration_and_components_stand_before_the_upid)
{
    EXPECT_EQ(segmentation_of(hex("00000001 7F FF 0000123456 03 01 41 34 01 01")).upid, "A");
    EXPECT_EQ(segmentation_of(hex("00000001 7F 3F 02 01 FE00000000 02 FE00000000 03 01 42 34 01 01")).upid,
              "B");
    EXPECT_EQ(segmentation_of(hex("00000001 7F 7F 01 01 FE00000000 0000123456 03 01 43 34 01 01")).upid, "C");
}

TEST(segmentation, a_upid_is_text_where_its_type_is)
{
    for (const unsigned type : {0x02u, 0x03u, 0x07u, 0x09u, 0x0Eu, 0x0Fu})
        EXPECT_EQ(upid_of(type, text_bytes("ABCD0001")), "ABCD0001") << type;
    EXPECT_EQ(upid_of(0x03, hex("41 00 FF")), "4100ff");
    for (const unsigned type : {0x01u, 0x04u, 0x06u, 0x08u, 0x0Au, 0x0Cu, 0x0Du, 0x10u})
        EXPECT_EQ(upid_of(type, hex("41 42 0F")), "41420f") << type;
}

TEST(segmentation, a_cancelled_event_is_told_and_is_none)
{
    const bytes cancelled = hex("00000001 FF");
    cue message;
    EXPECT_TRUE(read_segmentation(cancelled.data(), cancelled.data() + cancelled.size(), message));
    EXPECT_TRUE(message.segmentations.empty());
    const bytes live = hex("00000001 7F BF 00 00 30 01 01");
    EXPECT_FALSE(read_segmentation(live.data(), live.data() + live.size(), message));
    EXPECT_EQ(message.segmentations.size(), 1u);
}

TEST(segmentation, what_runs_past_the_descriptor_is_left_out)
{
    EXPECT_TRUE(cue_with(hex("00000001 7F BF 03 04 41 42 43 44")).segmentations.empty());
    EXPECT_TRUE(cue_with(hex("00000001 7F 3F FF")).segmentations.empty());
    EXPECT_TRUE(cue_with({}).segmentations.empty());
    EXPECT_FALSE(cue_with({}).cancelled);
}
