// The input: read in large blocks, handed out packet by packet where the bytes lie, offsets counted.
#pragma once

#include "mpeg_ts_analysis/driver/progress.h"

#include <cstddef>

constexpr size_t packet_file_block_size = size_t{256} * 1024;
/// Room before a block for what was left of the block before it; the packet size detection's bytes fit too.
constexpr size_t packet_file_headroom = 8192;

struct packet_file {
    int descriptor = -1;
    size_t block_size = packet_file_block_size; ///< bytes asked of one read, at most packet_file_block_size
    bool flushes_report = false;                ///< the report goes out before each read
    scan_progress *progress = nullptr;          ///< told before each read, or null
    unsigned long long size = 0; ///< bytes of a regular file when it was opened, 0 for any other input
    bool at_end = false;
    int error = 0; ///< errno of the read that failed, 0 when none did
    const unsigned char *next = nullptr;
    const unsigned char *fence = nullptr;
    unsigned long long fence_offset = 0; ///< bytes of the file before fence
    alignas(4096) unsigned char bytes[packet_file_headroom + packet_file_block_size];
};

/// Opens path for reading. Returns false when that fails.
bool packet_file_open(packet_file *file, const char *path);

/// Goes back to the start of the file. Returns false, and changes nothing, when the input cannot seek.
bool packet_file_rewind(packet_file *file);

/// Reads until size bytes (at most packet_file_headroom) lie between next and fence, or the input ends.
/// Returns how many do, at most size.
size_t packet_file_fill(packet_file *file, size_t size);

/// Closes the file; the record may be opened again.
void packet_file_close(packet_file *file);

/// The next packet_size bytes, or null when fewer are left. They stay until the next call.
inline const unsigned char *packet_file_next(packet_file *file, unsigned packet_size)
{
    if (static_cast<size_t>(file->fence - file->next) < packet_size &&
        packet_file_fill(file, packet_size) < packet_size)
        return nullptr;
    const unsigned char *const packet = file->next;
    file->next += packet_size;
    return packet;
}

/// Byte offset in the file of a packet that packet_file_next returned last.
inline unsigned long long packet_file_offset(const packet_file *file, const unsigned char *packet)
{
    return file->fence_offset - static_cast<unsigned long long>(file->fence - packet);
}
