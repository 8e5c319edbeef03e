// Finds the start of a PES packet in a byte range and decodes its header: ISO/IEC 13818-1 2.4.3.6, and the
// packet header of ISO/IEC 11172-1 2.4.3.3.
#pragma once

#include <cstdint>

struct mpeg_pes {
    const uint8_t *header = nullptr;    ///< the 00 00 01 prefix of the packet that was decoded, or null
    uint32_t stream_id = 0;             ///< 0x100 + stream_id of the packet found last; 0 before the first
    uint8_t done = 0;                   ///< 1 when the range is used up or cannot be followed
    uint8_t PES_scrambling_control = 0; ///< 0 to 3
    uint8_t PES_priority = 0;
    uint8_t data_alignment_indicator = 0;
    uint8_t copyright = 0;
    uint8_t original_or_copy = 0;
    uint8_t PTS_DTS_flags = 0; ///< 0 to 3
    uint8_t ESCR_flag = 0;
    uint8_t ES_rate_flag = 0;
    uint8_t DSM_trick_mode_flag = 0;
    uint8_t additional_copy_info_flag = 0;
    uint8_t PES_CRC_flag = 0;
    uint8_t PES_extension_flag = 0;
    uint8_t PES_header_data_length = 0; ///< bytes
    uint8_t mpeg_version = 0;           ///< 2, or 1 for a packet header of ISO/IEC 11172-1
    unsigned long long PTS = 0;         ///< 33 bits, 90 kHz units; 0 when absent
    unsigned long long DTS = 0;         ///< 33 bits, 90 kHz units; 0 when absent
};

/// A new, empty scanner, or null when memory is short. Release it with mpeg_pes_destroy.
mpeg_pes *mpeg_pes_create();

/// Looks for the next PES packet in [start, fence) and decodes its header when all of it lies in the range.
/// Returns where the next scan should begin, which is start when there was no progress.
const unsigned char *mpeg_pes_scan(mpeg_pes *pes, const unsigned char *start, const unsigned char *fence);

/// Frees what mpeg_pes_create returned, null included.
void mpeg_pes_destroy(mpeg_pes *pes);
