#include "mpeg_ts_analysis/descriptors/ac3.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/report/hex_dump.h"

namespace {

/// Room for the longest text that textlen can announce, and its zero.
constexpr unsigned text_size = 128;

constexpr const char *sample_rate_code_names[] = {"48KHz",
                                                  "44.1KHz",
                                                  "32KHz",
                                                  "Reserved",
                                                  "48KHz or 44.1KHz",
                                                  "48KHz or 32KHz",
                                                  "44.1KHz or 32KHz",
                                                  "48KHz, 44.1KHz or 32KHz"};
/// kbit/sec by the low 5 bits of bit_rate_code; 0 where none is assigned.
constexpr unsigned bit_rates[32] = {32,  40,  48,  56,  64,  80,  96,  112, 128, 160,
                                    192, 224, 256, 320, 384, 448, 512, 576, 640};
constexpr const char *bit_rate_limit_names[] = {"exact", "upper limit"};
// kept: the spelling of Dolby.
constexpr const char *surround_mode_names[] = {"Not indicated", "NOT Dobly surround encoded",
                                               "Dobly surround encoded", "Reserved"};
constexpr const char *num_channels_names[] = {"1+1",  "1/0",  "2/0",      "3/0",     "2/1",  "3/1",
                                              "2/2",  "3/2",  "1",        "<= 2",    "<= 3", "<= 4",
                                              "<= 5", "<= 6", "Reserved", "Reserved"};
constexpr const char *priority_names[] = {"Reserved", "Primary Audio", "Other Audio", "Not specified"};
constexpr const char *text_code_names[] = {"Unicode UCS-16", "ISO 8859-1"};

/// Whatever is left of a descriptor; nothing when all was read.
void print_additional_info(const bit_reader &in, const uint8_t *fence)
{
    if (!in.has(1)) return;
    report_printf("            additional_info_byte=[");
    report_hex_list(in.position(), fence);
    report_printf("]\n");
}

/// textlen, text_code and the text. Returns false when the descriptor ends before or inside them.
bool A52_text(bit_reader &in)
{
    if (!in.has(1)) return false;
    const unsigned textlen = in.bits(7);
    const unsigned text_code = in.bits(1);
    report_printf("            textlen=%u\n", textlen);
    report_printf("            text_code=%u (%s)\n", text_code, name_of(text_code_names, text_code));
    if (!in.has(textlen)) {
        report_line("!!! A/52 AC-3 Text length too long");
        return false;
    }
    char text[text_size];
    in.text(text, textlen);
    report_printf("            text=%s\n", text);
    return true;
}

/// The flags and the languages they announce. Returns false when the descriptor ends before or inside them.
bool A52_languages(bit_reader &in)
{
    if (!in.has(1)) return false;
    const unsigned language_flag = in.bits(1);
    const unsigned language_flag_2 = in.bits(1);
    const unsigned reserved = in.bits(6);
    report_printf("            language_flag=%u\n", language_flag);
    report_printf("            language_flag_2=%u\n", language_flag_2);
    if (reserved != 0x3F)
        report_printf("!!! A/52 AC-3 reserved field (after language_flag) is not 0x3F. Is 0x%02x\n",
                      reserved);

    char language[4];
    if (language_flag) {
        if (!in.has(3)) return false;
        in.text(language);
        report_printf("            language=%s\n", language);
    }
    if (language_flag_2) {
        if (!in.has(3)) return false;
        in.text(language);
        report_printf("            language_2=%s\n", language);
    }
    return true;
}

} // namespace

void desc_atsc_A52_2012_A4_3_AC3_audio_stream_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        AC-3_audio_stream_descriptor() [ATSC A/52:2012 A4.3]\n");
    if (!in.has(3)) return;
    const unsigned sample_rate_code = in.bits(3);
    report_printf("            sample_rate_code=%u (%s)\n", sample_rate_code,
                  name_of(sample_rate_code_names, sample_rate_code));
    report_printf("            bsid=%u\n", in.bits(5));
    const unsigned bit_rate_code = in.bits(6);
    // kept: the lowest bit tells a limit from an exact rate, not the highest.
    report_printf("            bit_rate_code=%u (%u kbit/sec %s)\n", bit_rate_code,
                  bit_rates[bit_rate_code & 0x1F], name_of(bit_rate_limit_names, bit_rate_code & 1));
    const unsigned surround_mode = in.bits(2);
    report_printf("            surround_mode=%u (%s)\n", surround_mode,
                  name_of(surround_mode_names, surround_mode));
    const unsigned bsmod = in.bits(3);
    report_printf("            bsmod=%u\n", bsmod);
    const unsigned num_channels = in.bits(4);
    report_printf("            num_channels=%u ( %s )\n", num_channels,
                  name_of(num_channels_names, num_channels));
    report_printf(
        "            full_svc=%u                            # Full service suitable for presentation\n",
        in.bits(1));

    if (!in.has(1)) return;
    report_printf("            langcod=0x%02x\n", in.bits(8));
    if (num_channels == 0) {
        if (!in.has(1)) return;
        report_printf("            langcod2=0x%02x\n", in.bits(8));
    }

    if (!in.has(1)) return;
    if (bsmod < 2) {
        report_printf("            mainid=%u\n", in.bits(3));
        const unsigned priority = in.bits(2);
        report_printf("            priority=%u (%s)\n", priority, name_of(priority_names, priority));
        report_printf("            reserved=%u\n", in.bits(3));
    } else {
        report_printf("            asvcflags=0x%02x\n", in.bits(8));
    }

    if (!A52_text(in)) return;
    if (!A52_languages(in)) return;
    print_additional_info(in, body + length);
}

namespace {

/// An optional byte of the DVB descriptor. Returns false when its flag is set and the byte is missing.
/// Inlined, so that the format is known where it is put down.
[[gnu::always_inline]] inline bool AC3_optional_byte(bit_reader &in, unsigned flag,
                                                     const report_format<unsigned> format)
{
    if (!flag) return true;
    if (!in.has(1)) {
        report_line("!!! flag implies field that does not exist in tag");
        return false;
    }
    show<unsigned>(format, in.bits(8));
    return true;
}

} // namespace

void desc_dvb_A38_D_3_AC3_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    if (!descriptors_are_shown()) return;
    show("        AC-3_descriptor() [DVB A38 D.3]\n");
    const unsigned component_type_flag = in.bits(1);
    const unsigned bsid_flag = in.bits(1);
    const unsigned mainid_flag = in.bits(1);
    const unsigned asvc_flag = in.bits(1);
    show("            component_type_flag=%u\n", component_type_flag);
    show("            bsid_flag=%u\n", bsid_flag);
    show("            mainid_flag=%u\n", mainid_flag);
    show("            asvc_flag=%u\n", asvc_flag);
    if (in.bits(4) != 0x0) report_line("!!! reserved field has nonzero bits");

    if (!AC3_optional_byte(in, component_type_flag, "            component_type=0x%02x\n")) return;
    if (!AC3_optional_byte(in, bsid_flag, "            bsid=0x%02x\n")) return;
    if (!AC3_optional_byte(in, mainid_flag, "            mainid=0x%02x\n")) return;
    if (!AC3_optional_byte(in, asvc_flag, "            asvc=0x%02x\n")) return;
    print_additional_info(in, body + length);
}
