#include "tests/overview_contents/si_sections.h"
#include "tests/support/table_sections.h"

#include "mpeg_ts_overview/contents/network.h"

#include <gtest/gtest.h>

struct network_found : testing::Test {
    dvb_text_converter texts;
    network_information network{texts};

    void receive(const bytes &data)
    {
        const offered_section section(0x0010, data, {});
        ASSERT_TRUE(section.is_whole());
        network.on_section(*section);
    }
};

TEST_F(network_found, the_actual_nit_names_the_network)
{
    EXPECT_EQ(network.network_name(), std::nullopt);
    receive(nit_section(descriptor(0x40, text_bytes("Net")), {}));
    EXPECT_EQ(network.network_name(), "Net");
    receive(nit_section({}, {}));
    EXPECT_EQ(network.network_name(), "Net") << "a section without a name says nothing of it";
}

TEST_F(network_found, the_nit_of_another_network_says_nothing)
{
    receive(nit_section(descriptor(0x40, text_bytes("Net")), nit_entry(1, 2, {}), 0x41));
    EXPECT_EQ(network.network_name(), std::nullopt);
    EXPECT_EQ(network.network_of(1), std::nullopt);
}

TEST_F(network_found, channel_numbers_have_ten_bits)
{
    const bytes numbers = descriptor(0x83, hex("0007 FC05 0008 83FF 0009 7C00"));
    receive(nit_section({}, nit_entry(1, 2, numbers)));
    EXPECT_EQ(network.channel_of(2, 1, 7), 5u);
    EXPECT_EQ(network.channel_of(2, 1, 8), 1023u);
    EXPECT_EQ(network.channel_of(2, 1, 9), 0u);
    EXPECT_EQ(network.channel_of(2, 1, 10), std::nullopt);
}

TEST_F(network_found, channel_numbers_count_under_any_private_data_specifier)
{
    const bytes specifier = descriptor(0x5F, hex("12345678"));
    receive(nit_section({}, nit_entry(1, 2, join({specifier, descriptor(0x83, hex("0007 FC05"))}))));
    EXPECT_EQ(network.channel_of(2, 1, 7), 5u);
}

TEST_F(network_found, channel_numbers_belong_to_their_stream_and_network)
{
    receive(nit_section({}, join({nit_entry(1, 2, descriptor(0x83, hex("0007 FC05"))),
                                  nit_entry(3, 2, descriptor(0x83, hex("0007 FC06")))})));
    EXPECT_EQ(network.channel_of(2, 1, 7), 5u);
    EXPECT_EQ(network.channel_of(2, 3, 7), 6u);
    EXPECT_EQ(network.channel_of(4, 1, 7), std::nullopt);
    EXPECT_EQ(network.network_of(3), 2);
}

TEST_F(network_found, what_came_last_stands)
{
    receive(nit_section({}, nit_entry(1, 2, descriptor(0x83, hex("0007 FC05")))));
    receive(nit_section({}, nit_entry(1, 2, descriptor(0x83, hex("0007 FC09")))));
    EXPECT_EQ(network.channel_of(2, 1, 7), 9u);
}

TEST_F(network_found, at_most_16384_channel_numbers_are_kept)
{
    for (unsigned stream = 0; stream < 1025; ++stream) {
        bytes numbers;
        for (unsigned service = 0; service < 16; ++service)
            numbers = join({numbers, big_endian(service, 2), hex("FC01")});
        receive(nit_section({}, nit_entry(stream, 2, descriptor(0x83, numbers))));
    }
    EXPECT_EQ(network.not_kept(), 16u);
    EXPECT_EQ(network.channel_of(2, 1023, 15), 1u);
    EXPECT_EQ(network.channel_of(2, 1024, 0), std::nullopt);
}
