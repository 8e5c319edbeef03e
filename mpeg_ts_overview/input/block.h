// A block of the recording: its bytes, and the steps in which the packets found in them are measured.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

constexpr size_t block_size = size_t{256} * 1024;
/// Room before a block for the bytes that the block before it left over; whole cache lines.
constexpr size_t block_headroom = 8192;

enum class step_kind : uint8_t {
    run,           ///< packets of one PID that differ in their counter only: see packet_run
    packet,        ///< one packet that is looked at by itself
    bad_slot,      ///< a packet without its sync byte
    sync_loss,     ///< sync was lost before the next packet; no packet itself
    arrival_break, ///< the arrival time of the next packet does not follow; no packet itself
};

struct scan_step {
    const uint8_t *start = nullptr; ///< sync byte of the first packet, or where it should be
    uint64_t index = 0;             ///< of the first packet
    uint32_t count = 0;             ///< packets; 0 for what is no packet
    uint32_t header = 0;            ///< of a run: the first four bytes of its first packet
    step_kind kind = step_kind::packet;
    bool repeats_previous = false; ///< see ts_packet

    /// Leaves out the first packets.
    void pass(uint32_t packets, size_t packet_size)
    {
        constexpr uint32_t continuity_counter = 0x0000000F;
        start += packets * packet_size;
        index += packets;
        count -= packets;
        header = (header & ~continuity_counter) | ((header + packets) & continuity_counter);
    }
};

/// A copy by the kernel to where no cache line begins takes half as long again.
struct alignas(64) cache_line {
    uint8_t bytes[64];
};

/// Bytes that follow each other in the recording, up to the next piece of their block.
struct block_piece {
    const uint8_t *first = nullptr;
    uint64_t offset = 0; ///< in the recording
};

/// Steps point into the bytes: a block neither moves nor is copied.
struct block {
    explicit block(size_t size, size_t headroom_size = block_headroom)
        : storage(new cache_line[(headroom_size + size) / sizeof(cache_line) + 1]), headroom(headroom_size)
    {
    }
    block(const block &) = delete;
    block &operator=(const block &) = delete;

    /// Where bytes are read to; before it is the headroom.
    uint8_t *room() { return reinterpret_cast<uint8_t *>(storage.get()) + headroom; }

    std::unique_ptr<cache_line[]> storage;
    size_t headroom;
    const uint8_t *first = nullptr; ///< first byte
    const uint8_t *fence =
        nullptr;         ///< one past the last byte; what is left over stands in the next block too
    uint64_t offset = 0; ///< of the first byte in the recording
    std::vector<block_piece> pieces;       ///< of a block that holds packets alone; else all bytes are one
    const uint8_t *in_sync_from = nullptr; ///< start of the first packet since sync was last found
    uint64_t in_sync_index = 0;            ///< its index
    uint64_t first_index = 0;              ///< of the first packet
    uint64_t fence_index = 0;              ///< one past the index of the last packet
    std::vector<scan_step> steps;
    std::vector<int64_t> arrival; ///< unwrapped arrival ticks of each packet; empty without stamps
    /// The steps, by number, whose packet has a PCR or the discontinuity_indicator, and no transport error.
    std::vector<uint32_t> clock_steps;

    /// Arrival ticks of a packet of the block, by its index in the recording.
    int64_t arrival_of(uint64_t packet) const { return arrival[static_cast<size_t>(packet - first_index)]; }

    /// Offset in the recording of a byte of the block.
    uint64_t offset_of(const uint8_t *byte) const
    {
        return pieces.empty() ? offset + static_cast<uint64_t>(byte - first) : offset_in_piece(byte);
    }

private:
    uint64_t offset_in_piece(const uint8_t *byte) const;
};

/// Blocks that are free, used again last in, first out, so that they are still in the cache.
class block_pool {
public:
    /// Blocks of size bytes and the headroom.
    explicit block_pool(size_t size) : bytes_of_a_block(size) {}

    /// A block without steps.
    std::unique_ptr<block> take();
    void give_back(std::unique_ptr<block> used) { free_blocks.push_back(std::move(used)); }

private:
    size_t bytes_of_a_block;
    std::vector<std::unique_ptr<block>> free_blocks;
};
