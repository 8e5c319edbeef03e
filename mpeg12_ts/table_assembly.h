// Collects the payload bytes of one PID until a section is whole, checks it and hands it out with its decoded
// header, ISO/IEC 13818-1 2.4.4. The section in hand always starts at the first byte of the storage.
#pragma once

#include "mpeg12_ts/packet.h"

#include <cstdint>

/// The section header that all tables share, ISO/IEC 13818-1 2.4.4.11. Of a short section
/// (section_syntax_indicator 0) every field after section_length is 0.
struct mpeg_ts_pat_main_header {
    uint8_t table_id = 0;
    uint8_t section_syntax_indicator = 0; ///< 0 or 1
    uint8_t private_indicator = 0;        ///< 0 or 1
    uint16_t section_length = 0;          ///< bytes after this field, 0 to 4095
    uint16_t table_id_extension = 0;      ///< transport_stream_id, program_number, service_id ... by table
    uint8_t version_number = 0;           ///< 0 to 31
    uint8_t current_next_indicator = 0;   ///< 0 or 1
    uint8_t section_number = 0;
    uint8_t last_section_number = 0;
};

/// An all-zero record is an assembly without storage.
struct mpeg_ts_table_assembly {
    uint8_t *buffer = nullptr; ///< start of the storage, or null
    uint8_t *fence = nullptr;  ///< one past the storage; a section ends at least 128 bytes before it
    uint8_t *write = nullptr;  ///< one past the last byte collected; equal to buffer when nothing is held
    uint8_t *zeros = nullptr;  ///< from here to the fence nothing was ever written
    mpeg_ts_pat_main_header header;
    bool closed = false; ///< no more bytes are taken for the section in hand
};

/// Bytes of the storage that stay behind every section.
constexpr unsigned long mpeg_ts_table_assembly_reserve = 128;

/// With size 0 releases the storage. Otherwise gives the assembly zero-filled storage for size bytes of
/// sections and the reserve; returns 0, and leaves it without storage, when memory is short.
int mpeg_ts_table_assembly_init(mpeg_ts_table_assembly *assembly, unsigned long size);

/// Moves the storage of one assembly to another, zero-filled and empty as after the init that made it; what
/// the other held is released. It costs no more than zeroing what was written.
void mpeg_ts_table_assembly_move(mpeg_ts_table_assembly *from, mpeg_ts_table_assembly *to);

/// Drops what is held and starts a section from a packet whose payload_unit_start_indicator is set, at the
/// target of its pointer_field. Collects nothing when the packet has no payload or the target lies past it.
/// The header argument is not used.
void mpeg_ts_table_assembly_begin(mpeg_ts_table_assembly *assembly, const mpeg_ts_pat_main_header *header,
                                  const mpeg_ts_packet *packet);

/// Appends the payload of a continuation packet. What exceeds the capacity is dropped.
void mpeg_ts_table_assembly_add(mpeg_ts_table_assembly *assembly, const mpeg_ts_packet *packet);

/// Closes the collection: no more bytes will come for it.
void mpeg_ts_table_assembly_complete(mpeg_ts_table_assembly *assembly);

/// 1: a whole section is held; *header is its header, [*base, *fence) its body: from behind the header to the
/// CRC_32 (to the section's end when it is short). 0: bytes are missing. -1: the CRC_32 is wrong, or
/// section_length has no room for a header and a CRC_32. 2: stuffing. The results are valid until the next
/// call that changes the assembly.
int mpeg_ts_table_assembly_take_ready(mpeg_ts_table_assembly *assembly,
                                      const mpeg_ts_pat_main_header **header, const uint8_t **base,
                                      const uint8_t **fence);

/// Forgets the section in hand and keeps the storage.
void mpeg_ts_table_assembly_discard(mpeg_ts_table_assembly *assembly);
