// Reads a recording block by block and tells its packets: runs that need no look, packets that do, slots
// without a sync byte, losses of sync. Packets are told where they lie.
#pragma once

#include "mpeg_ts_overview/input/arrival_clock.h"
#include "mpeg_ts_overview/input/block.h"
#include "mpeg_ts_overview/input/packet_grid.h"
#include "mpeg_ts_overview/model/pid_array.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

/// Reads up to size bytes to where it is told. Returns how many came, 0 at the end, below 0 when reading
/// fails.
using byte_source = std::function<ptrdiff_t(uint8_t *to, size_t size)>;

/// A block holds the bytes in which packets are looked for.
constexpr size_t least_block_size = 2 * longest_lead;
/// A duplicate is looked for at most so many packets back.
constexpr uint64_t duplicate_reach = 1024;

struct input_counts {
    uint64_t bytes = 0;
    uint64_t leading_bytes = 0;
    uint64_t skipped_bytes = 0;
    uint64_t trailing_bytes = 0;
    uint64_t packets = 0; ///< slots, those with a bad sync byte included
    uint64_t sync_byte_errors = 0;
    uint64_t sync_losses = 0;
};

class packet_scanner {
public:
    /// Reads from source in blocks of size bytes, at least least_block_size. Packets of packet_size; 0: find
    /// it.
    packet_scanner(byte_source source, unsigned packet_size, size_t size = block_size);

    /// Reads the first block and finds the packets. Returns false when there are none.
    bool find_packets();

    /// The next block with its steps, or null at the end. It is to be given back.
    std::unique_ptr<block> next_block();

    /// Takes back a block that is not needed any more.
    void give_back(std::unique_ptr<block> used);

    /// What was counted so far.
    const input_counts &counts() const { return totals; }
    packet_grid grid() const { return found; }
    /// At the end, the offset where sync was lost for good; none when it was not.
    std::optional<uint64_t> lost_for_good() const { return in_sync ? std::nullopt : std::optional(lost_at); }
    /// True when reading failed; what was read before is told all the same.
    bool failed() const { return read_failed; }
    /// Of 192-byte packets: the ticks between the last two that followed each other.
    int64_t last_arrival_step() const { return arrival.last_good_step(); }

private:
    std::unique_ptr<block> read_block();
    void scan(block &b);
    bool regain_sync(block &b);
    bool scan_bad_sync(block &b);
    void scan_packets(block &b);
    void scan_packet(block &b, uint32_t header);
    uint32_t run_length(block &b, uint32_t header);
    bool note_arrival(block &b, const uint8_t *packet);
    void add_step(block &b, step_kind kind, uint32_t count, uint32_t header = 0);
    bool repeats_previous(uint64_t earlier) const;
    void release_blocks();

    byte_source read_source;
    unsigned wanted_size; ///< 0: find it
    size_t block_bytes;
    block_pool pool;
    packet_grid found;
    input_counts totals;
    arrival_clock arrival;
    bool at_end = false;
    bool read_failed = false;
    bool in_sync = true;
    uint64_t lost_at = 0;       ///< offset in the recording where sync was lost
    const uint8_t *p = nullptr; ///< start of the next packet
    uint64_t index = 0;         ///< its index
    /// Of each PID, of its last packet: index * 32 + 16 + continuity_counter. 0 where no counter is expected.
    pid_array<uint64_t> last;
    std::unique_ptr<block> pending;           ///< the first block, read to find the packets
    std::deque<const block *> recent;         ///< as far back as duplicates are looked for
    std::vector<std::unique_ptr<block>> kept; ///< given back, but still recent
};
