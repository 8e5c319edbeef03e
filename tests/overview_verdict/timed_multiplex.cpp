#include "tests/overview_verdict/timed_multiplex.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace {

constexpr size_t packet_size = 188;

} // namespace

timed_multiplex &timed_multiplex::put(unsigned ms, slot taken)
{
    if (slots.at(ms).kind != slot_kind::null) throw std::logic_error("slot taken: " + std::to_string(ms));
    slots[ms] = std::move(taken);
    return *this;
}

timed_multiplex &timed_multiplex::section(unsigned ms, unsigned pid, const bytes &section)
{
    if (section.size() > 183) throw std::length_error("more than a packet");
    return put(ms, {slot_kind::section, pid, section});
}

timed_multiplex &timed_multiplex::unit(unsigned ms, unsigned pid, unsigned stream_id, int pts_ms, int dts_ms)
{
    const int64_t now = static_cast<int64_t>(ms) + clock_start_ms;
    const bool has_dts = dts_ms != 0;
    return put(ms, {slot_kind::unit, pid,
                    pes_packet(stream_id, bytes(20, 0x55), (now + pts_ms) * stamp_ticks_per_ms,
                               has_dts ? (now + dts_ms) * stamp_ticks_per_ms : -1)});
}

timed_multiplex &timed_multiplex::payload(unsigned ms, unsigned pid)
{
    return put(ms, {slot_kind::payload, pid, bytes(184, static_cast<uint8_t>(ms / 40))});
}

timed_multiplex &timed_multiplex::pcr(unsigned ms, unsigned pid, int64_t more_ticks, bool discontinuity)
{
    const int64_t ticks = (static_cast<int64_t>(ms) + clock_start_ms) * pcr_ticks_per_ms + more_ticks;
    const auto base = static_cast<unsigned long long>(ticks / 300);
    const auto extension = static_cast<unsigned long long>(ticks % 300);
    const bytes flags = big_endian(discontinuity ? 0x90u : 0x10u, 1);
    return put(ms, {slot_kind::pcr, pid, join({flags, big_endian(base << 15 | 0x7E00u | extension, 6)})});
}

timed_multiplex &timed_multiplex::every(unsigned period_ms, unsigned first_ms, unsigned pid,
                                        const bytes &repeated)
{
    for (unsigned ms = first_ms; ms < slots.size(); ms += period_ms) section(ms, pid, repeated);
    return *this;
}

timed_multiplex &timed_multiplex::away(const bytes &gone, unsigned first_ms, unsigned last_ms)
{
    unsigned pid = 0x1FFF;
    for (const slot &taken : slots)
        if (taken.data == gone) pid = taken.pid;
    for (unsigned ms = first_ms; ms <= last_ms; ++ms)
        if (slots.at(ms).data == gone) clear(ms);
    return section(first_ms, pid, gone).section(last_ms, pid, gone);
}

timed_multiplex &timed_multiplex::replace(const bytes &section, unsigned from_ms, const bytes &by)
{
    for (unsigned ms = from_ms; ms < slots.size(); ++ms)
        if (slots[ms].data == section) slots[ms].data = by;
    return *this;
}

timed_multiplex &timed_multiplex::without_pcr(unsigned pid, unsigned first_ms, unsigned last_ms)
{
    for (unsigned ms = first_ms; ms <= last_ms; ++ms)
        if (slots.at(ms).pid == pid && slots[ms].kind == slot_kind::pcr) clear(ms);
    return *this;
}

timed_multiplex &timed_multiplex::without_data(unsigned pid, unsigned first_ms, unsigned last_ms)
{
    for (unsigned ms = first_ms; ms <= last_ms; ++ms) {
        const slot_kind kind = slots.at(ms).kind;
        if (slots[ms].pid == pid && (kind == slot_kind::unit || kind == slot_kind::payload)) clear(ms);
    }
    return *this;
}

timed_multiplex &timed_multiplex::without_pid(unsigned pid, unsigned first_ms, unsigned fence_ms)
{
    for (unsigned ms = first_ms; ms < slots.size() && ms < fence_ms; ++ms)
        if (slots[ms].pid == pid) clear(ms);
    return *this;
}

timed_multiplex &timed_multiplex::clear(unsigned ms)
{
    slots.at(ms) = {};
    return *this;
}

timed_multiplex &timed_multiplex::shorten(unsigned milliseconds)
{
    slots.resize(milliseconds);
    return *this;
}

bytes timed_multiplex::packets() const
{
    stream_builder stream;
    for (const slot &taken : slots) {
        switch (taken.kind) {
        case slot_kind::null:
            stream.padding();
            break;
        case slot_kind::section:
            stream.section(taken.pid, taken.data);
            break;
        case slot_kind::unit:
            stream.payload(taken.pid, taken.data, true);
            break;
        case slot_kind::payload:
            stream.payload(taken.pid, taken.data);
            break;
        case slot_kind::pcr:
            stream.adaptation(taken.pid, taken.data);
            break;
        }
    }
    return stream.data();
}

unsigned next_packet_of(const bytes &packets, unsigned pid, unsigned from)
{
    for (unsigned packet = from; packet < packets.size() / packet_size; ++packet) {
        const uint8_t *start = packets.data() + packet * packet_size;
        if (((start[1] & 0x1Fu) << 8 | start[2]) == pid) return packet;
    }
    throw std::logic_error("no such packet");
}

void lose(bytes &packets, unsigned packet)
{
    const bytes null = stream_builder().padding().data();
    std::copy(null.begin(), null.end(), packets.begin() + static_cast<ptrdiff_t>(packet * packet_size));
}
