#include "mpeg_ts_overview/input/packet_scanner.h"

#include "mpeg12_ts/bytes.h"
#include "mpeg_ts_overview/input/repeated_packet.h"

#include <algorithm>
#include <cstring>

namespace {

// The fields of the packet header as one number, ISO/IEC 13818-1 2.4.3.2.
constexpr uint32_t transport_error_indicator = 0x00800000;
constexpr uint32_t payload_unit_start_indicator = 0x00400000;
constexpr uint32_t transport_priority = 0x00200000;
constexpr uint32_t adaptation_field_control = 0x00000030;
constexpr uint32_t adaptation_field_only = 0x00000020;
constexpr uint32_t payload_only = 0x00000010;
constexpr uint32_t continuity_counter = 0x0000000F;

constexpr uint64_t counter_known = 16;

constexpr uint16_t pid_of(uint32_t header)
{
    return static_cast<uint16_t>((header >> 8) & 0x1FFF);
}

/// True of a packet that a run may hold, whatever its counter.
constexpr bool is_plain(uint32_t header)
{
    constexpr uint32_t fields =
        transport_error_indicator | payload_unit_start_indicator | adaptation_field_control;
    return (header & fields) == payload_only;
}

/// The flags of the adaptation field behind the header at start, 0 when there are none.
uint8_t adaptation_field_flags(const uint8_t *start, uint32_t header)
{
    constexpr unsigned longest_field = mpeg_ts_packet_size - 5;
    if ((header & adaptation_field_only) == 0 || start[4] == 0 || start[4] > longest_field) return 0;
    return start[5];
}

} // namespace

packet_scanner::packet_scanner(byte_source source, unsigned packet_size, size_t bytes_of_a_block)
    : read_source(std::move(source)), wanted_size(packet_size),
      block_bytes(std::max(bytes_of_a_block, least_block_size)), pool(block_bytes)
{
}

bool packet_scanner::find_packets()
{
    pending = read_block();
    const auto grid = find_grid(pending->first, pending->fence, wanted_size);
    if (!grid) return false;
    found = grid->grid;
    totals.leading_bytes = grid->offset;
    p = pending->first + grid->offset;
    return true;
}

/// A block of what the last one left over and as many bytes as it holds, or as there are.
std::unique_ptr<block> packet_scanner::read_block()
{
    std::unique_ptr<block> b = pool.take();
    uint8_t *const fresh = b->room();
    const size_t left = recent.empty() ? 0 : static_cast<size_t>(recent.back()->fence - p);

    if (left > 0) std::memcpy(fresh - left, p, left);
    size_t filled = 0;
    while (filled < block_bytes) {
        const ptrdiff_t got = read_source(fresh + filled, block_bytes - filled);
        if (got <= 0) {
            at_end = true;
            read_failed = got < 0;
            break;
        }
        filled += static_cast<size_t>(got);
    }
    b->first = p = fresh - left;
    b->fence = fresh + filled;
    b->offset = totals.bytes - left;
    totals.bytes += filled;
    return b;
}

std::unique_ptr<block> packet_scanner::next_block()
{
    if (pending == nullptr && at_end) return nullptr;
    release_blocks(); // first, so that the next block is one that is still in the cache
    std::unique_ptr<block> b = pending != nullptr ? std::move(pending) : read_block();
    recent.push_back(b.get());
    b->in_sync_from = p;
    b->in_sync_index = b->first_index = b->fence_index = index;
    scan(*b);
    b->fence_index = totals.packets = index;
    return b;
}

void packet_scanner::release_blocks()
{
    while (recent.size() > 1 && (!in_sync || recent.front()->fence_index + duplicate_reach < index))
        recent.pop_front();
    for (size_t i = 0; i < kept.size();) {
        if (std::find(recent.begin(), recent.end(), kept[i].get()) == recent.end()) {
            pool.give_back(std::move(kept[i]));
            kept.erase(kept.begin() + static_cast<ptrdiff_t>(i));
        } else {
            ++i;
        }
    }
}

void packet_scanner::give_back(std::unique_ptr<block> used)
{
    kept.push_back(std::move(used));
}

void packet_scanner::scan(block &b)
{
    for (;;) {
        if (!in_sync && !regain_sync(b)) break;
        scan_packets(b);
        if (in_sync) break;
    }
    if (!at_end) return;

    const auto rest = static_cast<uint64_t>(b.fence - p);
    if (in_sync) {
        totals.trailing_bytes = rest;
    } else {
        totals.skipped_bytes += totals.bytes - lost_at;
    }
}

/// Looks for the next packets in sync. Returns false when the block holds none.
bool packet_scanner::regain_sync(block &b)
{
    const uint8_t *const start = find_sync(p, b.fence, found);
    if (start == nullptr) {
        // What is left is too short to tell: the next block begins with it.
        const size_t reach = found.sync_offset + (trusted_sync_bytes - 1) * size_t{found.packet_size};
        p = b.fence - std::min(reach, static_cast<size_t>(b.fence - p));
        return false;
    }
    p = start;
    totals.skipped_bytes += b.offset_of(p) - lost_at;
    in_sync = true;
    b.in_sync_from = p;
    b.in_sync_index = index;
    // No copy is looked for in what came before.
    last = {};
    recent.erase(recent.begin(), recent.end() - 1);
    add_step(b, step_kind::sync_loss, 0);
    return true;
}

/// Takes the slot without a sync byte. Returns false when the block ends before it can be told what it is.
bool packet_scanner::scan_bad_sync(block &b)
{
    const bool has_next = b.fence - p >= 2 * static_cast<ptrdiff_t>(found.packet_size);
    if (!has_next && !at_end) return false;

    totals.sync_byte_errors++;
    if (has_next && p[found.packet_size + found.sync_offset] != mpeg_ts_sync_byte) {
        totals.sync_byte_errors++;
        totals.sync_losses++;
        in_sync = false;
        lost_at = b.offset_of(p);
        return false;
    }
    if (found.sync_offset != 0) b.arrival.push_back(arrival.ticks());
    add_step(b, step_kind::bad_slot, 1);
    return true;
}

void packet_scanner::scan_packets(block &b)
{
    while (b.fence - p >= static_cast<ptrdiff_t>(found.packet_size)) {
        const uint8_t *const start = p + found.sync_offset;
        if (*start != mpeg_ts_sync_byte) {
            if (!scan_bad_sync(b)) return;
            continue;
        }
        if (found.sync_offset != 0 && !note_arrival(b, p)) add_step(b, step_kind::arrival_break, 0);
        const uint32_t header = big_endian_32(start);
        const uint16_t pid = pid_of(header);
        const uint64_t expected = (last[pid] + 1) & continuity_counter;
        const bool in_sequence =
            (last[pid] & counter_known) != 0 && (header & continuity_counter) == expected;
        if (is_plain(header) && (in_sequence || pid == mpeg_ts_padding_pid))
            add_step(b, step_kind::run, run_length(b, header), header);
        else
            scan_packet(b, header);
    }
}

/// Adds the packet's arrival time. Returns false when it does not follow.
bool packet_scanner::note_arrival(block &b, const uint8_t *packet)
{
    const bool follows = arrival.add(big_endian_32(packet));
    b.arrival.push_back(arrival.ticks());
    return follows;
}

/// How many packets the run has that begins with the packet at p; notes its last counter.
uint32_t packet_scanner::run_length(block &b, uint32_t header)
{
    const uint32_t ignored =
        transport_priority | (pid_of(header) == mpeg_ts_padding_pid ? continuity_counter : 0);
    const unsigned packet_size = found.packet_size;
    const uint8_t *next = p + packet_size;
    uint32_t count = 1;
    uint32_t counter = header & continuity_counter;

    for (; b.fence - next >= static_cast<ptrdiff_t>(packet_size); next += packet_size, ++count) {
        const uint32_t next_counter = (counter + 1) & continuity_counter;
        const uint32_t wanted = (header & ~continuity_counter) | next_counter;
        if (((big_endian_32(next + found.sync_offset) ^ wanted) & ~ignored) != 0) break;
        if (found.sync_offset != 0) {
            arrival_clock ahead = arrival;
            if (!ahead.add(big_endian_32(next))) break;
            arrival = ahead;
            b.arrival.push_back(arrival.ticks());
        }
        counter = next_counter;
    }
    last[pid_of(header)] = (index + count - 1) * 32 + counter_known + counter;
    return count;
}

void packet_scanner::scan_packet(block &b, uint32_t header)
{
    const uint16_t pid = pid_of(header);
    const uint8_t *const start = p + found.sync_offset;
    const uint64_t before = last[pid];
    constexpr uint8_t discontinuity_indicator_or_PCR_flag = 0x90;
    bool repeats = false;

    if (header & transport_error_indicator) {
        last[pid] = 0;
    } else {
        if ((adaptation_field_flags(start, header) & discontinuity_indicator_or_PCR_flag) != 0)
            b.clock_steps.push_back(static_cast<uint32_t>(b.steps.size()));
        if ((header & adaptation_field_control) != 0) {
            const bool equal_counter = (before & 31) == (counter_known | (header & continuity_counter));
            if (equal_counter && (header & payload_only) != 0 && pid != mpeg_ts_padding_pid)
                repeats = repeats_previous(before / 32);
            last[pid] = index * 32 + counter_known + (header & continuity_counter);
        }
    }
    add_step(b, step_kind::packet, 1);
    b.steps.back().repeats_previous = repeats;
}

/// True when the packet at p has the bytes of the earlier one, which lies in this block or a recent one.
bool packet_scanner::repeats_previous(uint64_t earlier) const
{
    if (index - earlier > duplicate_reach) return false;
    for (auto recent_block = recent.rbegin(); recent_block != recent.rend(); ++recent_block) {
        const block &holder = **recent_block;
        if (earlier < holder.in_sync_index) continue;
        const uint8_t *const packet =
            holder.in_sync_from + (earlier - holder.in_sync_index) * found.packet_size;
        return is_repeated_packet(packet + found.sync_offset, p + found.sync_offset);
    }
    return false;
}

/// Adds a step of count packets from p on, of a run with its first header, and goes on behind them.
void packet_scanner::add_step(block &b, step_kind kind, uint32_t count, uint32_t header)
{
    b.steps.push_back({p + found.sync_offset, index, count, header, kind, false});
    index += count;
    p += size_t{count} * found.packet_size;
}
