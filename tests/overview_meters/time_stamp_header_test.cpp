#include "mpeg_ts_overview/meters/time_stamp_header.h"

#include "tests/support/stream_builder.h"

#include <gtest/gtest.h>

namespace {

std::optional<pes_time_stamps> read(const bytes &payload)
{
    return read_time_stamps(payload.data(), payload.data() + payload.size());
}

constexpr long long greatest_stamp = (1ll << 33) - 1;

} // namespace

TEST(time_stamp_header, both_stamps_have_33_bits)
{
    const auto stamps = read(pes_packet(0xE0, {}, greatest_stamp, 0x155555555));
    ASSERT_TRUE(stamps);
    EXPECT_EQ(stamps->PTS, greatest_stamp);
    EXPECT_EQ(stamps->DTS, 0x155555555);
}

TEST(time_stamp_header, a_pts_may_stand_alone)
{
    const auto stamps = read(pes_packet(0xC0, {}, 90000));
    ASSERT_TRUE(stamps);
    EXPECT_EQ(stamps->PTS, 90000);
    EXPECT_FALSE(stamps->DTS);
}

TEST(time_stamp_header, a_header_without_stamps_is_read)
{
    const auto stamps = read(pes_packet(0xE0, {}));
    ASSERT_TRUE(stamps);
    EXPECT_FALSE(stamps->PTS);
    EXPECT_FALSE(stamps->DTS);
}

TEST(time_stamp_header, eight_stream_ids_have_no_stamps)
{
    const bytes without = hex("BC BE BF F0 F1 F2 F8 FF");
    for (unsigned id = 0xBC; id <= 0xFF; ++id) {
        const bool has_flags = std::find(without.begin(), without.end(), id) == without.end();
        EXPECT_EQ(read(pes_packet(id, {}, 1, 1)).has_value(), has_flags) << id;
    }
}

TEST(time_stamp_header, no_start_code_no_header)
{
    EXPECT_FALSE(read(hex("00 00 02 E0 00 00 80 80 05 21 00 01 00 01")));
    EXPECT_FALSE(read(hex("00 01 01 E0 00 00 80 80 05 21 00 01 00 01")));
    EXPECT_TRUE(read(hex("00 00 01 E0 00 00 80 80 05 21 00 01 00 01")));
}

TEST(time_stamp_header, the_stamps_lie_in_the_packet_or_are_not_read)
{
    const bytes whole = pes_packet(0xE0, {}, 5, 4);
    ASSERT_EQ(whole.size(), 19u);
    for (size_t size = 0; size <= whole.size(); ++size) {
        const bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(read(cut).has_value(), size == whole.size()) << size;
    }
}

TEST(time_stamp_header, a_damaged_bit_beside_the_stamps_does_not_keep_them_from_being_read)
{
    for (const char *header :
         {"00 00 01 E0 00 00 00 80 05 21 00 01 00 01", "00 00 01 E0 00 00 C0 80 05 21 00 01 00 01",
          "00 00 01 E0 00 00 80 80 04 21 00 01 00 01"}) {
        const auto stamps = read(hex(header));
        ASSERT_TRUE(stamps) << header;
        EXPECT_EQ(stamps->PTS, 0) << header;
    }
}

TEST(time_stamp_header, the_forbidden_flags_announce_no_stamp)
{
    const auto stamps = read(hex("00 00 01 E0 00 00 80 40 05 21 00 01 00 01"));
    ASSERT_TRUE(stamps);
    EXPECT_FALSE(stamps->PTS);
    EXPECT_FALSE(stamps->DTS);
}
