#include "mpeg_ts_overview/contents/header_finder.h"

#include <algorithm>

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_overview/contents/codec_ac3.h"
#include "mpeg_ts_overview/contents/codec_adts.h"
#include "mpeg_ts_overview/contents/codec_h264.h"
#include "mpeg_ts_overview/contents/codec_hevc.h"
#include "mpeg_ts_overview/contents/codec_mpeg_audio.h"
#include "mpeg_ts_overview/contents/codec_mpeg_video.h"

namespace {

/// The longest frame of E-AC-3 twice, so that a piece holds a whole frame and the header behind it.
constexpr size_t piece_size = 8192;

using reader = std::optional<codec_details> (*)(const uint8_t *start, const uint8_t *fence);

reader reader_of(codec_family family)
{
    switch (family) {
    case codec_family::mpeg_video:
        return mpeg_video_details;
    case codec_family::h264:
        return h264_details;
    case codec_family::hevc:
        return hevc_details;
    case codec_family::mpeg_audio:
        return mpeg_audio_details;
    case codec_family::adts:
        return adts_details;
    case codec_family::ac3:
        return ac3_details;
    }
    return nullptr;
}

/// ISO/IEC 13818-1 2.4.3.7: streams whose PES packets have no optional header, or no elementary stream.
bool has_pes_header(unsigned stream_id)
{
    switch (stream_id) {
    case 0xBC: // program_stream_map
    case 0xBE: // padding_stream
    case 0xBF: // private_stream_2
    case 0xF0: // ECM_stream
    case 0xF1: // EMM_stream
    case 0xF2: // DSMCC_stream
    case 0xF8: // ITU-T Rec. H.222.1 type E
    case 0xFF: // program_stream_directory
        return false;
    default:
        return true;
    }
}

} // namespace

std::optional<codec_family> codec_family_of(unsigned stream_type)
{
    switch (stream_type) {
    case 0x01:
    case 0x02:
        return codec_family::mpeg_video;
    case 0x03:
    case 0x04:
        return codec_family::mpeg_audio;
    case 0x0F:
        return codec_family::adts;
    case 0x1B:
        return codec_family::h264;
    case 0x24:
        return codec_family::hevc;
    case 0x81:
    case 0x87:
        return codec_family::ac3;
    default:
        return {};
    }
}

header_finder::header_finder(codec_family family)
    : details_in(reader_of(family)), is_video(family == codec_family::mpeg_video ||
                                              family == codec_family::h264 || family == codec_family::hevc)
{
}

void header_finder::on_payload(const uint8_t *start, const uint8_t *fence, bool payload_unit_start)
{
    if (is_done()) return;
    if (payload_unit_start)
        begin_pes_packet(start, fence);
    else if (is_in_pes_packet)
        keep(start, fence);
}

void header_finder::on_gap()
{
    if (is_done()) return;
    try_piece();
    is_in_pes_packet = false;
}

void header_finder::on_end()
{
    if (!is_done()) try_piece();
    tries_left = 0;
}

void header_finder::begin_pes_packet(const uint8_t *start, const uint8_t *fence)
{
    if (is_video) try_piece();
    bit_reader in(start, fence);
    const unsigned packet_start_code_prefix = in.bits(24);
    const unsigned stream_id = in.bits(8);
    in.bits(16); // PES_packet_length
    const unsigned marker = in.bits(2);
    const unsigned PES_scrambling_control = in.bits(2);
    in.bits(4 + 8); // flags
    const size_t PES_header_data_length = in.bits(8);
    is_in_pes_packet = packet_start_code_prefix == 1 && has_pes_header(stream_id) && marker == 2 &&
                       PES_scrambling_control == 0 && in.has(PES_header_data_length);
    in.skip(PES_header_data_length);
    if (is_in_pes_packet && !is_done())
        keep(in.position(), fence);
    else if (!is_in_pes_packet)
        try_piece();
}

void header_finder::keep(const uint8_t *start, const uint8_t *fence)
{
    if (piece.capacity() < piece_size) piece.reserve(piece_size);
    const auto room = static_cast<long>(piece_size - piece.size());
    piece.insert(piece.end(), start, start + std::min<long>(room, fence - start));
    if (piece.size() < piece_size) return;
    try_piece();
    // The rest of a long picture holds no header.
    if (is_video) is_in_pes_packet = false;
}

void header_finder::try_piece()
{
    if (piece.empty()) return;
    --tries_left;
    found = details_in(piece.data(), piece.data() + piece.size());
    piece.clear();
    if (found) tries_left = 0;
    if (is_done()) piece = {};
}
