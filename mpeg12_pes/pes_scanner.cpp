#include "mpeg12_pes/pes_scanner.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg12_ts/bytes.h"
#include "mpeg12_ts/new_record.h"

#include <cstdlib>

namespace {

constexpr uint8_t lowest_stream_id = 0xBC;
constexpr unsigned start_code_size = 4;
constexpr unsigned packet_length_fence = 6; ///< bytes up to and with PES_packet_length

/// The 00 00 01 of the next start code with a PES stream_id, or null.
const uint8_t *find_start_code(const uint8_t *p, const uint8_t *fence)
{
    for (; fence - p >= static_cast<long>(start_code_size); ++p)
        if (p[0] == 0 && p[1] == 0 && p[2] == 1 && p[3] >= lowest_stream_id) return p;
    return nullptr;
}

/// These streams have data bytes right behind PES_packet_length, ISO/IEC 13818-1 table 2-21.
bool has_no_header_fields(uint32_t stream_id)
{
    switch (stream_id) {
    case 0x1BC: // program_stream_map
    case 0x1BE: // padding_stream
    case 0x1BF: // private_stream_2
    case 0x1F0: // ECM_stream
    case 0x1F1: // EMM_stream
    case 0x1F2: // DSMCC_stream
    case 0x1F8: // ITU-T Rec. H.222.1 type E
    case 0x1FF: // program_stream_directory
        return true;
    default:
        return false;
    }
}

/// 4 prefix bits, then 33 bits in three groups, each followed by a marker bit: 5 bytes.
unsigned long long read_time_stamp(bit_reader &in)
{
    in.bits(4);
    unsigned long long time = in.bits(3);
    in.bits(1);
    time = (time << 15) | in.bits(15);
    in.bits(1);
    time = (time << 15) | in.bits(15);
    in.bits(1);
    return time;
}

/// Returns false when the header does not lie whole before the fence.
bool decode_mpeg_2_header(mpeg_pes *pes, const uint8_t *p, const uint8_t *fence)
{
    bit_reader in(p + packet_length_fence, fence);

    if (!in.has(3)) return false;
    in.bits(2);
    pes->PES_scrambling_control = static_cast<uint8_t>(in.bits(2));
    pes->PES_priority = static_cast<uint8_t>(in.bits(1));
    pes->data_alignment_indicator = static_cast<uint8_t>(in.bits(1));
    pes->copyright = static_cast<uint8_t>(in.bits(1));
    pes->original_or_copy = static_cast<uint8_t>(in.bits(1));
    pes->PTS_DTS_flags = static_cast<uint8_t>(in.bits(2));
    pes->ESCR_flag = static_cast<uint8_t>(in.bits(1));
    pes->ES_rate_flag = static_cast<uint8_t>(in.bits(1));
    pes->DSM_trick_mode_flag = static_cast<uint8_t>(in.bits(1));
    pes->additional_copy_info_flag = static_cast<uint8_t>(in.bits(1));
    pes->PES_CRC_flag = static_cast<uint8_t>(in.bits(1));
    pes->PES_extension_flag = static_cast<uint8_t>(in.bits(1));
    pes->PES_header_data_length = static_cast<uint8_t>(in.bits(8));
    if (!in.has(pes->PES_header_data_length)) return false;

    if ((pes->PTS_DTS_flags & 2) != 0 && pes->PES_header_data_length >= 5) pes->PTS = read_time_stamp(in);
    if (pes->PTS_DTS_flags == 3 && pes->PES_header_data_length >= 10) pes->DTS = read_time_stamp(in);
    pes->mpeg_version = 2;
    pes->header = p;
    return true;
}

/// Stuffing bytes, the STD buffer fields, then '0010' and a PTS, '0011' with PTS and DTS, or 0000 1111 for
/// neither. Returns false when the header does not lie whole before the fence; header stays null when it is
/// no such header.
bool decode_mpeg_1_header(mpeg_pes *pes, const uint8_t *p, const uint8_t *fence)
{
    const uint8_t *q = p + packet_length_fence;

    while (q < fence && *q == 0xFF) ++q;
    if (q < fence && *q >> 6 == 1) q = fence - q > 2 ? q + 2 : fence;
    if (q >= fence) return false;

    bit_reader in(q, fence);
    const unsigned marks = *q >> 4;
    if (marks == 2 || marks == 3) {
        if (!in.has(marks == 3 ? 10 : 5)) return false;
        pes->PTS_DTS_flags = static_cast<uint8_t>(marks);
        pes->PTS = read_time_stamp(in);
        if (marks == 3) pes->DTS = read_time_stamp(in);
    } else if (*q != 0x0F) {
        return true;
    }
    pes->mpeg_version = 1;
    pes->header = p;
    return true;
}

bool decode_header(mpeg_pes *pes, const uint8_t *p, const uint8_t *fence)
{
    if (fence - p <= static_cast<long>(packet_length_fence)) return false;
    return p[packet_length_fence] >> 6 == 2 ? decode_mpeg_2_header(pes, p, fence)
                                            : decode_mpeg_1_header(pes, p, fence);
}

/// The end of a packet without header fields, or the fence when it lies beyond.
const uint8_t *packet_end(const uint8_t *p, const uint8_t *fence)
{
    if (fence - p < static_cast<long>(packet_length_fence)) return fence;
    const long size = static_cast<long>(packet_length_fence) + big_endian_16(p + start_code_size);
    return size < fence - p ? p + size : fence;
}

} // namespace

mpeg_pes *mpeg_pes_create()
{
    return new_record<mpeg_pes>();
}

const unsigned char *mpeg_pes_scan(mpeg_pes *pes, const unsigned char *start, const unsigned char *fence)
{
    const uint8_t *const p = find_start_code(start, fence);
    if (p == nullptr) {
        pes->done = 1;
        return fence;
    }

    *pes = mpeg_pes{};
    pes->stream_id = 0x100u + p[3];
    const uint8_t *next = p + start_code_size;
    if (has_no_header_fields(pes->stream_id))
        next = packet_end(p, fence);
    else if (!decode_header(pes, p, fence))
        next = fence;
    if (next == fence) pes->done = 1;
    return next;
}

void mpeg_pes_destroy(mpeg_pes *pes)
{
    std::free(pes);
}
