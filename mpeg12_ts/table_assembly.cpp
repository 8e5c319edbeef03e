#include "mpeg12_ts/table_assembly.h"

#include "mpeg12_ts/bytes.h"
#include "mpeg12_ts/crc32.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr uint8_t stuffing = 0xFF;
constexpr unsigned short_header_size = 3;
constexpr unsigned long_header_size = 8;
constexpr unsigned crc_size = 4;

void collect(mpeg_ts_table_assembly *assembly, const uint8_t *p, const uint8_t *fence)
{
    const uint8_t *const capacity_fence = assembly->fence - mpeg_ts_table_assembly_reserve;
    const auto room = static_cast<size_t>(capacity_fence - assembly->write);
    const auto offered = static_cast<size_t>(fence - p);
    const size_t taken = offered < room ? offered : room;

    std::memcpy(assembly->write, p, taken);
    assembly->write += taken;
    if (assembly->write > assembly->zeros) assembly->zeros = assembly->write;
}

mpeg_ts_pat_main_header decode_header(const uint8_t *p)
{
    mpeg_ts_pat_main_header header;

    header.table_id = p[0];
    header.section_syntax_indicator = p[1] >> 7;
    header.private_indicator = (p[1] >> 6) & 1;
    header.section_length = big_endian_16(p + 1) & 0xFFF;
    return header;
}

void decode_long_header(mpeg_ts_pat_main_header *header, const uint8_t *p)
{
    header->table_id_extension = big_endian_16(p + 3);
    header->version_number = (p[5] >> 1) & 0x1F;
    header->current_next_indicator = p[5] & 1;
    header->section_number = p[6];
    header->last_section_number = p[7];
}

} // namespace

int mpeg_ts_table_assembly_init(mpeg_ts_table_assembly *assembly, unsigned long size)
{
    std::free(assembly->buffer);
    *assembly = mpeg_ts_table_assembly{};
    if (size == 0) return 1;

    const unsigned long storage = size + mpeg_ts_table_assembly_reserve;
    assembly->buffer = static_cast<uint8_t *>(std::calloc(storage, 1));
    if (assembly->buffer == nullptr) return 0;
    assembly->fence = assembly->buffer + storage;
    assembly->write = assembly->buffer;
    assembly->zeros = assembly->buffer;
    return 1;
}

void mpeg_ts_table_assembly_move(mpeg_ts_table_assembly *from, mpeg_ts_table_assembly *to)
{
    const mpeg_ts_table_assembly moved = *from;

    *from = mpeg_ts_table_assembly{};
    mpeg_ts_table_assembly_init(to, 0);
    if (moved.buffer == nullptr) return;
    std::memset(moved.buffer, 0, static_cast<size_t>(moved.zeros - moved.buffer));
    to->buffer = to->write = to->zeros = moved.buffer;
    to->fence = moved.fence;
}

void mpeg_ts_table_assembly_begin(mpeg_ts_table_assembly *assembly, const mpeg_ts_pat_main_header *,
                                  const mpeg_ts_packet *packet)
{
    mpeg_ts_table_assembly_discard(assembly);
    if (assembly->buffer == nullptr || packet->payload == nullptr) return;

    const unsigned pointer_field = packet->payload[0];
    const uint8_t *const payload_fence = packet->fence;
    if (payload_fence - packet->payload <= 1 + static_cast<int>(pointer_field)) return;
    collect(assembly, packet->payload + 1 + pointer_field, payload_fence);
}

void mpeg_ts_table_assembly_add(mpeg_ts_table_assembly *assembly, const mpeg_ts_packet *packet)
{
    if (assembly->buffer == nullptr || assembly->closed || packet->payload == nullptr) return;
    collect(assembly, packet->payload, packet->fence);
}

void mpeg_ts_table_assembly_complete(mpeg_ts_table_assembly *assembly)
{
    assembly->closed = true;
}

int mpeg_ts_table_assembly_take_ready(mpeg_ts_table_assembly *assembly,
                                      const mpeg_ts_pat_main_header **header, const uint8_t **base,
                                      const uint8_t **fence)
{
    const uint8_t *const section = assembly->buffer;
    const auto held = static_cast<size_t>(assembly->write - section);

    if (held >= 1 && section[0] == stuffing) return 2;
    if (held < short_header_size) return 0;

    assembly->header = decode_header(section);
    const size_t size = short_header_size + size_t{assembly->header.section_length};
    if (held < size) return 0;

    *header = &assembly->header;
    if (assembly->header.section_syntax_indicator == 0) {
        *base = section + short_header_size;
        *fence = section + size;
        return 1;
    }
    if (size < long_header_size + crc_size || mpeg_ts_crc32(section, section + size) != 0) return -1;
    decode_long_header(&assembly->header, section);
    *base = section + long_header_size;
    *fence = section + size - crc_size;
    return 1;
}

void mpeg_ts_table_assembly_discard(mpeg_ts_table_assembly *assembly)
{
    assembly->write = assembly->buffer;
    assembly->closed = false;
}
