#include "mpeg12_ts/packet.h"

#include "mpeg12_ts/bit_reader.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <random>

namespace {

/// What a packet should decode to, read by width from its adaptation field.
struct expected_fields {
    unsigned long long PCR = 0;
    unsigned long long OPCR = 0;
    unsigned splice_countdown = 0;
    unsigned transport_private_data_length = 0;
    const uint8_t *transport_private_data = nullptr;
    unsigned adaptation_field_extension_length = 0;
    const uint8_t *adaptation_field_extension = nullptr;
};

unsigned long long clock_of(bit_reader &in)
{
    const unsigned long long base = in.bits64(33);
    in.bits(6);
    return base * 300 + in.bits(9);
}

expected_fields fields_of(const uint8_t *field, unsigned length)
{
    expected_fields out;
    bit_reader in(field, field + length);
    const unsigned flags = in.bits(8);

    if ((flags & 0x10) != 0) {
        if (!in.has(6)) return out;
        out.PCR = clock_of(in);
    }
    if ((flags & 0x08) != 0) {
        if (!in.has(6)) return out;
        out.OPCR = clock_of(in);
    }
    if ((flags & 0x04) != 0) {
        if (!in.has(1)) return out;
        out.splice_countdown = in.bits(8);
    }
    if ((flags & 0x02) != 0) {
        if (!in.has(1)) return out;
        out.transport_private_data_length = in.bits(8);
        if (!in.has(out.transport_private_data_length)) return out;
        out.transport_private_data = in.position();
        in.skip(out.transport_private_data_length);
    }
    if ((flags & 0x01) != 0) {
        if (!in.has(1)) return out;
        out.adaptation_field_extension_length = in.bits(8);
        if (!in.has(out.adaptation_field_extension_length)) return out;
        out.adaptation_field_extension = in.position();
    }
    return out;
}

unsigned flags_of(const mpeg_ts_packet &packet)
{
    unsigned flags = 0;
    for (const unsigned flag : {packet.discontinuity_indicator, packet.random_access_indicator,
                                packet.elementary_stream_priority_indicator, packet.PCR_flag,
                                packet.OPCR_flag, packet.splicing_point_flag,
                                packet.transport_private_data_flag, packet.adaptation_field_extension_flag})
        flags = flags << 1 | flag;
    return flags;
}

/// The packet starts at p of the block, whose bytes are as they should be decoded.
void check(const bytes &block, const uint8_t *p)
{
    mpeg_ts_packet packet;
    const unsigned control = p[3] >> 4 & 3;
    const unsigned length = p[4];
    const bool has_field = (control & 2) != 0;
    const bool fits = !has_field || length <= 183;

    ASSERT_EQ(mpeg_ts_decode(&packet, block.data(), block.size()) != 0, fits);
    if (!fits) {
        ASSERT_EQ(packet.packet, nullptr);
        ASSERT_EQ(packet.adaptation_field, nullptr);
        ASSERT_EQ(packet.payload, nullptr);
        return;
    }
    const uint8_t *const field_fence = has_field ? p + 5 + length : p + 4;
    const uint8_t *const fence = block.data() + block.size();
    ASSERT_EQ(packet.fence, fence);
    ASSERT_EQ(packet.adaptation_field, has_field ? p + 4 : nullptr);
    ASSERT_EQ(packet.adaptation_field_fence, field_fence);
    ASSERT_EQ(packet.payload, (control & 1) != 0 && field_fence < fence ? field_fence : nullptr);

    const bool has_flags = has_field && length > 0;
    const expected_fields expected = has_flags ? fields_of(p + 5, length) : expected_fields{};
    ASSERT_EQ(flags_of(packet), has_flags ? p[5] : 0u);
    ASSERT_EQ(packet.PCR, expected.PCR);
    ASSERT_EQ(packet.OPCR, expected.OPCR);
    ASSERT_EQ(packet.splice_countdown, expected.splice_countdown);
    ASSERT_EQ(packet.transport_private_data_length, expected.transport_private_data_length);
    ASSERT_EQ(packet.transport_private_data, expected.transport_private_data);
    ASSERT_EQ(packet.adaptation_field_extension_length, expected.adaptation_field_extension_length);
    ASSERT_EQ(packet.adaptation_field_extension, expected.adaptation_field_extension);
}

/// Every adaptation_field_length with every flag byte and every adaptation_field_control, over bodies that
/// the caller fills, in a block of exactly the packet's size.
template <typename fill>
void sweep(size_t size, fill next_byte)
{
    bytes block(size);
    uint8_t *const p = block.data() + (size - 188);

    for (unsigned control = 0; control <= 3; ++control)
        for (unsigned length = 0; length <= 0xFF; ++length)
            for (unsigned flags = 0; flags <= 0xFF; ++flags) {
                for (uint8_t *q = block.data(); q < block.data() + size; ++q) *q = next_byte();
                p[0] = 0x47;
                p[3] = static_cast<uint8_t>(control << 4);
                p[4] = static_cast<uint8_t>(length);
                p[5] = static_cast<uint8_t>(flags);
                check(block, p);
                if (testing::Test::HasFatalFailure()) {
                    FAIL() << "control " << control << " length " << length << " flags " << flags;
                }
            }
}

} // namespace

TEST(packet_sweep, every_length_and_flag_byte_of_random_bodies)
{
    for (const size_t size : {size_t{188}, size_t{192}}) {
        std::minstd_rand random(6);
        sweep(size, [&] { return static_cast<uint8_t>(random() >> 8); });
    }
}

/// Small lengths, so that the extension is often reached.
TEST(packet_sweep, every_length_and_flag_byte_of_bodies_with_small_lengths)
{
    std::minstd_rand random(7);
    sweep(188, [&] { return static_cast<uint8_t>((random() >> 8) % 24); });
}

TEST(packet_sweep, every_length_and_flag_byte_of_ones)
{
    for (const size_t size : {size_t{188}, size_t{192}}) sweep(size, [] { return uint8_t{0xFF}; });
}
