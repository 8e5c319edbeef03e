#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/driver/packet_size.h"

#include <algorithm>
#include <memory>

struct packet_size : report_test {};

namespace {

constexpr uint8_t sync_byte = 0x47;

/// The bytes that the detection reads, with sync bytes of 188-byte packets and of 192-byte packets.
bytes with_sync_bytes(unsigned first_188, unsigned count_188, unsigned first_192, unsigned count_192)
{
    bytes buffer(6144, 0x00);
    for (unsigned i = first_188; i < first_188 + count_188; ++i) buffer.at(188 * i) = sync_byte;
    for (unsigned i = first_192; i < first_192 + count_192; ++i) buffer.at(192 * i + 4) = sync_byte;
    return buffer;
}

int detected(const bytes &buffer)
{
    // A block of exactly this size, so that the address sanitizer sees one byte too many.
    const std::unique_ptr<uint8_t[]> block(new uint8_t[buffer.size()]);
    std::copy(buffer.begin(), buffer.end(), block.get());
    return detect_packet_size(block.get(), buffer.size());
}

} // namespace

TEST_F(packet_size, four_sync_bytes_of_a_size_are_enough)
{
    EXPECT_EQ(detected(with_sync_bytes(0, 4, 0, 0)), 188);
    EXPECT_EQ(detected(with_sync_bytes(0, 0, 0, 4)), 192);
    EXPECT_EQ(detected(with_sync_bytes(17, 4, 0, 0)), 188);
    EXPECT_EQ(detected(with_sync_bytes(0, 0, 17, 4)), 192);
}

TEST_F(packet_size, three_sync_bytes_are_not_enough)
{
    EXPECT_EQ(detected(with_sync_bytes(0, 3, 0, 0)), -1);
    EXPECT_EQ(detected(with_sync_bytes(0, 0, 0, 3)), -1);
    EXPECT_EQ(detected(with_sync_bytes(0, 3, 0, 3)), -1);
    EXPECT_EQ(detected(bytes(6144, 0x00)), -1);
}

TEST_F(packet_size, the_size_with_more_sync_bytes_wins)
{
    EXPECT_EQ(detected(with_sync_bytes(0, 4, 0, 5)), 192);
    EXPECT_EQ(detected(with_sync_bytes(0, 5, 0, 4)), 188);
    EXPECT_EQ(detected(with_sync_bytes(0, 3, 0, 4)), 192);
    EXPECT_EQ(detected(with_sync_bytes(0, 4, 0, 3)), 188);
    EXPECT_EQ(detected(with_sync_bytes(0, 31, 0, 32)), 192);
}

TEST_F(packet_size, a_tie_is_188)
{
    EXPECT_EQ(detected(with_sync_bytes(0, 4, 0, 4)), 188);
    EXPECT_EQ(detected(with_sync_bytes(0, 32, 0, 32)), 188);
    EXPECT_EQ(detected(bytes(6144, sync_byte)), 188);
}

TEST_F(packet_size, both_series_run_for_as_many_positions_as_188_byte_packets_fit)
{
    EXPECT_EQ(detected(with_sync_bytes(28, 4, 0, 0)), 188);
    EXPECT_EQ(detected(with_sync_bytes(29, 4, 0, 0)), -1); // the packet at 6016 is not whole
    EXPECT_EQ(detected(with_sync_bytes(0, 0, 28, 4)), 192);

    bytes four_packets(4 * 188, 0x00);
    for (unsigned i = 0; i < 4; ++i) four_packets[188 * i] = sync_byte;
    EXPECT_EQ(detected(four_packets), 188);
    four_packets.pop_back();
    EXPECT_EQ(detected(four_packets), -1);
}

TEST_F(packet_size, the_last_sync_byte_must_have_a_byte_behind_it)
{
    // 47 positions: the last 192-byte packet's sync byte would be byte 8836.
    bytes buffer(8837, 0x00);
    for (unsigned i = 43; i < 47; ++i) buffer.at(192 * i + 4) = sync_byte;
    EXPECT_EQ(detected(buffer), -1);
    buffer.push_back(0x00);
    EXPECT_EQ(detected(buffer), 192);
}

TEST_F(packet_size, less_than_a_packet_is_no_size)
{
    EXPECT_EQ(detected({}), -1);
    EXPECT_EQ(detected(bytes(187, sync_byte)), -1);
    EXPECT_EQ(detected(bytes(188, sync_byte)), -1);
}

TEST_F(packet_size, nothing_is_read_behind_the_buffer)
{
    for (size_t length = 0; length <= 12000; ++length)
        EXPECT_EQ(detected(bytes(length, sync_byte)), length < 4 * 188 ? -1 : 188) << length;
}
