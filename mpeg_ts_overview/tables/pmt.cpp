#include "mpeg_ts_overview/tables/pmt.h"

#include "mpeg12_ts/bit_reader.h"

std::optional<pmt> read_pmt(const table_section &section)
{
    pmt map;
    bit_reader in(section.body, section.body_fence);

    if (!in.has(4)) return std::nullopt;
    map.program_number = section.header.table_id_extension;
    in.bits(3); // reserved
    map.PCR_PID = static_cast<uint16_t>(in.bits(13));
    in.bits(4); // reserved
    const unsigned program_info_length = in.bits(12);
    const std::optional<byte_range> program_info = take_range(in, program_info_length);
    if (!program_info) return std::nullopt;
    map.program_info = *program_info;

    while (in.has(5)) {
        pmt_entry stream;
        stream.stream_type = static_cast<uint8_t>(in.bits(8));
        in.bits(3); // reserved
        stream.elementary_PID = static_cast<uint16_t>(in.bits(13));
        in.bits(4); // reserved
        const unsigned ES_info_length = in.bits(12);
        const std::optional<byte_range> ES_info = take_range(in, ES_info_length);
        if (!ES_info) break;
        stream.ES_info = *ES_info;
        map.streams.push_back(stream);
    }
    return map;
}
