#include "tests/overview_contents/si_sections.h"
#include "tests/support/table_sections.h"

#include "mpeg_ts_overview/contents/service_types.h"
#include "mpeg_ts_overview/contents/services.h"

#include <gtest/gtest.h>

#include <cstring>

struct services_found : testing::Test {
    dvb_text_converter texts;
    service_list services{texts};

    void receive(const bytes &data, unsigned pid = 0x0011)
    {
        const offered_section section(pid, data, {});
        ASSERT_TRUE(section.is_whole());
        services.on_section(*section);
    }

    program_facts service(unsigned number) const
    {
        program_facts program;
        program.number = static_cast<uint16_t>(number);
        services.add_to(program);
        return program;
    }
};

TEST_F(services_found, an_sdt_gives_names_type_status_and_scrambling)
{
    receive(sdt_section(sdt_entry(7, service_descriptor(0x19, "Provider", "\x15N\xC3\xA4me"), 4, 1)));
    const program_facts program = service(7);
    EXPECT_EQ(program.service_name, "N\xC3\xA4me");
    EXPECT_EQ(program.provider_name, "Provider");
    ASSERT_TRUE(program.service_type);
    EXPECT_EQ(program.service_type->code, 0x19);
    EXPECT_EQ(program.service_type->name, "H.264 HD television");
    EXPECT_EQ(program.running_status, 4u);
    EXPECT_EQ(program.free_CA_mode, 1u);
    EXPECT_EQ(program.channel, std::nullopt);
    EXPECT_EQ(services.original_network_id(), 0x2222);
}

TEST_F(services_found, a_service_that_no_table_names_stays_unknown)
{
    receive(sdt_section(sdt_entry(7, service_descriptor(1, "P", "N"))));
    const program_facts program = service(8);
    EXPECT_EQ(program.service_name, std::nullopt);
    EXPECT_EQ(program.provider_name, std::nullopt);
    EXPECT_FALSE(program.service_type);
    EXPECT_EQ(program.running_status, std::nullopt);
    EXPECT_EQ(program.free_CA_mode, std::nullopt);
}

TEST_F(services_found, a_service_without_descriptor_has_a_status_and_no_name)
{
    receive(sdt_section(sdt_entry(7, descriptor(0x5F, hex("00000028")), 1)));
    EXPECT_EQ(service(7).running_status, 1u);
    EXPECT_EQ(service(7).free_CA_mode, 0u);
    EXPECT_EQ(service(7).service_name, std::nullopt);
}

TEST_F(services_found, an_empty_name_is_a_name)
{
    receive(sdt_section(sdt_entry(7, service_descriptor(1, "", ""))));
    EXPECT_EQ(service(7).service_name, "");
    EXPECT_EQ(service(7).provider_name, "");
}

TEST_F(services_found, the_sdt_of_other_streams_says_nothing_of_this_one)
{
    receive(sdt_section(sdt_entry(7, service_descriptor(1, "P", "N")), {}, 0x46));
    EXPECT_EQ(service(7).service_name, std::nullopt);
    EXPECT_EQ(services.original_network_id(), std::nullopt);
}

TEST_F(services_found, what_came_last_stands_in_any_section_of_any_version)
{
    const auto named = [](const char *name, unsigned version, unsigned number) {
        section_fields fields;
        fields.version_number = version;
        fields.section_number = number;
        fields.last_section_number = 1;
        return sdt_section(sdt_entry(7, service_descriptor(1, "P", name)), fields);
    };
    receive(named("first", 3, 0));
    receive(named("second", 2, 0));
    EXPECT_EQ(service(7).service_name, "second");
    receive(named("third", 2, 1));
    EXPECT_EQ(service(7).service_name, "third");
    receive(named("second", 2, 0));
    EXPECT_EQ(service(7).service_name, "second");
}

TEST_F(services_found, a_new_description_leaves_nothing_of_the_old_one)
{
    receive(sdt_section(sdt_entry(7, service_descriptor(1, "P", "N"))));
    receive(sdt_section(sdt_entry(7, {})));
    EXPECT_EQ(service(7).service_name, std::nullopt);
}

TEST_F(services_found, a_cut_descriptor_gives_what_is_whole)
{
    receive(sdt_section(sdt_entry(7, descriptor(0x48, hex("01 02 4142 05 43")))));
    EXPECT_EQ(service(7).provider_name, "AB");
    EXPECT_EQ(service(7).service_name, std::nullopt);
    receive(sdt_section(sdt_entry(8, descriptor(0x48, {}))));
    EXPECT_FALSE(service(8).service_type);
    receive(sdt_section(sdt_entry(9, descriptor(0x48, hex("02 09 41")))));
    EXPECT_EQ(service(9).service_type->code, 2);
    EXPECT_EQ(service(9).provider_name, std::nullopt);
}

TEST_F(services_found, a_virtual_channel_gives_name_number_and_type)
{
    receive(vct_section({virtual_channel("WXYZ-HD", 7, 12, 3)}), 0x1FFB);
    const program_facts program = service(3);
    EXPECT_EQ(program.service_name, "WXYZ-HD");
    EXPECT_EQ(program.channel, "7.12");
    ASSERT_TRUE(program.service_type);
    EXPECT_EQ(program.service_type->code, 2);
    EXPECT_EQ(program.service_type->name, "digital television");
    EXPECT_EQ(program.running_status, std::nullopt);
    EXPECT_EQ(program.provider_name, std::nullopt);
}

TEST_F(services_found, a_short_name_ends_at_the_first_zero)
{
    receive(vct_section({virtual_channel("AB", 7, 1, 3)}), 0x1FFB);
    EXPECT_EQ(service(3).service_name, "AB");
}

TEST_F(services_found, channels_of_other_streams_are_passed_over)
{
    receive(vct_section({virtual_channel("OTHER", 7, 1, 3, 2)}), 0x1FFB);
    EXPECT_EQ(service(3).channel, std::nullopt);
}

TEST_F(services_found, a_cable_channel_may_have_a_number_of_one_part)
{
    receive(vct_section({virtual_channel("A", 0x3F1, 5, 3), virtual_channel("B", 5, 1, 4)}, 0xC9), 0x1FFB);
    EXPECT_EQ(service(3).channel, "1029");
    EXPECT_EQ(service(4).channel, "5.1");
    receive(vct_section({virtual_channel("A", 0x3F1, 5, 5)}), 0x1FFB);
    EXPECT_EQ(service(5).channel, "1009.5");
}

TEST_F(services_found, a_virtual_channel_goes_before_an_sdt)
{
    receive(vct_section({virtual_channel("WXYZ", 7, 1, 3)}), 0x1FFB);
    receive(sdt_section(sdt_entry(3, service_descriptor(1, "P", "N"))));
    EXPECT_EQ(service(3).service_name, "WXYZ");
    EXPECT_EQ(service(3).provider_name, "P");
    EXPECT_EQ(service(3).running_status, 4u);
}

TEST_F(services_found, at_most_4096_are_kept_and_the_rest_is_counted)
{
    for (unsigned id = 0; id < service_limit + 10; ++id)
        receive(sdt_section(sdt_entry(id, service_descriptor(1, "P", "N"))));
    EXPECT_EQ(services.not_kept(), 10u);
    EXPECT_EQ(service(service_limit - 1).service_name, "N");
    EXPECT_EQ(service(service_limit).service_name, std::nullopt);
    receive(sdt_section(sdt_entry(5, service_descriptor(1, "P", "new"))));
    EXPECT_EQ(service(5).service_name, "new") << "a known one goes on";
}

TEST(service_types, each_code_has_a_name)
{
    EXPECT_STREQ(dvb_service_type_name(0x01), "digital television");
    EXPECT_STREQ(dvb_service_type_name(0x02), "digital radio");
    EXPECT_STREQ(dvb_service_type_name(0x11), "MPEG-2 HD television");
    EXPECT_STREQ(dvb_service_type_name(0x1F), "HEVC television");
    EXPECT_STREQ(dvb_service_type_name(0x00), "reserved");
    EXPECT_STREQ(dvb_service_type_name(0x7F), "reserved");
    EXPECT_STREQ(dvb_service_type_name(0x80), "user defined");
    EXPECT_STREQ(dvb_service_type_name(0xFE), "user defined");
    EXPECT_STREQ(dvb_service_type_name(0xFF), "reserved");
    EXPECT_STREQ(atsc_service_type_name(0x01), "analog television");
    EXPECT_STREQ(atsc_service_type_name(0x03), "audio");
    EXPECT_STREQ(atsc_service_type_name(0x3F), "reserved");
}
