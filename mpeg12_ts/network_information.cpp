#include "mpeg12_ts/network_information.h"

#include "mpeg12_ts/bit_reader.h"

int mpeg_ts_decode_nit_header(mpeg_ts_nit_header *header, const uint8_t *p, const uint8_t *f)
{
    bit_reader in(p, f);

    *header = mpeg_ts_nit_header{};
    if (!in.has(2)) return 0;
    in.bits(4);
    header->network_descriptors_length = static_cast<uint16_t>(in.bits(12));
    if (!in.has(header->network_descriptors_length)) return 0;
    header->network_descriptors = in.position();
    in.skip(header->network_descriptors_length);
    header->network_descriptors_fence = in.position();

    if (!in.has(2)) return 0;
    in.bits(4);
    header->transport_stream_loop_length = static_cast<uint16_t>(in.bits(12));
    if (!in.has(header->transport_stream_loop_length)) return 0;
    header->transport_stream_loop = in.position();
    in.skip(header->transport_stream_loop_length);
    header->transport_stream_loop_fence = in.position();
    return 1;
}

int mpeg_ts_decode_nit_first_entry(mpeg_ts_nit_entry *entry, const uint8_t *p, const uint8_t *f)
{
    *entry = mpeg_ts_nit_entry{};
    entry->next = p;
    entry->loop_fence = f;
    return mpeg_ts_decode_nit_next_entry(entry);
}

int mpeg_ts_decode_nit_next_entry(mpeg_ts_nit_entry *entry)
{
    bit_reader in(entry->next, entry->loop_fence);

    if (!in.has(6)) return 0;
    entry->transport_stream_id = static_cast<uint16_t>(in.bits(16));
    entry->original_network_id = static_cast<uint16_t>(in.bits(16));
    in.bits(4);
    entry->transport_descriptors_length = static_cast<uint16_t>(in.bits(12));
    if (!in.has(entry->transport_descriptors_length)) return 0;
    entry->transport_descriptors = in.position();
    in.skip(entry->transport_descriptors_length);
    entry->transport_descriptors_fence = in.position();
    entry->next = in.position();
    return 1;
}
