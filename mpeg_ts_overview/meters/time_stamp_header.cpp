#include "mpeg_ts_overview/meters/time_stamp_header.h"

#include "mpeg12_ts/bit_reader.h"

namespace {

constexpr size_t fixed_header_size = 9; ///< up to and with PES_header_data_length
constexpr size_t time_stamp_size = 5;

/// True when the PES packets of the stream_id have flags and stamps, ISO/IEC 13818-1 table 2-21.
bool has_flags(unsigned stream_id)
{
    switch (stream_id) {
    case 0xBC: // program_stream_map
    case 0xBE: // padding_stream
    case 0xBF: // private_stream_2
    case 0xF0: // ECM_stream
    case 0xF1: // EMM_stream
    case 0xF2: // DSMCC_stream
    case 0xF8: // ITU-T Rec. H.222.1 type E stream
    case 0xFF: // program_stream_directory
        return false;
    default:
        return true;
    }
}

int64_t read_stamp(bit_reader &reader)
{
    reader.bits(4); // '0010', '0011' or '0001'
    const int64_t bits_32_to_30 = reader.bits(3);
    reader.bits(1); // marker_bit
    const int64_t bits_29_to_15 = reader.bits(15);
    reader.bits(1); // marker_bit
    const int64_t bits_14_to_0 = reader.bits(15);
    reader.bits(1); // marker_bit
    return (bits_32_to_30 << 30) | (bits_29_to_15 << 15) | bits_14_to_0;
}

} // namespace

std::optional<pes_time_stamps> read_time_stamps(const uint8_t *first, const uint8_t *fence)
{
    bit_reader reader(first, fence);
    if (!reader.has(fixed_header_size)) return std::nullopt;

    const unsigned packet_start_code_prefix = reader.bits(24);
    const unsigned stream_id = reader.bits(8);
    reader.bits(16); // PES_packet_length
    reader.bits(8);  // '10', PES_scrambling_control to original_or_copy
    const unsigned PTS_DTS_flags = reader.bits(2);
    reader.bits(6); // ESCR_flag to PES_extension_flag
    reader.bits(8); // PES_header_data_length
    if (packet_start_code_prefix != 1 || !has_flags(stream_id)) return std::nullopt;

    const size_t stamps = PTS_DTS_flags == 3 ? 2 : PTS_DTS_flags == 2 ? 1 : 0;
    if (!reader.has(stamps * time_stamp_size)) return std::nullopt;

    pes_time_stamps result;
    if (stamps >= 1) result.PTS = read_stamp(reader);
    if (stamps >= 2) result.DTS = read_stamp(reader);
    return result;
}
