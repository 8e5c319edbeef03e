// A recording of tables: sections at moments that a test chooses, through packets into stream_tables.
#pragma once

#include "tests/support/stream_builder.h"

#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/tables/stream_tables.h"

#include <cmath>
#include <memory>
#include <optional>
#include <set>
#include <vector>

inline int64_t ticks_at(double seconds)
{
    return std::llround(seconds * static_cast<double>(ticks_per_second));
}

/// Takes every section, with a copy of its bytes.
struct section_notes final : section_consumer {
    struct note {
        table_section section;
        bytes data;
    };
    void on_section(const table_section &section) override
    {
        good.push_back({section, bytes(section.start, section.fence)});
    }
    void on_section_begun(const table_section &section) override
    {
        begun.push_back({section, bytes(section.body, section.body_fence)});
    }
    void on_bad_section(const table_section &section) override
    {
        bad.push_back({section, bytes(section.start, section.fence)});
    }
    void on_scrambled_packet(uint16_t pid, const moment &) override { scrambled.push_back(pid); }

    std::vector<note> good;
    std::vector<note> begun; ///< with the body so far
    std::vector<note> bad;
    std::vector<uint16_t> scrambled;
};

class table_stream {
public:
    explicit table_stream(const limits &values = {}, bool is_whole_multiplex = false)
        : tables(std::make_unique<stream_tables>(values, is_whole_multiplex))
    {
    }

    /// The moment of the packet that comes next, when it comes at that time.
    moment at(double seconds) const
    {
        moment here;
        here.packet = next_packet;
        here.byte = next_packet * 188;
        if (has_times) here.ticks = ticks_at(seconds);
        here.stretch = inside_break ? -1 : stretch;
        here.extrapolated = seconds < sure_from || seconds > sure_to;
        return here;
    }

    /// The section, in packets that all come at that time.
    table_stream &section(double seconds, unsigned pid, const bytes &section)
    {
        return packets(seconds, stream_builder().section(pid, section));
    }

    /// The section again and again, step by step, the last time at or before the end.
    table_stream &every(double step, double from, double to, unsigned pid, const bytes &repeated_section)
    {
        for (int i = 0; from + i * step <= to + 1e-9; ++i) section(from + i * step, pid, repeated_section);
        return *this;
    }

    table_stream &packets(double seconds, const stream_builder &built, const packet_sequence &sequence = {})
    {
        for (size_t i = 0; i < built.packet_count(); ++i)
            packet(seconds, built.data().data() + 188 * i, sequence);
        return *this;
    }

    table_stream &packet(double seconds, const uint8_t *start, const packet_sequence &sequence = {})
    {
        begin();
        ts_packet packet = read_packet(start);
        packet.at = at(seconds);
        ++next_packet;
        seen.insert(packet.pid);
        if (tables->collects(packet.pid)) tables->on_packet(packet, sequence, notes);
        return *this;
    }

    /// Time goes on to those seconds, and nothing comes.
    table_stream &see(double seconds)
    {
        begin();
        tables->see(at(seconds));
        ++next_packet;
        return *this;
    }

    /// A time break: the last packet before it, and the first behind it.
    table_stream &time_break(double last, double first)
    {
        see(last);
        ++stretch;
        return see(first);
    }

    table_stream &finish(double seconds)
    {
        begin();
        tables->finish(at(seconds), [this](uint16_t pid) { return seen.count(pid) != 0; });
        return *this;
    }

    std::unique_ptr<stream_tables> tables;
    section_notes notes;
    std::set<uint16_t> seen; ///< PIDs of packets
    uint64_t next_packet = 0;
    int64_t stretch = 0;
    bool inside_break = false;
    bool has_times = true;
    double sure_from = -1; ///< what lies before, and behind sure_to, is extrapolated
    double sure_to = 1e9;

private:
    /// Time begins at 0, once the test has said what is sure.
    void begin()
    {
        if (!begun) tables->see(at(0));
        begun = true;
    }

    bool begun = false;
};
