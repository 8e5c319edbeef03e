// A recording of 1000 packets a second: packet n is millisecond n, and everything lies in one packet.
#pragma once

#include "tests/support/stream_builder.h"

#include <cstdint>
#include <vector>

constexpr int64_t pcr_ticks_per_ms = 27000;
constexpr int64_t stamp_ticks_per_ms = 90;
constexpr int64_t clock_start_ms = 10000; ///< what the clocks of the programs show at packet 0

class timed_multiplex {
public:
    /// Null packets, so many.
    explicit timed_multiplex(unsigned milliseconds) : slots(milliseconds) {}

    // Each of these takes the slot of its millisecond; one that is taken throws.

    /// A section of at most 183 bytes.
    timed_multiplex &section(unsigned ms, unsigned pid, const bytes &section);
    /// A PES packet of at most 184 bytes with these times before the program's clock; dts_ms 0: no DTS.
    timed_multiplex &unit(unsigned ms, unsigned pid, unsigned stream_id, int pts_ms, int dts_ms = 0);
    timed_multiplex &payload(unsigned ms, unsigned pid);
    /// A packet with the PCR of its time, and so many ticks more.
    timed_multiplex &pcr(unsigned ms, unsigned pid, int64_t more_ticks = 0, bool discontinuity = false);

    /// The section again and again, to the end.
    timed_multiplex &every(unsigned period_ms, unsigned first_ms, unsigned pid, const bytes &section);

    /// The section comes at the first of these milliseconds, next at the last, and not between.
    timed_multiplex &away(const bytes &section, unsigned first_ms, unsigned last_ms);
    /// From that millisecond on another section comes in its place.
    timed_multiplex &replace(const bytes &section, unsigned from_ms, const bytes &by);
    /// No PCR of the PID from the first to the last, both included.
    timed_multiplex &without_pcr(unsigned pid, unsigned first_ms, unsigned last_ms);
    /// No payload of the PID, and no PES packet.
    timed_multiplex &without_data(unsigned pid, unsigned first_ms, unsigned last_ms);
    /// Nothing of the PID from the first millisecond on, up to the one before the fence.
    timed_multiplex &without_pid(unsigned pid, unsigned first_ms = 0, unsigned fence_ms = ~0u);
    /// Nothing in that slot.
    timed_multiplex &clear(unsigned ms);

    /// The milliseconds behind are left out.
    timed_multiplex &shorten(unsigned milliseconds);

    /// The packets of 188 bytes, counters and all.
    bytes packets() const;

private:
    enum class slot_kind { null, section, unit, payload, pcr };
    struct slot {
        slot_kind kind = slot_kind::null;
        unsigned pid = 0x1FFF;
        bytes data; ///< section, PES packet or adaptation field
    };

    timed_multiplex &put(unsigned ms, slot taken);

    std::vector<slot> slots;
};

// What is done to packets when they are made.

/// Byte at of that packet.
inline uint8_t &byte_of(bytes &packets, unsigned packet, unsigned at)
{
    return packets[packet * 188 + at];
}

/// The first packet of the PID from that one on.
unsigned next_packet_of(const bytes &packets, unsigned pid, unsigned from);

/// A null packet takes the place of that one.
void lose(bytes &packets, unsigned packet);
