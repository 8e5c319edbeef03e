#include "mpeg_ts_overview/contents/dvb_text.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "mpeg_ts_overview/contents/utf8_text.h"
#include "text/utf8_valid.h"

namespace {

enum class coding {
    reserved,
    single_byte, // control codes 0x80 to 0x9F
    iso_6937,    // the same, and the euro sign at 0xA4
    double_byte, // pairs of bytes from 0xA1 on; control codes 0xE080 to 0xE09F
    utf16,       // control codes U+E080 to U+E09F
    utf8,        // the same
};

/// What the first bytes of a text select.
struct selection {
    const char *iconv_name;
    coding how;
    unsigned selector_bytes;
};

/// Annex A, table A.3: by the first byte, from 0x01 on. 0x14 is a subset of ISO/IEC 10646, so it is coded as
/// such.
constexpr selection by_first_byte[] = {
    {"ISO-8859-5",  coding::single_byte, 1},
    {"ISO-8859-6",  coding::single_byte, 1},
    {"ISO-8859-7",  coding::single_byte, 1},
    {"ISO-8859-8",  coding::single_byte, 1},
    {"ISO-8859-9",  coding::single_byte, 1},
    {"ISO-8859-10", coding::single_byte, 1},
    {"ISO-8859-11", coding::single_byte, 1},
    {nullptr,       coding::reserved,    1},
    {"ISO-8859-13", coding::single_byte, 1},
    {"ISO-8859-14", coding::single_byte, 1},
    {"ISO-8859-15", coding::single_byte, 1},
    {nullptr,       coding::reserved,    1},
    {nullptr,       coding::reserved,    1},
    {nullptr,       coding::reserved,    1},
    {nullptr,       coding::reserved,    1},
    {nullptr,       coding::reserved,    3},
    {nullptr,       coding::utf16,       1},
    {"EUC-KR",      coding::double_byte, 1},
    {"EUC-CN",      coding::double_byte, 1},
    {nullptr,       coding::utf16,       1},
    {nullptr,       coding::utf8,        1},
};

/// Annex A, table A.4: by the two bytes behind 0x10, from 0x0001 on.
constexpr const char *iso_8859_parts[] = {
    "ISO-8859-1",  "ISO-8859-2", "ISO-8859-3",  "ISO-8859-4",  "ISO-8859-5",
    "ISO-8859-6",  "ISO-8859-7", "ISO-8859-8",  "ISO-8859-9",  "ISO-8859-10",
    "ISO-8859-11", nullptr,      "ISO-8859-13", "ISO-8859-14", "ISO-8859-15",
};

selection selection_of(const uint8_t *start, const uint8_t *fence)
{
    constexpr selection reserved{nullptr, coding::reserved, 1};
    const unsigned first = *start;
    if (first >= 0x20) return {"ISO6937", coding::iso_6937, 0};
    if (first == 0x10) {
        if (fence - start < 3) return reserved;
        const unsigned part = static_cast<unsigned>(start[1]) << 8 | start[2];
        if (part == 0 || part > std::size(iso_8859_parts)) return reserved;
        if (iso_8859_parts[part - 1] == nullptr) return reserved;
        return {iso_8859_parts[part - 1], coding::single_byte, 3};
    }
    return first == 0 || first > std::size(by_first_byte) ? reserved : by_first_byte[first - 1];
}

/// code is that of table A.1; those of table A.2 have the same low byte.
void append_control(std::string &text, unsigned code)
{
    constexpr unsigned line_end = 0x8A;
    if ((code & 0xFF) == line_end) text += '\n';
}

bool is_control_of_10646(unsigned code)
{
    return code >= 0xE080 && code <= 0xE09F;
}

std::string text_of_utf16(const uint8_t *p, const uint8_t *fence)
{
    std::string text;
    while (p < fence) {
        const unsigned code = next_utf16_code_point(&p, fence);
        if (is_control_of_10646(code))
            append_control(text, code);
        else
            append_code_point(text, code);
    }
    return text;
}

std::string text_of_utf8(const uint8_t *p, const uint8_t *fence)
{
    constexpr std::string_view before_controls = "\xEE\x82"; // U+E080 to U+E0BF; the last byte is the code's
    const std::string valid = utf8_valid({reinterpret_cast<const char *>(p), static_cast<size_t>(fence - p)});
    std::string text;
    for (size_t i = 0; i < valid.size();) {
        const bool is_private = valid.compare(i, before_controls.size(), before_controls) == 0;
        const unsigned last = is_private ? static_cast<uint8_t>(valid[i + before_controls.size()]) : 0;
        if (is_private && is_control_of_10646(0xE000 | last)) {
            append_control(text, last);
            i += before_controls.size() + 1;
        } else {
            text += valid[i++];
        }
    }
    return text;
}

/// A piece of a text in one of iconv's tables: a control code, a euro sign, or a run without either.
struct piece {
    const uint8_t *fence;
    bool is_control;
    bool is_euro_sign;
};

/// The control code at p is how many bytes long, 0 when there is none.
unsigned control_length(coding how, const uint8_t *p, const uint8_t *fence)
{
    const auto is_control = [](unsigned byte) { return byte >= 0x80 && byte <= 0x9F; };
    // Alone, these bytes are no characters of the double byte tables either.
    if (is_control(*p)) return 1;
    return how == coding::double_byte && *p == 0xE0 && fence - p >= 2 && is_control(p[1]) ? 2 : 0;
}

bool is_euro_sign(coding how, unsigned byte)
{
    return how == coding::iso_6937 && byte == 0xA4;
}

/// The character at p is how many bytes long: a pair is not to be taken for a control code by its second
/// half.
unsigned character_length(coding how, const uint8_t *p, const uint8_t *fence)
{
    return how == coding::double_byte && p[0] >= 0xA1 && fence - p >= 2 && p[1] >= 0xA1 ? 2 : 1;
}

piece next_piece(coding how, const uint8_t *p, const uint8_t *fence)
{
    if (const unsigned length = control_length(how, p, fence); length > 0) return {p + length, true, false};
    if (is_euro_sign(how, *p)) return {p + 1, false, true};
    while (p < fence && control_length(how, p, fence) == 0 && !is_euro_sign(how, *p))
        p += character_length(how, p, fence);
    return {p, false, false};
}

bool is_ascii(const uint8_t *start, const uint8_t *fence)
{
    return std::all_of(start, fence, [](uint8_t byte) { return byte < 0x80; });
}

} // namespace

character_table *dvb_text_converter::table_of(const char *iconv_name)
{
    const auto entry = tables.try_emplace(iconv_name, iconv_name, open_table).first;
    return entry->second.is_open() ? &entry->second : nullptr;
}

std::string dvb_text_converter::text(const uint8_t *start, const uint8_t *fence)
{
    if (start >= fence) return {};

    const selection selected = selection_of(start, fence);
    const uint8_t *p = start + selected.selector_bytes;
    if (selected.how == coding::reserved) return "(encoded)";
    if (selected.how == coding::utf16) return text_of_utf16(p, fence);
    if (selected.how == coding::utf8) return text_of_utf8(p, fence);

    // ASCII is the lower half of each of these tables, with or without a converter.
    if (is_ascii(p, fence)) return {p, fence};
    character_table *const table = table_of(selected.iconv_name);
    if (table == nullptr) return "(encoded)";

    std::string text;
    while (p < fence) {
        const piece found = next_piece(selected.how, p, fence);
        if (found.is_control)
            append_control(text, found.fence[-1]);
        else if (found.is_euro_sign)
            append_code_point(text, 0x20AC);
        else
            table->append(text, p, found.fence);
        p = found.fence;
    }
    return text;
}
