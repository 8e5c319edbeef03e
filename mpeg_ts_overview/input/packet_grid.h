// Where packets begin: sync bytes a packet apart.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

/// Bytes before the sync byte of a 192-byte packet: its arrival time stamp.
constexpr unsigned arrival_stamp_size = 4;
/// So many sync bytes a packet apart are trusted.
constexpr unsigned trusted_sync_bytes = 5;
/// A recording whose packets begin behind so many bytes is none.
constexpr size_t longest_lead = 65536;

struct packet_grid {
    unsigned packet_size = 0; ///< bytes from one packet to the next: 188, 192 or 204
    unsigned sync_offset = 0; ///< bytes from a packet's start to its sync byte: 4 where packet_size is 192
};

packet_grid grid_of(unsigned packet_size);

struct found_grid {
    packet_grid grid;
    size_t offset = 0; ///< of the first packet
};

/// Finds the packets in the first bytes of a recording, which are all of it when fewer than longest_lead and
/// five packets. Of several sizes the one that begins first is taken, then the smallest; only_size, unless 0,
/// is the only one tried. Nothing when no packet is found.
std::optional<found_grid> find_grid(const uint8_t *first, const uint8_t *fence, unsigned only_size);

/// The first place from first on where five sync bytes lie a packet apart, or null when none does before
/// fence.
const uint8_t *find_sync(const uint8_t *first, const uint8_t *fence, packet_grid grid);
