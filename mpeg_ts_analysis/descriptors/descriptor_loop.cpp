#include "mpeg_ts_analysis/descriptors/descriptor_loop.h"

#include "mpeg12_ts/bytes.h"
#include "mpeg_ts_analysis/descriptors/ac3.h"
#include "mpeg_ts_analysis/descriptors/atsc_a65.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/descriptors/dvb_event.h"
#include "mpeg_ts_analysis/descriptors/dvb_network.h"
#include "mpeg_ts_analysis/descriptors/iso_13818_1.h"
#include "mpeg_ts_analysis/descriptors/scte_35_cue.h"
#include "mpeg_ts_analysis/report/hex_dump.h"

#include <array>

namespace {

constexpr uint8_t private_data_specifier_tag = 0x5F;

enum class context : uint8_t {
    always,
    australia,     ///< the private data specifier is 0x3200 to 0x32FF, its upper 16 bits aside
    atsc_unprivate ///< the ATSC mode is on and there is no private data specifier
};

using descriptor_decoder = void (*)(const uint8_t *body, unsigned length);

struct descriptor_row {
    uint8_t tag;
    context when;
    uint8_t least_length; ///< a shorter descriptor is skipped, its raw dump excepted
    descriptor_decoder decode;
};

constexpr auto always = context::always;
constexpr auto australia = context::australia;
constexpr auto atsc_unprivate = context::atsc_unprivate;

/// A decoder that reads a fixed number of bytes, of which the row's least length makes sure.
template <void (*decoder)(const uint8_t *body)>
void body_only(const uint8_t *body, unsigned)
{
    decoder(body);
}

constexpr descriptor_row rows[] = {
    {0x02, always,         1,  desc_isoiec13818_1_2_6_2_video_stream_descriptor                       },
    {0x03, always,         1,  desc_isoiec13818_1_2_6_4_audio_stream_descriptor                       },
    {0x05, always,         4,  desc_isoiec13818_1_2_6_8_registration_descriptor                       },
    {0x06, always,         1,  desc_isoiec13818_1_2_6_10_data_stream_alignment_descriptor             },
    {0x09, always,         4,  desc_isoiec13818_1_2_6_16_CA_descriptor                                },
    {0x0A, always,         0,  desc_isoiec13818_1_2_6_18_ISO_639_language_descriptor                  },
    {0x0B, always,         2,  desc_isoiec13818_1_2_6_20_system_clock_descriptor                      },
    {0x0C, always,         4,  desc_isoiec13818_1_2_6_22_multiplex_buffer_utilization_descriptor      },
    {0x0E, always,         3,  desc_isoiec13818_1_2_6_26_maximum_bitrate_descriptor                   },
    {0x0F, always,         4,  desc_isoiec13818_1_2_6_28_private_data_indicator_descriptor            },
    {0x10, always,         6,  desc_isoiec13818_1_2_6_30_smoothing_buffer_descriptor                  },
    {0x11, always,         1,  desc_isoiec13818_1_2_6_32_STD_descriptor                               },
    {0x13, always,         5,  desc_etsi_tr_101_202_4_7_7_1_carousel_identifier_descriptor            },
    {0x28, always,         0,  desc_scte_187_2_2012_8_2_AVC_video_descriptor                          },
    {0x2A, always,         0,  desc_isoiec13818_1_2000_amd_3_2_6_66_AVC_timing_and_HRD_descriptor     },
    {0x40, always,         0,  desc_dvb_A38_6_2_27_network_name_descriptor                            },
    {0x41, always,         0,  desc_dvb_A38_6_2_35_service_list_descriptor                            },
    {0x43, always,         11, body_only<desc_dvb_A38_6_2_13_2_satellite_delivery_system_descriptor>  },
    {0x48, always,         2,  desc_dvb_A38_6_2_33_service_descriptor                                 },
    {0x4A, always,         7,  body_only<desc_dvb_A38_6_2_19_linkage_descriptor>                      },
    {0x4D, always,         0,  desc_dvb_A38_6_2_37_short_event_descriptor                             },
    {0x4E, always,         0,  desc_etsi_en_300_468_2010_04_6_2_15_extended_event_descriptor          },
    {0x50, always,         0,  desc_etsi_en_300_468_2010_04_6_2_8_component_descriptor                },
    {0x52, always,         1,  desc_dvb_A38_6_2_39_stream_identifier_descriptor                       },
    {0x53, always,         0,  desc_dvb_A38_6_2_5_CA_identifier_descriptor                            },
    {0x54, always,         0,  desc_dvb_A38_6_2_9_content_descriptor                                  },
    {0x55, always,         0,  desc_dvb_A38_6_2_28_parental_rating_descriptor                         },
    {0x56, always,         0,  desc_dvb_A38_6_2_43_teletext_descriptor                                },
    {0x5A, always,         11, body_only<desc_dvb_A38_6_2_13_4_terrestrial_delivery_system_descriptor>},
    {0x5F, always,         4,  desc_dvb_A38_6_2_31_private_data_specifier_descriptor                  },
    {0x66, always,         2,  desc_dvb_A38_6_2_12_data_broadcast_id_descriptor                       },
    {0x6A, always,         1,  desc_dvb_A38_D_3_AC3_descriptor                                        },
    {0x73, always,         0,  desc_etsi_tr_102_323_6_3_3_default_authority_descriptor                },
    {0x76, always,         0,  desc_etsi_tr_102_323_12_1_4_content_identifier_descriptor              },
    {0x81, always,         0,  desc_atsc_A52_2012_A4_3_AC3_audio_stream_descriptor                    },
    {0x83, australia,      0,  desc_freetv_op41_logical_channel_descriptor                            },
    {0x86, always,         0,  desc_atsc_A65_2009_6_9_2_caption_service_descriptor                    },
    {0x87, always,         0,  desc_atsc_A65_2009_6_9_3_content_advisory_descriptor                   },
    {0x88, atsc_unprivate, 0,  desc_atsc_A70_2010_ATSC_CA_descriptor                                  },
    {0x8A, atsc_unprivate, 1,  desc_scte35_2020_8_2_cue_identifier_descriptor                         },
    {0xA0, atsc_unprivate, 0,  desc_atsc_A65_2009_6_9_4_extended_channel_name_descriptor              },
    {0xA1, atsc_unprivate, 0,  desc_atsc_A65_2009_6_9_5_service_location_descriptor                   },
    {0xA3, atsc_unprivate, 0,  desc_atsc_A65_2009_6_9_7_component_name_descriptor                     },
    {0xAA, atsc_unprivate, 0,  desc_atsc_A65_2009_rc_descriptor                                       },
};

constexpr bool rows_ascend()
{
    for (size_t i = 1; i < std::size(rows); ++i)
        if (rows[i - 1].tag >= rows[i].tag) return false;
    return true;
}
static_assert(rows_ascend() && std::size(rows) == 44);

/// By tag: the place of its row counted from 1, or 0 when it has none.
constexpr auto row_of_tag = [] {
    std::array<uint8_t, 256> places{};
    for (size_t i = 0; i < std::size(rows); ++i) places[rows[i].tag] = static_cast<uint8_t>(i + 1);
    return places;
}();

bool holds(context when, uint32_t private_data_specifier)
{
    switch (when) {
    case context::australia:
        return ((private_data_specifier >> 8) & 0xFF) == 0x32;
    case context::atsc_unprivate:
        return private_data_specifier == 0 && settings.atsc_mode > 0;
    case context::always:
        break;
    }
    return true;
}

void decode(mpeg_ts_pid_tracking *t, uint8_t tag, const uint8_t *body, uint8_t length)
{
    const uint8_t place = row_of_tag[tag];
    if (place == 0 || !holds(rows[place - 1].when, t->private_data_specifier)) {
        show("        Unknown descriptor tag=0x%02x, len=%u\n", tag, length);
        return;
    }
    if (length < rows[place - 1].least_length) return;
    if (tag == private_data_specifier_tag) t->private_data_specifier = big_endian_32(body);
    rows[place - 1].decode(body, length);
}

void dump_raw(uint8_t tag, const uint8_t *body, uint8_t length)
{
    report_printf("        TAG 0x%02x LEN %02x:\n", tag, length);
    report_descriptor_rows(body, body + length);
}

} // namespace

void descriptor_loop(mpeg_ts_pid_tracking *t, const uint8_t *p, const uint8_t *fence)
{
    while (fence - p >= 2) {
        const uint8_t tag = p[0];
        const uint8_t length = p[1];
        const uint8_t *const body = p + 2;
        if (fence - body < length) {
            report_line("!!!! descriptor too long");
            return;
        }
        decode(t, tag, body, length);
        if (settings.dump_descriptors_mode == dump_descriptors_raw) dump_raw(tag, body, length);
        p = body + length;
    }
}
