#include "mpeg_ts_overview/contents/codec_ac3.h"

#include <iterator>

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_overview/contents/audio_frames.h"

namespace {

constexpr size_t header_bytes = 8;
constexpr unsigned syncword_value = 0x0B77;
constexpr unsigned highest_bsid_ac3 = 8;
constexpr unsigned lowest_bsid_eac3 = 11;
constexpr unsigned highest_bsid_eac3 = 16;
constexpr unsigned samples_per_block = 256;

/// By fscod; by fscod2 they are half of it.
constexpr unsigned sample_rates_hz[] = {48000, 44100, 32000};

/// In kbit/s by half of frmsizecod: table 4.13.
constexpr unsigned bit_rates[] = {32,  40,  48,  56,  64,  80,  96,  112, 128, 160,
                                  192, 224, 256, 320, 384, 448, 512, 576, 640};

/// Full range channels by acmod; 1+1 are two.
constexpr unsigned channels_by_acmod[] = {2, 1, 2, 3, 3, 4, 4, 5};

constexpr unsigned blocks_by_numblkscod[] = {1, 2, 3, 6};

struct frame_header {
    bool is_enhanced = false;
    bool is_first_substream = true; // the first independent one; AC-3 has no other
    unsigned sample_rate_hz = 0;
    unsigned bit_rate_bps = 0;
    unsigned acmod = 0;
    bool lfeon = false;
    size_t frame_bytes = 0;
};

/// syncinfo and bsi, 4.3.1 and 4.3.2.
std::optional<frame_header> ac3_header(bit_reader in)
{
    in.bits(16); // syncword
    in.bits(16); // crc1
    const unsigned fscod = in.bits(2);
    const unsigned frmsizecod = in.bits(6);
    in.bits(5); // bsid
    in.bits(3); // bsmod
    const unsigned acmod = in.bits(3);
    if ((acmod & 1) != 0 && acmod != 1) in.bits(2); // cmixlev
    if ((acmod & 4) != 0) in.bits(2);               // surmixlev
    if (acmod == 2) in.bits(2);                     // dsurmod
    const unsigned lfeon = in.bits(1);
    if (fscod == 3 || frmsizecod / 2 >= std::size(bit_rates)) return {};

    frame_header header;
    header.sample_rate_hz = sample_rates_hz[fscod];
    header.bit_rate_bps = 1000 * bit_rates[frmsizecod / 2];
    header.acmod = acmod;
    header.lfeon = lfeon == 1;
    // A frame of six blocks, in words; at 44,1 kHz every other one is a word longer.
    const size_t words = size_t{header.bit_rate_bps} * 6 * samples_per_block / header.sample_rate_hz / 16;
    header.frame_bytes = 2 * (words + (fscod == 1 ? frmsizecod % 2 : 0));
    return header;
}

/// syncinfo and bsi, E.1.2.1 and E.1.2.2.
std::optional<frame_header> eac3_header(bit_reader in)
{
    in.bits(16); // syncword
    const unsigned strmtyp = in.bits(2);
    const unsigned substreamid = in.bits(3);
    const unsigned frmsiz = in.bits(11);
    const unsigned fscod = in.bits(2);
    const unsigned fscod2_or_numblkscod = in.bits(2);
    const unsigned acmod = in.bits(3);
    const unsigned lfeon = in.bits(1);
    if (strmtyp == 3 || (fscod == 3 && fscod2_or_numblkscod == 3)) return {};

    frame_header header;
    header.is_enhanced = true;
    header.is_first_substream = strmtyp != 1 && substreamid == 0;
    header.sample_rate_hz = fscod == 3 ? sample_rates_hz[fscod2_or_numblkscod] / 2 : sample_rates_hz[fscod];
    header.acmod = acmod;
    header.lfeon = lfeon == 1;
    header.frame_bytes = 2 * (size_t{frmsiz} + 1);
    if (header.frame_bytes < header_bytes) return {};
    const unsigned samples =
        samples_per_block * (fscod == 3 ? 6 : blocks_by_numblkscod[fscod2_or_numblkscod]);
    const size_t bits_times_rate = 8 * header.frame_bytes * header.sample_rate_hz;
    header.bit_rate_bps = static_cast<unsigned>((bits_times_rate + samples / 2) / samples);
    return header;
}

std::optional<frame_header> header_at(const uint8_t *start, const uint8_t *fence)
{
    bit_reader in(start, fence);
    if (!in.has(header_bytes)) return {};
    const bit_reader from_syncword = in;
    const unsigned syncword = in.bits(16);
    in.bits(24);
    const unsigned bsid = in.bits(5); // at the same place in both
    if (syncword != syncword_value) return {};
    if (bsid <= highest_bsid_ac3) return ac3_header(from_syncword);
    if (bsid >= lowest_bsid_eac3 && bsid <= highest_bsid_eac3) return eac3_header(from_syncword);
    return {};
}

bool confirms(const frame_header &first, const frame_header &next)
{
    return first.is_first_substream && first.sample_rate_hz == next.sample_rate_hz;
}

} // namespace

unsigned ac3_sample_rate_hz(unsigned fscod)
{
    return sample_rates_hz[fscod];
}

std::optional<unsigned> ac3_bit_rate_bps(unsigned code)
{
    if (code >= std::size(bit_rates)) return {};
    return 1000 * bit_rates[code];
}

unsigned ac3_channels(unsigned acmod)
{
    return channels_by_acmod[acmod];
}

std::optional<codec_details> ac3_details(const uint8_t *start, const uint8_t *fence)
{
    const auto frame = first_frame<frame_header>(start, fence, header_bytes, header_at, confirms);
    if (!frame || !frame->first.is_first_substream) return {};
    const frame_header &header = frame->first;
    codec_details details;
    details.name = header.is_enhanced ? "E-AC-3" : "AC-3";
    details.sample_rate_hz = header.sample_rate_hz;
    const bool is_alone =
        !frame->next || (frame->next->is_first_substream && frame->next->is_enhanced == header.is_enhanced);
    if (!is_alone) return details;
    details.channels = channels_by_acmod[header.acmod];
    details.low_frequency_channel = header.lfeon;
    // Enhanced frames may differ in length from one to the next.
    if (!frame->next || frame->next->bit_rate_bps == header.bit_rate_bps)
        details.bit_rate_bps = header.bit_rate_bps;
    return details;
}
