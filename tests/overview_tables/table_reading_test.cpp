#include "tests/support/stream_builder.h"

#include "mpeg_ts_overview/tables/atsc_eit.h"
#include "mpeg_ts_overview/tables/conditional_access.h"
#include "mpeg_ts_overview/tables/dvb_time.h"
#include "mpeg_ts_overview/tables/eit.h"
#include "mpeg_ts_overview/tables/mgt.h"
#include "mpeg_ts_overview/tables/nit.h"
#include "mpeg_ts_overview/tables/pat.h"
#include "mpeg_ts_overview/tables/pmt.h"
#include "mpeg_ts_overview/tables/sdt.h"
#include "mpeg_ts_overview/tables/stt.h"
#include "mpeg_ts_overview/tables/tdt.h"
#include "mpeg_ts_overview/tables/tvct.h"

#include <gtest/gtest.h>

struct reading : testing::Test {
    /// A section of that body, which is kept until the next.
    const table_section &of(const bytes &body, unsigned table_id_extension = 0x1234)
    {
        held = body;
        section.header.table_id_extension = static_cast<uint16_t>(table_id_extension);
        section.body = held.data();
        section.body_fence = held.data() + held.size();
        return section;
    }

    static bytes bytes_of(const byte_range &range) { return bytes(range.start, range.fence); }

    static bytes without_last(bytes body)
    {
        body.pop_back();
        return body;
    }

    bytes held;
    table_section section;
};

TEST_F(reading, a_pat_has_entries_of_four_bytes)
{
    const auto entries = read_pat(of(hex("0000 E010 0001 E100 FFFF FFFF 00")));
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].program_number, 0);
    EXPECT_EQ(entries[0].PID, 0x10);
    EXPECT_EQ(entries[1].program_number, 1);
    EXPECT_EQ(entries[1].PID, 0x100);
    EXPECT_EQ(entries[2].program_number, 0xFFFF);
    EXPECT_EQ(entries[2].PID, 0x1FFF);
    EXPECT_TRUE(read_pat(of({})).empty());
}

TEST_F(reading, a_pmt_has_its_clock_its_descriptors_and_its_streams)
{
    const bytes body = hex("E101 F002 AABB 02E101 F000 1BE102 F003 CCDDEE");
    const auto map = read_pmt(of(body, 7));
    ASSERT_TRUE(map);
    EXPECT_EQ(map->program_number, 7);
    EXPECT_EQ(map->PCR_PID, 0x101);
    EXPECT_EQ(bytes_of(map->program_info), hex("AABB"));
    ASSERT_EQ(map->streams.size(), 2u);
    EXPECT_EQ(map->streams[0].stream_type, 0x02);
    EXPECT_EQ(map->streams[0].elementary_PID, 0x101);
    EXPECT_EQ(map->streams[0].ES_info.size(), 0u);
    EXPECT_EQ(bytes_of(map->streams[1].ES_info), hex("CCDDEE"));
    EXPECT_EQ(read_pmt(of(without_last(body)))->streams.size(), 1u);
}

TEST_F(reading, a_pmt_of_very_many_streams_has_them_all)
{
    bytes body = hex("E101 F000");
    for (unsigned i = 0; i < 700; ++i) body = join({body, hex("02"), big_endian(0xE100 + i, 2), hex("F000")});
    EXPECT_EQ(read_pmt(of(body))->streams.size(), 700u);
}

TEST_F(reading, a_pmt_whose_descriptors_do_not_fit_is_none)
{
    EXPECT_FALSE(read_pmt(of(hex("E101 F0"))));
    EXPECT_FALSE(read_pmt(of(hex("E101 F003 AABB"))));
    EXPECT_TRUE(read_pmt(of(hex("E101 F002 AABB"))));
}

TEST_F(reading, ca_descriptors_are_found_among_others)
{
    const auto found =
        read_cat(of(join({descriptor(0x05, hex("01")), descriptor(0x09, hex("0B00 E501 FF")),
                          descriptor(0x09, hex("0B00 E5")), descriptor(0x09, hex("0100 FFFF"))})));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].CA_system_ID, 0x0B00);
    EXPECT_EQ(found[0].CA_PID, 0x501);
    EXPECT_EQ(found[1].CA_PID, 0x1FFF);
}

TEST_F(reading, a_nit_has_descriptors_of_the_network_and_of_each_transport_stream)
{
    const bytes body = hex("F002 AABB F00A 0001 0002 F001 CC 0003 0004 F000");
    const auto network = read_nit(of(body, 0x3001));
    ASSERT_TRUE(network);
    EXPECT_EQ(network->network_id, 0x3001);
    EXPECT_EQ(bytes_of(network->network_descriptors), hex("AABB"));
    ASSERT_EQ(network->transport_streams.size(), 2u);
    EXPECT_EQ(network->transport_streams[0].transport_stream_id, 1);
    EXPECT_EQ(network->transport_streams[0].original_network_id, 2);
    EXPECT_EQ(bytes_of(network->transport_streams[0].transport_descriptors), hex("CC"));
    EXPECT_EQ(network->transport_streams[1].transport_stream_id, 3);
    EXPECT_EQ(read_nit(of(without_last(body)))->transport_streams.size(), 1u);
    EXPECT_EQ(read_nit(of(hex("F000 F007 0001 0002 F002 CC")))->transport_streams.size(), 0u);
    EXPECT_FALSE(read_nit(of(hex("F003 AABB"))));
}

TEST_F(reading, an_sdt_has_services_with_their_flags)
{
    const bytes body = hex("0020 FF 0001 FD 8002 AABB 0002 FE 7000 0003 FF F000");
    const auto description = read_sdt(of(body, 0x55));
    ASSERT_TRUE(description);
    EXPECT_EQ(description->transport_stream_id, 0x55);
    EXPECT_EQ(description->original_network_id, 0x20);
    ASSERT_EQ(description->services.size(), 3u);
    const auto &services = description->services;
    EXPECT_EQ(services[0].service_id, 1);
    EXPECT_FALSE(services[0].EIT_schedule_flag);
    EXPECT_TRUE(services[0].EIT_present_following_flag);
    EXPECT_EQ(services[0].running_status, 4);
    EXPECT_FALSE(services[0].free_CA_mode);
    EXPECT_EQ(bytes_of(services[0].descriptors), hex("AABB"));
    EXPECT_TRUE(services[1].EIT_schedule_flag);
    EXPECT_FALSE(services[1].EIT_present_following_flag);
    EXPECT_TRUE(services[1].free_CA_mode);
    EXPECT_EQ(services[2].running_status, 7);
    EXPECT_EQ(read_sdt(of(without_last(body)))->services.size(), 2u);
    EXPECT_FALSE(read_sdt(of(hex("0020"))));
}

TEST_F(reading, an_eit_has_events)
{
    const bytes body = hex("0001 0002 04 5F 0101 C079124500 014530 8002 AABB 0102 FFFFFFFFFF FFFFFF 1000");
    const auto information = read_eit(of(body, 9));
    ASSERT_TRUE(information);
    EXPECT_EQ(information->service_id, 9);
    EXPECT_EQ(information->transport_stream_id, 1);
    EXPECT_EQ(information->original_network_id, 2);
    EXPECT_EQ(information->segment_last_section_number, 4);
    EXPECT_EQ(information->last_table_id, 0x5F);
    eit_event_loop events(information->events);
    eit_event event;
    ASSERT_TRUE(events.next(event));
    EXPECT_EQ(event.event_id, 0x101);
    EXPECT_EQ(event.start_utc_s(), 750516300);
    EXPECT_EQ(event.duration_s(), 6330u);
    EXPECT_EQ(event.running_status, 4);
    EXPECT_EQ(bytes_of(event.descriptors), hex("AABB"));
    ASSERT_TRUE(events.next(event));
    EXPECT_FALSE(event.start_utc_s());
    EXPECT_FALSE(event.duration_s());
    EXPECT_TRUE(event.free_CA_mode);
    EXPECT_FALSE(events.next(event));
    eit_event_loop cut(read_eit(of(without_last(body)))->events);
    EXPECT_TRUE(cut.next(event));
    EXPECT_FALSE(cut.next(event));
    EXPECT_FALSE(read_eit(of(hex("0001 0002 04"))));
}

TEST_F(reading, times_are_those_of_the_calendar_and_the_clock)
{
    EXPECT_EQ(read_tdt(of(hex("C079 124500"))), 750516300); // 1993-10-13T12:45:00Z, EN 300 468 Annex C
    EXPECT_EQ(read_tdt(of(hex("9E8B 000000"))), 0);
    EXPECT_EQ(read_tdt(of(hex("9E8A 235959 FF"))), -1);
    EXPECT_EQ(read_tdt(of(hex("FFFF 000000"))), (65535 - 40587) * 86400ll);
    for (const char *no_time : {"C079 240000", "C079 006000", "C079 000060", "C079 0A0000", "C079 00000A",
                                "C079 00A000", "C079 1245"})
        EXPECT_FALSE(read_tdt(of(hex(no_time)))) << no_time;
}

TEST_F(reading, durations_may_be_longer_than_a_day)
{
    const bytes digits = hex("99 59 59");
    bit_reader in(digits.data(), digits.data() + digits.size());
    EXPECT_EQ(read_bcd_duration(in), 99u * 3600 + 59 * 60 + 59);
}

TEST_F(reading, an_mgt_lists_tables_as_many_as_it_says)
{
    const bytes body = hex("00 0002 0000 FFFB E1 00000010 F001 AA 0100 FD00 E2 00000020 F000 F000");
    const auto tables = read_mgt(of(body));
    ASSERT_EQ(tables.size(), 2u);
    EXPECT_EQ(tables[0].table_type, 0);
    EXPECT_EQ(tables[0].table_type_PID, 0x1FFB);
    EXPECT_EQ(tables[0].table_type_version_number, 1);
    EXPECT_EQ(tables[0].number_bytes, 16u);
    EXPECT_EQ(bytes_of(tables[0].descriptors), hex("AA"));
    EXPECT_EQ(tables[1].table_type, 0x100);
    EXPECT_EQ(tables[1].table_type_PID, 0x1D00);
    EXPECT_EQ(read_mgt(of(hex("00 0001 0000 FFFB E1 00000010 F000 0100 FD00 E2 00000020 F000"))).size(), 1u);
    EXPECT_EQ(read_mgt(of(hex("00 0002 0000 FFFB E1 00000010 F000 0100 FD00 E2 00000020 F001"))).size(), 1u);
    EXPECT_TRUE(read_mgt(of(hex("00 0001 0000 FFFB E1 00000010 F0"))).empty());
    EXPECT_TRUE(read_mgt(of({})).empty());
    EXPECT_TRUE(read_mgt(of(hex("01 0001 0000 FFFB E1 00000010 F000 0100 FD00 E2 00000020 F000"))).empty());
}

TEST_F(reading, a_tvct_has_channels)
{
    const bytes channel = hex("0041 0042 0043 0000 0000 0000 0000 F02C 01 04 00000000 0801 0003 "
                              "6F C2 1234 FC02 AABB");
    const bytes hidden = hex("0041 0042 0043 0000 0000 0000 0000 F02C 01 04 00000000 0801 0004 "
                             "9D C2 1234 FC00");
    const auto channels = read_tvct(of(join({hex("00 02"), channel, hidden, hex("FC00")})));
    ASSERT_EQ(channels.size(), 2u);
    EXPECT_EQ(channels[0].short_name, (std::array<uint16_t, 7>{0x41, 0x42, 0x43}));
    EXPECT_EQ(channels[0].major_channel_number, 11);
    EXPECT_EQ(channels[0].minor_channel_number, 1);
    EXPECT_EQ(channels[0].modulation_mode, 4);
    EXPECT_EQ(channels[0].channel_TSID, 0x0801);
    EXPECT_EQ(channels[0].program_number, 3);
    EXPECT_EQ(channels[0].ETM_location, 1);
    EXPECT_TRUE(channels[0].access_controlled);
    EXPECT_FALSE(channels[0].hidden);
    EXPECT_TRUE(channels[0].hide_guide);
    EXPECT_EQ(channels[0].service_type, 2);
    EXPECT_EQ(channels[0].source_id, 0x1234);
    EXPECT_EQ(bytes_of(channels[0].descriptors), hex("AABB"));
    EXPECT_EQ(channels[1].ETM_location, 2);
    EXPECT_FALSE(channels[1].access_controlled);
    EXPECT_TRUE(channels[1].hidden);
    EXPECT_FALSE(channels[1].hide_guide);
    EXPECT_EQ(read_tvct(of(join({hex("00 01"), channel, hidden}))).size(), 1u);
    EXPECT_EQ(read_tvct(of(join({hex("00 02"), hidden, without_last(channel)}))).size(), 1u);
    EXPECT_TRUE(read_tvct(of({})).empty());
    EXPECT_TRUE(read_tvct(of(join({hex("01 01"), channel, hidden}))).empty());
}

TEST_F(reading, events_and_texts_of_another_protocol_are_not_read)
{
    const bytes event = hex("C005 00000010 F00708 00 F000");
    EXPECT_EQ(read_atsc_eit(of(join({hex("00 01"), event}))).size(), 1u);
    EXPECT_TRUE(read_atsc_eit(of(join({hex("01 01"), event}))).empty());
    EXPECT_TRUE(read_ett(of(hex("00 00090016"))));
    EXPECT_FALSE(read_ett(of(hex("01 00090016"))));
}

TEST_F(reading, an_stt_tells_utc)
{
    const auto time = read_stt(of(hex("00 00000010 05 0000")));
    ASSERT_TRUE(time);
    EXPECT_EQ(time->system_time, 16u);
    EXPECT_EQ(time->GPS_UTC_offset, 5);
    EXPECT_EQ(time->utc_s(), 315964800 + 11);
    EXPECT_FALSE(read_stt(of(hex("00 00000010 05 00"))));
    EXPECT_FALSE(read_stt(of(hex("01 00000010 05 0000"))));
}
