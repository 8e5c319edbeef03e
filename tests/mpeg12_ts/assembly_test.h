// What every test of the section assembly begins with: an assembly, and packets of one payload.
#pragma once

#include "tests/support/stream_builder.h"

#include "mpeg12_ts/table_assembly.h"

#include <gtest/gtest.h>

struct assembly_test : testing::Test {
    ~assembly_test() override { mpeg_ts_table_assembly_init(&assembly, 0); }

    void init(unsigned long size = 16384) { status = mpeg_ts_table_assembly_init(&assembly, size); }

    /// A payload of exactly these bytes.
    void begin(const bytes &payload)
    {
        const bytes block(payload);
        const mpeg_ts_packet packet = packet_of(block);
        mpeg_ts_table_assembly_begin(&assembly, nullptr, &packet);
    }

    void add(const bytes &payload)
    {
        const bytes block(payload);
        const mpeg_ts_packet packet = packet_of(block);
        mpeg_ts_table_assembly_add(&assembly, &packet);
    }

    int take() { return mpeg_ts_table_assembly_take_ready(&assembly, &header, &base, &fence); }

    /// A payload with a pointer_field of 0.
    static bytes start_of(const bytes &section) { return join({hex("00"), section}); }

    bytes held() const { return bytes(assembly.buffer, assembly.write); }
    bytes body() const { return bytes(base, fence); }

    static bytes slice(const bytes &from, size_t start, size_t size)
    {
        return bytes(from.begin() + static_cast<long>(start), from.begin() + static_cast<long>(start + size));
    }

    static mpeg_ts_packet packet_of(const bytes &block)
    {
        mpeg_ts_packet packet{};
        packet.payload = block.empty() ? nullptr : block.data();
        packet.fence = block.data() + block.size();
        return packet;
    }

    mpeg_ts_table_assembly assembly;
    int status = 0;
    const mpeg_ts_pat_main_header *header = nullptr;
    const uint8_t *base = nullptr;
    const uint8_t *fence = nullptr;
};
