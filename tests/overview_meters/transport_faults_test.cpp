#include "mpeg_ts_overview/meters/transport_faults.h"

#include "tests/overview_meters/meter_packets.h"

#include <gtest/gtest.h>

TEST(transport_faults, a_loss_of_sync_counts_once_and_its_two_bad_bytes_too)
{
    transport_faults faults;
    faults.on_sync_loss(moment_at(7, 100));
    EXPECT_EQ(faults.sync_losses().count, 1u);
    EXPECT_EQ(faults.sync_losses().first.packet, 7u);
    EXPECT_EQ(faults.sync_byte_errors().count, 2u);
    EXPECT_EQ(faults.transport_errors().count, 0u);
}

TEST(transport_faults, a_bad_sync_byte_alone_is_no_loss)
{
    transport_faults faults;
    faults.on_bad_sync_byte(moment_at(7, 100));
    faults.on_bad_sync_byte(moment_at(9, 120));
    EXPECT_EQ(faults.sync_losses().count, 0u);
    EXPECT_EQ(faults.sync_byte_errors().count, 2u);
    EXPECT_EQ(faults.sync_byte_errors().first.packet, 7u);
    EXPECT_EQ(faults.sync_byte_errors().last.packet, 9u);
    EXPECT_FALSE(faults.sync_byte_errors().details.at(0).pid);
}

TEST(transport_faults, a_transport_error_is_logged_with_its_pid)
{
    transport_faults faults;
    faults.on_transport_error(0x123, moment_at(7, 100));
    EXPECT_EQ(faults.transport_errors().count, 1u);
    EXPECT_EQ(faults.transport_errors().details.at(0).pid, 0x123);
    EXPECT_EQ(faults.transport_errors().details.at(0).at.packet, 7u);
    EXPECT_EQ(faults.sync_byte_errors().count, 0u);
}
