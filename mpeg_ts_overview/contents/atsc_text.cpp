#include "mpeg_ts_overview/contents/atsc_text.h"

#include <algorithm>

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_overview/contents/scsu.h"
#include "mpeg_ts_overview/contents/utf8_text.h"

namespace {

constexpr unsigned mode_scsu = 0x3E;
constexpr unsigned mode_utf16 = 0x3F;

/// A/65 table 6.41: modes that are the high byte of code points.
bool selects_code_range(unsigned mode)
{
    return mode <= 0x06 || (mode >= 0x09 && mode <= 0x10) || (mode >= 0x20 && mode <= 0x27) ||
           (mode >= 0x30 && mode <= 0x33);
}

std::string segment_text(unsigned compression_type, unsigned mode, const uint8_t *start, const uint8_t *fence)
{
    if (start == fence) return {};
    if (compression_type != 0 || mode > mode_utf16) return "(compressed)";
    if (mode == mode_utf16) return utf16_text(start, fence);
    if (mode == mode_scsu) return scsu_text(start, fence);

    std::string text;
    for (const uint8_t *p = start; p < fence; ++p)
        append_code_point(text, selects_code_range(mode) ? mode << 8 | *p : replacement_character);
    return text;
}

/// Appends the segment to text; false when the structure ends within it.
bool read_segment(bit_reader &in, std::string &text)
{
    const unsigned compression_type = in.bits(8);
    const unsigned mode = in.bits(8);
    const size_t number_bytes = in.bits(8);
    const size_t available = std::min(number_bytes, in.bytes_left());

    text += segment_text(compression_type, mode, in.position(), in.position() + available);
    in.skip(available);
    return available == number_bytes;
}

} // namespace

std::vector<atsc_string> atsc_strings(const uint8_t *start, const uint8_t *fence)
{
    bit_reader in(start, fence);
    std::vector<atsc_string> strings;
    const unsigned number_strings = in.bits(8);
    for (unsigned i = 0; i < number_strings && in.has(4); ++i) {
        atsc_string string;
        string.language = latin_1_text(in.position(), in.position() + 3);
        in.skip(3);
        const unsigned number_segments = in.bits(8);
        bool is_whole = true;
        for (unsigned segment = 0; segment < number_segments && is_whole; ++segment)
            is_whole = in.has(3) && read_segment(in, string.text);
        strings.push_back(string);
        if (!is_whole) break;
    }
    return strings;
}
