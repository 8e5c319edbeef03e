#include "mpeg_ts_analysis/descriptors/multiple_string.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "text/utf8.h"

namespace {

/// Room for the text of one segment and its zero.
constexpr size_t segment_text_size = 1024;

constexpr const char *compression_type_names[] = {
    "none",
    "Huffman coding using tables defined in Table C4 and C5 in Annex C",
    "Huffman coding using tables defined in Table C6 and C7 in Annex C",
};

// kept: the spelling of mode 0x01.
constexpr named_value mode_names[] = {
    {0x00, "ANSI (select unicode code range 0x0000-0x00FF)"       },
    {0x01, "Sselect unicode code range 0x0100-0x01FF"             },
    {0x02, "Select unicode code range 0x0200-0x02FF"              },
    {0x03, "Select unicode code range 0x0300-0x03FF"              },
    {0x04, "Select unicode code range 0x0400-0x04FF"              },
    {0x05, "Select unicode code range 0x0500-0x05FF"              },
    {0x06, "Select unicode code range 0x0600-0x06FF"              },
    {0x09, "Select unicode code range 0x0900-0x09FF"              },
    {0x0A, "Select unicode code range 0x0A00-0x0AFF"              },
    {0x0B, "Select unicode code range 0x0B00-0x0BFF"              },
    {0x0C, "Select unicode code range 0x0C00-0x0CFF"              },
    {0x0D, "Select unicode code range 0x0D00-0x0DFF"              },
    {0x0E, "Select unicode code range 0x0E00-0x0EFF"              },
    {0x0F, "Select unicode code range 0x0F00-0x0FFF"              },
    {0x10, "Select unicode code range 0x1000-0x10FF"              },
    {0x20, "Select unicode code range 0x2000-0x20FF"              },
    {0x21, "Select unicode code range 0x2100-0x21FF"              },
    {0x22, "Select unicode code range 0x2200-0x22FF"              },
    {0x23, "Select unicode code range 0x2300-0x23FF"              },
    {0x24, "Select unicode code range 0x2400-0x24FF"              },
    {0x25, "Select unicode code range 0x2500-0x25FF"              },
    {0x26, "Select unicode code range 0x2600-0x26FF"              },
    {0x27, "Select unicode code range 0x2700-0x27FF"              },
    {0x30, "Select unicode code range 0x3000-0x30FF"              },
    {0x31, "Select unicode code range 0x3100-0x31FF"              },
    {0x32, "Select unicode code range 0x3200-0x32FF"              },
    {0x33, "Select unicode code range 0x3300-0x33FF"              },
    {0x3E, "Select Standard Compression Scheme for Unicode (SCSU)"},
    {0x3F, "Select Unicode, UTF-16 Form"                          },
};
static_assert(is_ascending(mode_names));

/// The modes that select a page of 256 Unicode characters.
constexpr unsigned long long supported_modes = 0xF00FF0001FE7F;

bool is_supported(unsigned mode)
{
    return mode < 52 && ((supported_modes >> mode) & 1) != 0;
}

void print_indent(int indent)
{
    for (int i = 0; i < indent; ++i) report_printf(" ");
}

enum class segment_outcome { text, overrun };

/// One segment, its 3 header bytes known to be there. An overrun leaves the reader at the segment's first
/// data byte.
segment_outcome print_segment(bit_reader &in, unsigned number, int indent)
{
    const unsigned compression_type = in.bits(8);
    const unsigned mode = in.bits(8);
    const unsigned number_bytes = in.bits(8);
    const auto available = static_cast<unsigned>(in.bytes_left());

    print_indent(indent);
    report_printf("segment #%d: compression_type=0x%02x(%s) mode=0x%02x(%s) number_bytes=%u\n", number,
                  compression_type, name_of(compression_type_names, compression_type), mode,
                  name_of(mode_names, mode), number_bytes);
    if (number_bytes > available) {
        report_printf(
            "!!! multiple_string_structure() number_bytes too long for descriptor by %u bytes at %u, length is %u, %u avail\n",
            number_bytes - available, static_cast<unsigned>(in.bytes_read()), number_bytes, available);
        return segment_outcome::overrun;
    }

    char text[segment_text_size];
    atsc_multiple_string_segment_to_utf8(text, sizeof(text), in.position(), number_bytes, compression_type,
                                         mode);
    in.skip(number_bytes);
    print_indent(indent + 4);
    report_printf("string: '%s'\n", text);
    return segment_outcome::text;
}

/// One string, its 4 fixed bytes known to be there.
void print_string(bit_reader &in, unsigned number, unsigned number_strings, int indent)
{
    char ISO_639_language_code[4];
    in.text(ISO_639_language_code);
    const unsigned number_segments = in.bits(8);

    print_indent(indent);
    report_printf("string #%d/%d: ISO_639_language_code='%s' number_segments=%u\n", number, number_strings,
                  ISO_639_language_code, number_segments);
    for (unsigned segment = 1; segment <= number_segments && in.has(3); ++segment)
        if (print_segment(in, segment, indent + 4) == segment_outcome::overrun) return;
}

} // namespace

void atsc_multiple_string_segment_to_utf8(char *dest, size_t dest_size, const uint8_t *bytes,
                                          unsigned number_bytes, unsigned compression_type, unsigned mode)
{
    if (dest_size == 0) return;
    *dest = '\0';
    if (number_bytes == 0) return;
    if (compression_type != 0) {
        report_printf("!!! ATSC Multi-segment string: compression type 0x%02x not supported\n",
                      compression_type);
        return;
    }
    if (!is_supported(mode)) {
        report_printf("!!! ATSC Multi-segment string: mode type 0x%02x not supported\n", mode);
        return;
    }

    char *w = dest;
    const char *const fence = dest + dest_size - 1;
    for (unsigned i = 0; i < number_bytes; ++i) utf8_encode(&w, fence, mode * 256 + bytes[i]);
    *w = '\0';
}

void desc_atsc_A65_2009_6_39_multiple_string_structure(const uint8_t *p, unsigned length, int indent)
{
    bit_reader in(p, p + length);

    if (descriptors_are_shown()) {
        print_indent(indent);
        report_line("multiple_string_structure() [ATSC A/65:2009 6.39]");
    }
    if (!in.has(5)) return;
    const unsigned number_strings = in.bits(8);
    // kept: after a segment that overruns, the next string is looked for at that segment's first data byte.
    for (unsigned string = 1; string <= number_strings && in.has(4); ++string)
        print_string(in, string, number_strings, indent + 4);
}
