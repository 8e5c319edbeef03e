// Every section of one PID, ISO/IEC 13818-1 2.4.4: several in a packet, and one across packets. The caller
// hands over the payloads of the PID in sequence and takes the sections that end in each:
//
//     mpeg_ts_section_collector_packet(&collector, payload, fence, unit_start, tag);
//     while (mpeg_ts_section_collector_next(&collector, &section)) ...
#pragma once

#include "mpeg12_ts/table_assembly.h"

#include <cstddef>
#include <cstdint>

/// Bytes of the longest section: a section_length of 4095 behind 3 bytes.
constexpr size_t mpeg_ts_section_max_size = 4098;

/// One whole section. The pointers are valid until the next call with its collector, or until the packet in
/// which it ends is gone.
struct mpeg_ts_section {
    mpeg_ts_pat_main_header header;      ///< of a short section everything behind section_length is 0
    const uint8_t *start = nullptr;      ///< the table_id
    const uint8_t *fence = nullptr;      ///< one past the section, its CRC_32 included
    const uint8_t *body = nullptr;       ///< behind the header
    const uint8_t *body_fence = nullptr; ///< before the CRC_32 of a long section; else the section's end
    uint32_t CRC_32 = 0;                 ///< the last four bytes of a long section; else 0
    /// The CRC_32 is wrong, or there is no room for it. Looked at where section_syntax_indicator is 1, in the
    /// time_offset_section (EN 300 468 5.2.6) and in the splice_info_section (SCTE 35 9.6).
    bool CRC_error = false;
    uint64_t begun = 0; ///< the tag of the packet in which it begins
};

/// A record of its default values is a collector that holds nothing.
struct mpeg_ts_section_collector {
    uint64_t incomplete = 0; ///< sections begun and dropped so far

    size_t held = 0;                     ///< bytes of the section in hand; 0 when there is none
    bool whole = false;                  ///< the section in hand is whole and not yet taken
    uint64_t begun = 0;                  ///< tag of the packet in which the section in hand begins
    uint64_t tag = 0;                    ///< of the packet handed over last
    const uint8_t *next_start = nullptr; ///< where the next section of that packet begins
    const uint8_t *fence = nullptr;      ///< the end of that packet
    uint8_t storage[mpeg_ts_section_max_size];
};

/// Hands over the payload [payload, fence) of the PID's next packet; tag is the caller's name for the packet.
/// A unit start drops what its pointer_field does not complete. Sections begin in unit starts only; a
/// table_id of 0xFF is stuffing up to the packet's end. Nothing happens at an empty payload.
void mpeg_ts_section_collector_packet(mpeg_ts_section_collector *collector, const uint8_t *payload,
                                      const uint8_t *fence, bool payload_unit_start_indicator, uint64_t tag);

/// Takes the next section that ends in the packet handed over last; false when there is none.
bool mpeg_ts_section_collector_next(mpeg_ts_section_collector *collector, mpeg_ts_section *section);

/// Describes the section in hand, which is not whole, as far as it is there: the body ends with it, and
/// CRC_32 is 0. Returns false when there is none, or its header is not there.
bool mpeg_ts_section_collector_in_hand(const mpeg_ts_section_collector *collector, mpeg_ts_section *section);

/// Drops the section in hand: packets of the PID are lost, scrambled, or not to be trusted.
void mpeg_ts_section_collector_drop(mpeg_ts_section_collector *collector);
