#include "tests/mpeg12_pes/pes_scan.h"

#include "tests/support/stream_builder.h"

namespace {

/// An MPEG-2 header of a video stream: the two flag bytes and what follows PES_header_data_length.
bytes header_of(unsigned first_flags, unsigned second_flags, unsigned PES_header_data_length,
                const bytes &header_data)
{
    return join({hex("000001E0 0000"), big_endian(first_flags, 1), big_endian(second_flags, 1),
                 big_endian(PES_header_data_length, 1), header_data});
}

} // namespace

TEST(pes_scanner, a_new_scanner_is_empty)
{
    mpeg_pes *const pes = mpeg_pes_create();
    ASSERT_NE(pes, nullptr);
    EXPECT_EQ(pes->header, nullptr);
    EXPECT_EQ(pes->stream_id, 0u);
    EXPECT_EQ(pes->done, 0);
    EXPECT_EQ(pes->PTS_DTS_flags, 0);
    EXPECT_EQ(pes->mpeg_version, 0);
    EXPECT_EQ(pes->PTS, 0u);
    EXPECT_EQ(pes->DTS, 0u);
    mpeg_pes_destroy(pes);
}

TEST(pes_scanner, a_complete_header_is_decoded)
{
    const pes_scan pes(pes_packet(0xE0, repeated(0x55, 20), 0x123456789, 0x012345678));
    EXPECT_EQ(pes.offset(pes->header), 0);
    EXPECT_EQ(pes->stream_id, 0x1E0u);
    EXPECT_EQ(pes->mpeg_version, 2);
    EXPECT_EQ(pes->PTS_DTS_flags, 3);
    EXPECT_EQ(pes->PES_header_data_length, 10);
    EXPECT_EQ(pes->PTS, 0x123456789u);
    EXPECT_EQ(pes->DTS, 0x012345678u);
}

TEST(pes_scanner, every_flag_stands_in_its_bits)
{
    for (unsigned first = 0x80; first <= 0xBF; ++first)
        for (unsigned second = 0; second <= 0xFF; ++second) {
            const pes_scan pes(header_of(first, second, 0, {}));
            ASSERT_NE(pes->header, nullptr);
            ASSERT_EQ(pes->mpeg_version, 2);
            ASSERT_EQ(pes->PES_scrambling_control, first >> 4 & 3);
            ASSERT_EQ(pes->PES_priority, first >> 3 & 1);
            ASSERT_EQ(pes->data_alignment_indicator, first >> 2 & 1);
            ASSERT_EQ(pes->copyright, first >> 1 & 1);
            ASSERT_EQ(pes->original_or_copy, first & 1);
            ASSERT_EQ(pes->PTS_DTS_flags, second >> 6 & 3);
            ASSERT_EQ(pes->ESCR_flag, second >> 5 & 1);
            ASSERT_EQ(pes->ES_rate_flag, second >> 4 & 1);
            ASSERT_EQ(pes->DSM_trick_mode_flag, second >> 3 & 1);
            ASSERT_EQ(pes->additional_copy_info_flag, second >> 2 & 1);
            ASSERT_EQ(pes->PES_CRC_flag, second >> 1 & 1);
            ASSERT_EQ(pes->PES_extension_flag, second & 1);
            ASSERT_EQ(pes->PTS, 0u);
            ASSERT_EQ(pes->DTS, 0u);
        }
}

TEST(pes_scanner, time_stamps_have_33_bits_without_their_markers)
{
    const pes_scan ones(header_of(0x80, 0xC0, 10, repeated(0xFF, 10)));
    EXPECT_EQ(ones->PTS, 0x1FFFFFFFFu);
    EXPECT_EQ(ones->DTS, 0x1FFFFFFFFu);

    const pes_scan markers(header_of(0x80, 0xC0, 10, hex("F1 00 01 00 01 F1 00 01 00 01")));
    EXPECT_EQ(markers->PTS, 0u);
    EXPECT_EQ(markers->DTS, 0u);

    for (unsigned bit = 0; bit < 33; ++bit) {
        const long long time = 1ll << bit;
        const pes_scan pes(pes_packet(0xC0, {}, time, time - 1));
        EXPECT_EQ(pes->PTS, static_cast<unsigned long long>(time));
        EXPECT_EQ(pes->DTS, static_cast<unsigned long long>(time - 1));
    }
}

TEST(pes_scanner, time_stamps_are_read_where_the_flags_announce_them)
{
    const bytes stamps = hex("21 00 01 00 03 11 00 01 00 05");
    const pes_scan none(header_of(0x80, 0x00, 10, stamps));
    EXPECT_EQ(none->PTS, 0u);
    EXPECT_EQ(none->DTS, 0u);
    const pes_scan forbidden(header_of(0x80, 0x40, 10, stamps));
    EXPECT_EQ(forbidden->PTS_DTS_flags, 1);
    EXPECT_EQ(forbidden->PTS, 0u);
    EXPECT_EQ(forbidden->DTS, 0u);
    const pes_scan pts(header_of(0x80, 0x80, 10, stamps));
    EXPECT_EQ(pts->PTS, 1u);
    EXPECT_EQ(pts->DTS, 0u);
    const pes_scan both(header_of(0x80, 0xC0, 10, stamps));
    EXPECT_EQ(both->PTS, 1u);
    EXPECT_EQ(both->DTS, 2u);
}

TEST(pes_scanner, time_stamps_without_room_in_the_header_data_are_absent)
{
    const bytes stamps = hex("21 00 01 00 03 11 00 01 00 05");
    for (unsigned length = 0; length <= 10; ++length) {
        const pes_scan pts(header_of(0x80, 0x80, length, stamps));
        EXPECT_NE(pts->header, nullptr);
        EXPECT_EQ(pts->PES_header_data_length, length);
        EXPECT_EQ(pts->PTS, length >= 5 ? 1u : 0u) << length;
        const pes_scan both(header_of(0x80, 0xC0, length, stamps));
        EXPECT_NE(both->header, nullptr);
        EXPECT_EQ(both->PTS, length >= 5 ? 1u : 0u) << length;
        EXPECT_EQ(both->DTS, length >= 10 ? 2u : 0u) << length;
    }
}

TEST(pes_scanner, a_header_cut_by_the_fence_is_not_decoded)
{
    const bytes whole = pes_packet(0xE0, {}, 90000, 45000);
    for (size_t size = 0; size < whole.size(); ++size) {
        const pes_scan pes(bytes(whole.begin(), whole.begin() + static_cast<long>(size)));
        EXPECT_EQ(pes->header, nullptr) << size;
        EXPECT_EQ(pes->stream_id, size >= 4 ? 0x1E0u : 0u) << size;
        EXPECT_EQ(pes->done, 1) << size;
        EXPECT_EQ(pes.next, pes.fence()) << size;
    }
    EXPECT_NE(pes_scan(whole)->header, nullptr);
}

TEST(pes_scanner, header_data_that_pass_the_fence_leave_no_header)
{
    const pes_scan pes(header_of(0x80, 0x00, 171, repeated(0xFF, 170)));
    EXPECT_EQ(pes->header, nullptr);
    EXPECT_EQ(pes->done, 1);
    const pes_scan fits(header_of(0x80, 0x00, 170, repeated(0xFF, 170)));
    EXPECT_NE(fits->header, nullptr);
    EXPECT_EQ(fits->PES_header_data_length, 170);
}

TEST(pes_scanner, streams_with_header_fields_are_decoded_and_the_others_are_not)
{
    for (unsigned stream_id = 0xBC; stream_id <= 0xFF; ++stream_id) {
        const pes_scan pes(pes_packet(stream_id, repeated(0x00, 8), 1));
        EXPECT_EQ(pes->stream_id, 0x100 + stream_id);
        const bool plain = stream_id == 0xBC || stream_id == 0xBE || stream_id == 0xBF || stream_id == 0xF0 ||
                           stream_id == 0xF1 || stream_id == 0xF2 || stream_id == 0xF8 || stream_id == 0xFF;
        EXPECT_EQ(pes->header != nullptr, !plain) << stream_id;
    }
}
