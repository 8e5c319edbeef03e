#include "mpeg_ts_analysis/descriptors/dvb_network.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/report/hex_dump.h"

namespace {

/// Room for the longest text of a descriptor and its zero.
constexpr unsigned text_size = 256;

constexpr named_value service_type_names[] = {
    {0x01, "Digital television service"                                                      },
    {0x02, "Digital radio sound service"                                                     },
    {0x03, "Teletext service"                                                                },
    {0x04, "NVOD reference service"                                                          },
    {0x05, "NVOD time-shifted service"                                                       },
    {0x06, "Mosaic service"                                                                  },
    {0x07, "FM radio service"                                                                },
    {0x08, "DVB SRM service"                                                                 },
    {0x0A, "Advanced codec digital radio sound service"                                      },
    {0x0B, "Advanced codec mosaic service"                                                   },
    {0x0C, "Data broadcast service"                                                          },
    {0x0D, "Reserved [Common Interface Usage EN 50221 [37]] service"                         },
    {0x0E, "RCS Map [EN 301 790 [7]] service"                                                },
    {0x0F, "RCS FLS [EN 301 790 [7]] service"                                                },
    {0x10, "DVB MHP service"                                                                 },
    {0x11, "MPEG-2 HD digital television service"                                            },
    {0x16, "Advanced codec SD digital television service"                                    },
    {0x17, "Advanced codec SD NVOD time-shifted service"                                     },
    {0x18, "Advanced codec SD NVOD reference service"                                        },
    {0x19, "Advanced codec HD digital television service"                                    },
    {0x1A, "Advanced codec HD NVOD time-shifted service"                                     },
    {0x1B, "Advanced codec HD NVOD reference service"                                        },
    {0x1C, "Advanced codec frame compatible plano-stereoscopic HD digital television service"},
    {0x1D, "Advanced codec frame compatible plano-stereoscopic NVOD time-shifted service"    },
    {0x1E, "Advanced codec frame compatible plano-stereoscopic NVOD reference service"       },
};
static_assert(is_ascending(service_type_names));

} // namespace

void desc_dvb_A38_6_2_27_network_name_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);
    char name[text_size];

    in.text(name, length);
    show("        network_name_descriptor() [DVB A38 6.2.27]\n");
    show("            char=%s\n", name);
}

void desc_dvb_A38_6_2_35_service_list_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    if (length % 3 != 0) report_line("!!! service_list_descriptor() length not a multiple of 3");
    show("        service_list_descriptor() [DVB A38 6.2.35]\n");
    while (in.has(3)) {
        const unsigned service_id = in.bits(16);
        const unsigned service_type = in.bits(8);
        show("            service_id=0x%04x service_type=0x%02x %s\n", service_id, service_type,
             name_of(service_type_names, service_type));
    }
}

namespace {

constexpr const char *west_east_names[] = {"west", "east"};
constexpr const char *polarization_names[] = {"linear - horizontal", "linear - vertical", "circular - left",
                                              "circular - right"};
constexpr const char *roll_off_names[] = {"alpha=0.35", "alpha=0.25", "alpha=0.20"};
constexpr const char *modulation_system_names[] = {"DVB-S", "DVB-S2"};
constexpr const char *modulation_type_names[] = {"Auto", "QPSK", "8PSK", "16-QAM or N/A for DVB-S2"};
constexpr named_value FEC_inner_names[] = {
    {1,  "1/2 conv. code rate" },
    {2,  "2/3 conv. code rate" },
    {3,  "3/4 conv. code rate" },
    {4,  "5/6 conv. code rate" },
    {5,  "7/8 conv. code rate" },
    {6,  "8/9 conv. code rate" },
    {7,  "3/5 conv. code rate" },
    {8,  "4/5 conv. code rate" },
    {9,  "9/10 conv. code rate"},
    {15, "No conv. coding"     },
};
static_assert(is_ascending(FEC_inner_names));

} // namespace

void desc_dvb_A38_6_2_13_2_satellite_delivery_system_descriptor(const uint8_t *body)
{
    bit_reader in(body, body + 11);

    // Numbers in BCD: their digits are printed as hexadecimal ones.
    const unsigned frequency_GHz = in.bits(12);
    const unsigned frequency_fraction = in.bits(20);
    const unsigned orbital_position_degrees = in.bits(12);
    const unsigned orbital_position_tenths = in.bits(4);
    show("        satellite_delivery_system_descriptor() [DVB A38 6.2.13.2]\n");
    show("            frequency=%x.%05xGHz\n", frequency_GHz, frequency_fraction);
    show("            orbital_position=%x.%01x degrees\n", orbital_position_degrees, orbital_position_tenths);
    show_named("            west_east_flag=%u %s\n", in.bits(1), west_east_names);
    show_named("            polarization=%u %s\n", in.bits(2), polarization_names);
    show_named("            roll_off=%u %s\n", in.bits(2), roll_off_names);
    show_named("            modulation_system=%u %s\n", in.bits(1), modulation_system_names);
    show_named("            modulation_type=%u %s\n", in.bits(2), modulation_type_names);
    const unsigned symbol_rate_mega = in.bits(12);
    const unsigned symbol_rate_fraction = in.bits(16);
    show("            symbol_rate=%x.%04x mega-symbols/sec\n", symbol_rate_mega, symbol_rate_fraction);
    show_named("            FEC_inner=%u %s\n", in.bits(4), FEC_inner_names);
}

void desc_dvb_A38_6_2_33_service_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);
    char name[text_size];

    show("        service_descriptor() [DVB A38 6.2.33]\n");
    show_named("            service_type=0x%02x %s\n", in.bits(8), service_type_names);

    const unsigned service_provider_name_length = in.bits(8);
    if (!in.has(service_provider_name_length)) {
        report_line("!!! service_descriptor() service provider name extends past descriptor");
        return;
    }
    in.text(name, service_provider_name_length);
    show("            service_provider_name=%s\n", name);

    if (!in.has(1)) return;
    const unsigned service_name_length = in.bits(8);
    if (!in.has(service_name_length)) {
        report_line("!!! service_descriptor() service name extends past descriptor");
        return;
    }
    in.text(name, service_name_length);
    show("            service_name=%s\n", name);
    if (in.has(1)) report_line("!!! service_descriptor() extra bytes at the end");
}

namespace {

constexpr const char *linkage_type_names[] = {nullptr,
                                              "Information service",
                                              "EPF service",
                                              "CA replacement service",
                                              "TS containing complete Network/Bouquet SI",
                                              "Service replacement service",
                                              "Data broadcast service",
                                              "RCS Map",
                                              "Mobile hand-over",
                                              "System Software Update Service [TS 102 006 [11]]",
                                              "TS containing SSU BAT or NIT [TS 102 006 [11]]",
                                              "IP/MAC Notification Service [EN 301 192 [4]]",
                                              "TS containing INT BAT or NIT [EN 301 192 [4]]",
                                              "Event linkage",
                                              "Extended event linkage"};

} // namespace

void desc_dvb_A38_6_2_19_linkage_descriptor(const uint8_t *body)
{
    bit_reader in(body, body + 7);

    show("        linkage_descriptor() [DVB A38 6.2.19]\n");
    show("            transport_stream_id=0x%04x\n", in.bits(16));
    show("            original_network_id=0x%04x\n", in.bits(16));
    show("            service_id=0x%04x\n", in.bits(16));
    show_named("            linkage_type=0x%02x %s\n", in.bits(8), linkage_type_names);
}

void desc_dvb_A38_6_2_39_stream_identifier_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        stream_identifier_descriptor() [DVB A38 6.2.39]\n");
    show("            component_tag=0x%02x\n", in.bits(8));
}

void desc_dvb_A38_6_2_5_CA_identifier_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        CA_identifier_descriptor() [DVB A38 6.2.5]\n");
    show("            CA_system_id=");
    for (const char *separator = ""; in.has(2); separator = ", ") show("%s0x%04x", separator, in.bits(16));
    show("\n");
}

namespace {

constexpr const char *teletext_type_names[] = {nullptr,
                                               "Initial teletext page",
                                               "Teletext subtitle page",
                                               "Additional information page",
                                               "Programme schedule page",
                                               "Teletext subtitle page for hearing impaired people"};

} // namespace

void desc_dvb_A38_6_2_43_teletext_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    if (length % 5 != 0) report_line("!!! teletext_descriptor() length not a multiple of 5 bytes");
    show("        teletext_descriptor() [DVB A38 6.2.43]. %u entries.\n", length / 5);
    while (in.has(5)) {
        char ISO_639_language_code[4];
        in.text(ISO_639_language_code);
        show("          - ISO_639_language_code=%s\n", ISO_639_language_code);
        show_named("            teletext_type=%u %s\n", in.bits(5), teletext_type_names);
        show("            teletext_magazine_number=%u\n", in.bits(3));
        // kept: in decimal, though the number is BCD.
        show("            teletext_page_number=%u\n", in.bits(8));
    }
}

namespace {

constexpr const char *bandwidth_names[] = {"8MHz", "7MHz", "6MHz", "5MHz"};
constexpr const char *time_slicing_names[] = {"(at least one elementary stream uses time slicing)",
                                              "(not used)"};
constexpr const char *constellation_names[] = {"QPSK", "QAM16", "QAM64"};
constexpr const char *hierarchy_names[] = {"non-hierarchical, native interleaver",
                                           "alpha=1, native interleaver",
                                           "alpha=2, native interleaver",
                                           "alpha=4, native interleaver",
                                           "non-hierarchical, in-depth interleaver",
                                           "alpha=1, in-depth interleaver",
                                           "alpha=2, in-depth interleaver",
                                           "alpha=4, in-depth interleaver"};
constexpr const char *code_rate_names[] = {"1/2", "2/3", "3/4", "5/6", "7/8"};
constexpr const char *guard_interval_names[] = {"1/32", "1/16", "1/8", "1/4"};
// kept: transmission mode 3 is printed with the text of guard interval 3.
constexpr const char *transmission_mode_names[] = {"2k", "8k", "4k", "1/4"};

} // namespace

void desc_dvb_A38_6_2_13_4_terrestrial_delivery_system_descriptor(const uint8_t *body)
{
    bit_reader in(body, body + 11);

    show("        terrestrial_delivery_system_descriptor() [DVB A38 6.2.13.4]\n");
    show("            centre_frequency=%lluHz\n", 10ull * in.bits(32));
    show_named("            bandwidth=%u %s\n", in.bits(3), bandwidth_names);
    show("            priority=%u\n", in.bits(1));
    show_named("            Time_Slicing_indicator=%u %s\n", in.bits(1), time_slicing_names);
    show("            MPE-FEC_indicator=%u\n", in.bits(1));
    if (in.bits(2) != 0x3) report_line("!!! reserved field has zero bits in it");
    show_named("            constellation=%u %s\n", in.bits(2), constellation_names);
    show_named("            hierarchy_information=%u %s\n", in.bits(3), hierarchy_names);
    show_named("            code_rate-HP_stream=%u %s\n", in.bits(3), code_rate_names);
    show_named("            code_rate-LP_stream=%u %s\n", in.bits(3), code_rate_names);
    show_named("            guard_interval=%u %s\n", in.bits(2), guard_interval_names);
    show_named("            transmission_mode=%u %s\n", in.bits(2), transmission_mode_names);
    show("            other_frequency_flag=%u\n", in.bits(1));
    if (in.bits(32) != 0xFFFFFFFF) report_line("!!!! reserved 32-bit field has nonzero bits");
}

void desc_dvb_A38_6_2_31_private_data_specifier_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        private_data_specifier_descriptor() [DVB A38 6.2.31]\n");
    show("            private_data_specifier=0x%08x\n", in.bits(32));
}

void desc_dvb_A38_6_2_12_data_broadcast_id_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        data_broadcast_id_descriptor() [DVB A38 6.2.12]\n");
    show("            data_broadcast_id=0x%04x\n", in.bits(16));
    // kept: printed in every dump mode.
    report_printf("            id_selector_byte=[");
    report_hex_list(in.position(), body + length);
    report_printf("]\n");
}

void desc_etsi_tr_101_202_4_7_7_1_carousel_identifier_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        carousel_identifier_descriptor() [ETSI TR 101 202 4.7.7.1]\n");
    show("            carousel_id=0x%08x\n", in.bits(32));
    const unsigned format_id = in.bits(8);
    show("            format_id=0x%02x\n", format_id);
    if (format_id == 1) show("??? TODO: Decoding of FormatSpecifier with format_id=0x01 [table 4.1.7a]\n");
}

void desc_freetv_op41_logical_channel_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    if (length % 4 != 0)
        report_line(
            "!!! logical_channel_descriptor() Australia Free TV OP 41 length is not a multiple of 4 bytes");
    show("        logical_channel_descriptor() [Australia: Free TV OP 41 LCN Descriptor]\n");
    while (in.has(4)) {
        const unsigned service_id = in.bits(16);
        const unsigned visible_service_flag = in.bits(1);
        if (in.bits(5) != 0x1F) report_line("!!! reserved fiels has zero bits");
        show("            Channel %u:\n", in.bits(10));
        show("                visible_service_flag=%u\n", visible_service_flag);
        show("                service_id=0x%04x\n", service_id);
    }
}
