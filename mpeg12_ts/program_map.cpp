#include "mpeg12_ts/program_map.h"

#include "mpeg12_ts/bit_reader.h"

int mpeg_ts_pat_map_header_decode(mpeg_ts_pat_map_header *map, const uint8_t *p, const uint8_t *f)
{
    bit_reader in(p, f);

    *map = mpeg_ts_pat_map_header{};
    if (!in.has(4)) return 0;
    in.bits(3);
    map->PCR_PID = static_cast<uint16_t>(in.bits(13));
    in.bits(4);
    map->program_info_length = static_cast<uint16_t>(in.bits(12));
    if (!in.has(map->program_info_length)) return 0;
    map->program_info = in.position();
    in.skip(map->program_info_length);

    while (map->stream_count < mpeg_ts_pat_map_stream_limit && in.has(5)) {
        mpeg_ts_pat_map_stream stream;
        stream.stream_type = static_cast<uint8_t>(in.bits(8));
        in.bits(3);
        stream.elementary_PID = static_cast<uint16_t>(in.bits(13));
        in.bits(4);
        stream.ES_info_length = static_cast<uint16_t>(in.bits(12));
        if (!in.has(stream.ES_info_length)) break;
        stream.ES_info = in.position();
        in.skip(stream.ES_info_length);
        map->streams[map->stream_count++] = stream;
    }
    return 1;
}
