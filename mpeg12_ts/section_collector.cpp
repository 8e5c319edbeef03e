#include "mpeg12_ts/section_collector.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg12_ts/bytes.h"
#include "mpeg12_ts/crc32.h"

#include <cstring>

namespace {

constexpr uint8_t stuffing = 0xFF;
constexpr uint8_t time_offset_section = 0x73;
constexpr uint8_t splice_info_section = 0xFC;
constexpr size_t short_header_size = 3;
constexpr size_t long_header_size = 8;
constexpr size_t crc_size = 4;

/// The size of the section that begins at p, of which so many bytes are there; 0 when they do not say.
size_t size_of_section(const uint8_t *p, size_t held)
{
    if (held < short_header_size) return 0;
    return short_header_size + (big_endian_16(p + 1) & 0xFFFu);
}

mpeg_ts_pat_main_header decode_header(bit_reader in)
{
    mpeg_ts_pat_main_header header;

    header.table_id = static_cast<uint8_t>(in.bits(8));
    header.section_syntax_indicator = static_cast<uint8_t>(in.bits(1));
    header.private_indicator = static_cast<uint8_t>(in.bits(1));
    in.bits(2); // reserved
    header.section_length = static_cast<uint16_t>(in.bits(12));
    if (header.section_syntax_indicator == 0) return header;

    header.table_id_extension = static_cast<uint16_t>(in.bits(16));
    in.bits(2); // reserved
    header.version_number = static_cast<uint8_t>(in.bits(5));
    header.current_next_indicator = static_cast<uint8_t>(in.bits(1));
    header.section_number = static_cast<uint8_t>(in.bits(8));
    header.last_section_number = static_cast<uint8_t>(in.bits(8));
    return header;
}

/// Describes the whole section [p, p + size).
void describe(mpeg_ts_section *section, const uint8_t *p, size_t size, uint64_t begun)
{
    *section = mpeg_ts_section{};
    section->header = decode_header(bit_reader(p, p + size));
    section->start = p;
    section->fence = section->body_fence = p + size;
    section->body = p + short_header_size;
    section->begun = begun;

    const bool is_long = section->header.section_syntax_indicator == 1;
    const uint8_t table_id = section->header.table_id;
    if (!is_long && table_id != time_offset_section && table_id != splice_info_section) return;

    const size_t header_size = is_long ? long_header_size : short_header_size;
    const bool has_room = size >= header_size + crc_size;
    section->CRC_error = !has_room || mpeg_ts_crc32(p, p + size) != 0;
    if (!is_long) return;
    section->body = has_room ? p + long_header_size : p + size;
    if (!has_room) return;
    section->body_fence = p + size - crc_size;
    section->CRC_32 = big_endian_32(p + size - crc_size);
}

/// Adds what belongs to the section in hand of [p, fence), and notes when it is whole.
void go_on(mpeg_ts_section_collector *collector, const uint8_t *p, const uint8_t *fence)
{
    while (p < fence) {
        const size_t size = size_of_section(collector->storage, collector->held);
        const size_t wanted = (size != 0 ? size : short_header_size) - collector->held;
        const auto offered = static_cast<size_t>(fence - p);
        const size_t taken = offered < wanted ? offered : wanted;

        std::memcpy(collector->storage + collector->held, p, taken);
        collector->held += taken;
        p += taken;
        collector->whole = collector->held == size_of_section(collector->storage, collector->held);
        if (collector->whole) return;
    }
}

} // namespace

void mpeg_ts_section_collector_packet(mpeg_ts_section_collector *collector, const uint8_t *payload,
                                      const uint8_t *fence, bool payload_unit_start_indicator, uint64_t tag)
{
    collector->next_start = collector->fence = fence;
    if (payload >= fence) return;
    if (collector->whole) mpeg_ts_section_collector_drop(collector);
    collector->tag = tag;
    if (!payload_unit_start_indicator) {
        if (collector->held > 0) go_on(collector, payload, fence);
        return;
    }

    const unsigned pointer_field = *payload++;
    if (fence - payload > static_cast<long>(pointer_field)) collector->next_start = payload + pointer_field;
    if (collector->held > 0) go_on(collector, payload, collector->next_start);
    if (!collector->whole) mpeg_ts_section_collector_drop(collector);
}

bool mpeg_ts_section_collector_next(mpeg_ts_section_collector *collector, mpeg_ts_section *section)
{
    if (collector->whole) {
        describe(section, collector->storage, collector->held, collector->begun);
        collector->held = 0;
        collector->whole = false;
        return true;
    }

    const uint8_t *const start = collector->next_start;
    if (start >= collector->fence || *start == stuffing) return false;
    const auto there = static_cast<size_t>(collector->fence - start);
    const size_t size = size_of_section(start, there);
    if (size != 0 && size <= there) {
        describe(section, start, size, collector->tag);
        collector->next_start = start + size;
        return true;
    }
    std::memcpy(collector->storage, start, there);
    collector->held = there;
    collector->begun = collector->tag;
    collector->next_start = collector->fence;
    return false;
}

bool mpeg_ts_section_collector_in_hand(const mpeg_ts_section_collector *collector, mpeg_ts_section *section)
{
    if (collector->whole || collector->held < long_header_size) return false;
    const uint8_t *const p = collector->storage;
    *section = mpeg_ts_section{};
    section->header = decode_header(bit_reader(p, p + collector->held));
    section->start = p;
    section->fence = section->body_fence = p + collector->held;
    section->body =
        p + (section->header.section_syntax_indicator == 1 ? long_header_size : short_header_size);
    section->begun = collector->begun;
    return true;
}

void mpeg_ts_section_collector_drop(mpeg_ts_section_collector *collector)
{
    if (collector->held > 0) ++collector->incomplete;
    collector->held = 0;
    collector->whole = false;
}
