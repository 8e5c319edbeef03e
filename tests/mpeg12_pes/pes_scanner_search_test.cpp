#include "tests/mpeg12_pes/pes_scan.h"

#include "tests/support/stream_builder.h"

#include <random>

namespace {

/// Scans as long as there is something to scan. Every scan goes on, or the scanner is done.
unsigned scan_count(const bytes &content)
{
    pes_scan pes(content);
    const uint8_t *start = nullptr;
    unsigned count = 1;
    for (; !pes->done; ++count) {
        start = pes.next;
        pes.again();
        EXPECT_GE(pes.next, start);
        EXPECT_LE(pes.next, pes.fence());
        if (pes.next == start && !pes->done) {
            ADD_FAILURE() << "stands still";
            break;
        }
    }
    return count;
}

} // namespace

TEST(pes_scanner_search, an_empty_range_is_done_without_progress)
{
    const pes_scan pes({});
    EXPECT_EQ(pes.next, pes.fence());
    EXPECT_EQ(pes->done, 1);
    EXPECT_EQ(pes->stream_id, 0u);
    EXPECT_EQ(pes->header, nullptr);
}

TEST(pes_scanner_search, bytes_before_the_start_code_are_skipped)
{
    const bytes packet = pes_packet(0xBD, hex("55"), 7);
    for (const char *before :
         {"AA", "00", "00 00", "00 00 00 00", "01 00 00 02 E0", "00 00 01", "00 01 00"}) {
        const bytes garbage = hex(before);
        const pes_scan pes(join({garbage, packet}));
        EXPECT_EQ(pes->stream_id, 0x1BDu) << before;
        EXPECT_EQ(pes.offset(pes->header), static_cast<long>(garbage.size())) << before;
        EXPECT_EQ(pes->PTS, 7u) << before;
    }
}

TEST(pes_scanner_search, start_codes_below_a_stream_id_are_skipped)
{
    for (unsigned code = 0; code < 0xBC; ++code) {
        const pes_scan pes(join({hex("000001"), big_endian(code, 1), repeated(0x80, 20)}));
        EXPECT_EQ(pes->stream_id, 0u) << code;
        EXPECT_EQ(pes->header, nullptr) << code;
        EXPECT_EQ(pes->done, 1) << code;
        EXPECT_EQ(pes.next, pes.fence()) << code;
    }
    const pes_scan pes(join({hex("000001BA 44"), pes_packet(0xE0, {}, 3)}));
    EXPECT_EQ(pes->stream_id, 0x1E0u);
    EXPECT_EQ(pes->PTS, 3u);
}

TEST(pes_scanner_search, a_prefix_without_a_stream_id_is_no_start_code)
{
    const pes_scan pes(hex("55 00 00 01"));
    EXPECT_EQ(pes->stream_id, 0u);
    EXPECT_EQ(pes->done, 1);
}

TEST(pes_scanner_search, a_range_without_a_start_code_is_used_up)
{
    const pes_scan pes(repeated(0x00, 184));
    EXPECT_EQ(pes.next, pes.fence());
    EXPECT_EQ(pes->done, 1);
    EXPECT_EQ(pes->stream_id, 0u);
}

TEST(pes_scanner_search, a_packet_without_header_fields_is_passed_over_by_its_length)
{
    pes_scan pes(join({hex("000001BE 0009 000001E0 80 80 00 FF FF"), pes_packet(0xE1, {}, 5)}));
    EXPECT_EQ(pes->stream_id, 0x1BEu);
    EXPECT_EQ(pes->header, nullptr);
    EXPECT_EQ(pes->done, 0);
    EXPECT_EQ(pes.offset(pes.next), 15);
    pes.again();
    EXPECT_EQ(pes->stream_id, 0x1E1u);
    EXPECT_EQ(pes.offset(pes->header), 15);
    EXPECT_EQ(pes->PTS, 5u);
}

TEST(pes_scanner_search, a_packet_without_header_fields_that_reaches_the_fence_is_the_last)
{
    for (const char *packet :
         {"000001BE", "000001BE 00", "000001BE 0000", "000001BE 0001 FF", "000001BF FFFF 00"}) {
        const pes_scan pes(hex(packet));
        EXPECT_EQ(pes->header, nullptr) << packet;
        EXPECT_EQ(pes->done, 1) << packet;
        EXPECT_EQ(pes.next, pes.fence()) << packet;
    }
}

TEST(pes_scanner_search, the_next_scan_finds_the_packet_behind)
{
    pes_scan pes(join({pes_packet(0xFA, repeated(0x55, 4), 9), pes_packet(0xE0, {})}));
    EXPECT_EQ(pes->stream_id, 0x1FAu);
    EXPECT_EQ(pes->PTS, 9u);
    EXPECT_EQ(pes->done, 0);
    pes.again();
    EXPECT_EQ(pes->stream_id, 0x1E0u);
    EXPECT_EQ(pes.offset(pes->header), 18);
    EXPECT_EQ(pes->PTS_DTS_flags, 0);
    EXPECT_EQ(pes->PTS, 0u) << "nothing is left of the packet before";
}

TEST(pes_scanner_search, the_stream_found_last_stays_when_there_is_no_other)
{
    pes_scan pes(join({pes_packet(0xFA, repeated(0x55, 4))}));
    pes.again();
    EXPECT_EQ(pes->stream_id, 0x1FAu);
    EXPECT_EQ(pes->done, 1);
    EXPECT_EQ(pes.next, pes.fence());
}

/// Bytes that often make start codes, at every length, from blocks of exactly that size.
TEST(pes_scanner_search, every_range_comes_to_an_end)
{
    std::mt19937 random(8);
    const bytes often = hex("00 00 00 00 01 01 BC BD BE C0 E0 F0 FF 80 21 31 40 0F 05 0A");
    for (size_t size = 0; size <= 184; ++size)
        for (int round = 0; round < 50; ++round) {
            bytes content(size);
            for (uint8_t &byte : content) byte = often[random() % often.size()];
            EXPECT_LE(scan_count(content), size + 1);
        }
}
