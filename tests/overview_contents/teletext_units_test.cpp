#include "tests/overview_contents/teletext_stream.h"

#include "mpeg_ts_overview/contents/teletext_units.h"

#include <gtest/gtest.h>

namespace {

/// The first bytes of the units that come of the stream when it is cut into payloads of so many bytes.
std::string units_of(const bytes &stream, size_t payload_size = 184)
{
    teletext_unit_reader reader;
    std::string firsts;
    for (size_t at = 0; at < stream.size(); at += payload_size) {
        // Copied, so that a read beyond the payload is one beyond its storage.
        const bytes payload(stream.begin() + static_cast<long>(at),
                            stream.begin() + static_cast<long>(std::min(at + payload_size, stream.size())));
        reader.on_payload(payload.data(), payload.data() + payload.size(), at == 0);
        while (const uint8_t *const unit = reader.next_unit()) {
            firsts += static_cast<char>(unit[0]);
            EXPECT_TRUE(std::all_of(unit, unit + 44, [unit](uint8_t byte) { return byte == unit[0]; }));
        }
    }
    return firsts;
}

/// A data unit of 44 equal bytes.
bytes unit(char letter, unsigned data_unit_id = 0x02)
{
    return data_unit_of(repeated(static_cast<uint8_t>(letter), 44), data_unit_id);
}

} // namespace

TEST(teletext_units, units_of_both_kinds_are_found)
{
    EXPECT_EQ(units_of(teletext_pes(join({hex("10"), unit('a'), unit('b', 0x03), unit('c')}))), "abc");
}

TEST(teletext_units, units_may_lie_anywhere_in_the_payloads)
{
    const bytes pes = teletext_pes(join({hex("1F"), unit('a'), unit('b'), unit('c'), unit('d')}));
    for (size_t size = 1; size < 250; ++size) EXPECT_EQ(units_of(pes, size), "abcd") << size;
}

TEST(teletext_units, other_data_units_are_passed_over)
{
    const bytes field =
        join({hex("10"), unit('-', 0xFF), unit('-', 0xC0), unit('a'), data_unit_of(repeated('-', 43)),
              data_unit_of(repeated('-', 255)), data_unit_of({}, 0xFF), unit('b')});
    EXPECT_EQ(units_of(teletext_pes(field)), "ab");
}

TEST(teletext_units, the_pes_packet_ends_where_it_says)
{
    const bytes pes = teletext_pes(join({hex("10"), unit('a'), unit('b')}));
    EXPECT_EQ(units_of(join({pes, unit('c')})), "ab");
    bytes shorter = pes;
    --shorter[5];
    EXPECT_EQ(units_of(shorter), "a");
}

TEST(teletext_units, other_pes_packets_have_none)
{
    const bytes good = teletext_pes(join({hex("10"), unit('a')}));
    const auto with = [&good](size_t at, unsigned byte) {
        bytes other = good;
        other[at] = static_cast<uint8_t>(byte);
        return units_of(other);
    };
    EXPECT_EQ(with(3, 0xBD), "a");
    EXPECT_EQ(with(3, 0xBF), "");
    EXPECT_EQ(with(2, 0x02), "");
    EXPECT_EQ(with(6, 0xA4), ""); // scrambled
    EXPECT_EQ(with(8, 0xFF), ""); // a header longer than the packet
    EXPECT_EQ(with(5, 0x02), ""); // a packet shorter than its header
    EXPECT_EQ(with(45, 0x20), "");
    EXPECT_EQ(with(45, 0x99), "");
}

TEST(teletext_units, a_unit_start_ends_the_pes_packet_before)
{
    teletext_unit_reader reader;
    const bytes cut = teletext_pes(join({
        hex("10"), bytes{0x02, 44},
         repeated('a', 20)
    }));
    const bytes whole = teletext_pes(join({hex("10"), unit('b')}));
    reader.on_payload(cut.data(), cut.data() + cut.size(), true);
    EXPECT_EQ(reader.next_unit(), nullptr);
    reader.on_payload(whole.data(), whole.data() + whole.size(), true);
    const uint8_t *const found = reader.next_unit();
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found[0], 'b');
    EXPECT_EQ(reader.next_unit(), nullptr);
}

TEST(teletext_units, what_is_dropped_begins_anew_at_a_unit_start)
{
    teletext_unit_reader reader;
    const bytes pes = teletext_pes(join({hex("10"), unit('a'), unit('b')}));
    reader.on_payload(pes.data(), pes.data() + 100, true);
    EXPECT_NE(reader.next_unit(), nullptr);
    reader.drop();
    reader.on_payload(pes.data() + 100, pes.data() + pes.size(), false);
    EXPECT_EQ(reader.next_unit(), nullptr);
    reader.on_payload(pes.data(), pes.data() + pes.size(), true);
    EXPECT_NE(reader.next_unit(), nullptr);
}
