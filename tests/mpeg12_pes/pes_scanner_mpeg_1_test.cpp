#include "tests/mpeg12_pes/pes_scan.h"

namespace {

/// A packet of an audio stream: what follows PES_packet_length.
bytes packet_of(const bytes &rest)
{
    return join({hex("000001C0 0020"), rest});
}

} // namespace

TEST(pes_scanner_mpeg_1, a_pts_alone_is_read)
{
    const pes_scan pes(packet_of(hex("21 00 01 00 03")));
    EXPECT_EQ(pes.offset(pes->header), 0);
    EXPECT_EQ(pes->stream_id, 0x1C0u);
    EXPECT_EQ(pes->mpeg_version, 1);
    EXPECT_EQ(pes->PTS_DTS_flags, 2);
    EXPECT_EQ(pes->PTS, 1u);
    EXPECT_EQ(pes->DTS, 0u);
    EXPECT_EQ(pes->PES_header_data_length, 0);
}

TEST(pes_scanner_mpeg_1, a_pts_and_a_dts_are_read)
{
    const pes_scan pes(packet_of(hex("3F FF FF FF FF 11 00 01 00 05")));
    EXPECT_NE(pes->header, nullptr);
    EXPECT_EQ(pes->mpeg_version, 1);
    EXPECT_EQ(pes->PTS_DTS_flags, 3);
    EXPECT_EQ(pes->PTS, 0x1FFFFFFFFu);
    EXPECT_EQ(pes->DTS, 2u);
}

TEST(pes_scanner_mpeg_1, a_header_may_have_no_time_stamps)
{
    const pes_scan pes(packet_of(hex("0F")));
    EXPECT_NE(pes->header, nullptr);
    EXPECT_EQ(pes->mpeg_version, 1);
    EXPECT_EQ(pes->PTS_DTS_flags, 0);
    EXPECT_EQ(pes->PTS, 0u);
    EXPECT_EQ(pes->DTS, 0u);
}

TEST(pes_scanner_mpeg_1, stuffing_and_buffer_fields_go_before_the_time_stamps)
{
    const pes_scan stuffed(packet_of(hex("FF FF FF 21 00 01 00 03")));
    EXPECT_EQ(stuffed->mpeg_version, 1);
    EXPECT_EQ(stuffed->PTS, 1u);
    const pes_scan buffered(packet_of(hex("60 20 21 00 01 00 03")));
    EXPECT_EQ(buffered->mpeg_version, 1);
    EXPECT_EQ(buffered->PTS, 1u);
    const pes_scan both(packet_of(hex("FF FF 40 FF 31 00 01 00 03 11 00 01 00 05")));
    EXPECT_EQ(both->PTS, 1u);
    EXPECT_EQ(both->DTS, 2u);
}

TEST(pes_scanner_mpeg_1, a_header_cut_by_the_fence_is_not_decoded)
{
    const bytes whole = packet_of(hex("FF FF 60 20 31 00 01 00 03 11 00 01 00 05"));
    for (size_t size = 0; size < whole.size(); ++size) {
        const pes_scan pes(bytes(whole.begin(), whole.begin() + static_cast<long>(size)));
        EXPECT_EQ(pes->header, nullptr) << size;
        EXPECT_EQ(pes->PTS, 0u) << size;
        EXPECT_EQ(pes->done, 1) << size;
        EXPECT_EQ(pes.next, pes.fence()) << size;
    }
    EXPECT_NE(pes_scan(whole)->header, nullptr);
}

TEST(pes_scanner_mpeg_1, what_is_no_header_of_either_kind_is_not_decoded)
{
    for (const uint8_t first : hex("00 0E 10 1F 40 7F C0 E0 FE")) {
        const pes_scan pes(packet_of(join({bytes{first}, repeated(0x00, 20)})));
        EXPECT_EQ(pes->header, nullptr) << unsigned{first};
        EXPECT_EQ(pes->stream_id, 0x1C0u);
    }
    EXPECT_EQ(pes_scan(packet_of(hex("FF 81 80 05 21 00 01 00 03")))->header, nullptr);
}
