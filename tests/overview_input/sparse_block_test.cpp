#include "mpeg_ts_overview/input/sparse_block.h"
#include "tests/overview_input/memory_source.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

constexpr size_t loss = 500; ///< bytes

/// Six packets, bytes that are none, and so on.
bytes packets_between_losses(unsigned size, unsigned rounds)
{
    bytes stream;
    for (unsigned i = 0; i < 6 * rounds; ++i) {
        if (size == 192) stream.insert(stream.end(), {0, 0, static_cast<uint8_t>(i), 0});
        const bytes packet = stream_builder().payload(0x100 + i, repeated(0x11, 184)).data();
        stream.insert(stream.end(), packet.begin(), packet.end());
        if (size == 204) stream.insert(stream.end(), 16, 0x22);
        if (i % 6 == 5) stream.insert(stream.end(), loss, 0);
    }
    return stream;
}

/// Each step of the copy is that of the block, with its bytes and its place in the recording.
void expect_same_steps(const block &copy, const block &original, const packet_grid &grid)
{
    ASSERT_EQ(copy.steps.size(), original.steps.size());
    for (size_t i = 0; i < copy.steps.size(); ++i) {
        const scan_step &step = copy.steps[i];
        const scan_step &expected = original.steps[i];
        EXPECT_EQ(step.kind, expected.kind);
        EXPECT_EQ(step.index, expected.index);
        EXPECT_EQ(step.count, expected.count);
        EXPECT_EQ(copy.offset_of(step.start - grid.sync_offset),
                  original.offset_of(expected.start - grid.sync_offset));
        const size_t size = size_t{step.count} * grid.packet_size;
        EXPECT_EQ(std::memcmp(step.start - grid.sync_offset, expected.start - grid.sync_offset, size), 0);
    }
    EXPECT_EQ(copy.arrival, original.arrival);
    EXPECT_EQ(copy.first_index, original.first_index);
    EXPECT_EQ(copy.fence_index, original.fence_index);
}

} // namespace

TEST(sparse_block, is_copied_packet_by_packet)
{
    for (const unsigned size : {188u, 192u, 204u}) {
        SCOPED_TRACE(size);
        packet_scanner scanner(source_of(packets_between_losses(size, 20)), size);
        ASSERT_TRUE(scanner.find_packets());
        const std::unique_ptr<block> original = scanner.next_block();
        EXPECT_EQ(scanner.counts().sync_losses, 20u);
        EXPECT_TRUE(is_sparse(*original, scanner.grid()));
        const std::unique_ptr<block> copy = packets_of(*original, scanner.grid());
        EXPECT_EQ(static_cast<size_t>(copy->fence - copy->first), 6u * 20 * size);
        EXPECT_EQ(copy->pieces.size(), 20u);
        expect_same_steps(*copy, *original, scanner.grid());
    }
}

TEST(sparse_block, is_none_that_holds_little_but_packets)
{
    bytes stream;
    for (unsigned i = 0; i < 100; ++i) {
        const bytes packet = stream_builder().payload(0x100, repeated(0x11, 184)).data();
        stream.insert(stream.end(), packet.begin(), packet.end());
        if (i % 50 == 20) stream.insert(stream.end(), loss, 0);
    }
    packet_scanner scanner(source_of(stream), 188);
    ASSERT_TRUE(scanner.find_packets());
    const std::unique_ptr<block> original = scanner.next_block();
    EXPECT_EQ(scanner.counts().sync_losses, 2u);
    EXPECT_FALSE(is_sparse(*original, scanner.grid()));
    EXPECT_TRUE(original->pieces.empty());
}
