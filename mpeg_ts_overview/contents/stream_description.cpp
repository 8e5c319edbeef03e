#include "mpeg_ts_overview/contents/stream_description.h"

#include "mpeg_ts_overview/contents/codec_descriptors.h"
#include "mpeg_ts_overview/contents/utf8_text.h"
#include "mpeg_ts_overview/tables/descriptor_loop.h"
#include "mpeg_ts_overview/tables/stream_type.h"

#include <cstdint>

namespace {

constexpr uint8_t private_pes_type = 0x06;

constexpr uint8_t language_descriptor = 0x0A;
constexpr uint8_t vbi_teletext_descriptor = 0x46;
constexpr uint8_t teletext_descriptor = 0x56;
constexpr uint8_t subtitling_descriptor = 0x59;
constexpr uint8_t application_signalling_descriptor = 0x6F;
constexpr uint8_t extension_descriptor = 0x7F;
constexpr uint8_t data_component_descriptor = 0xFD; ///< ARIB STD-B10 6.2.20
constexpr uint16_t caption_component = 0x0008;      ///< ARIB STD-B10 Annex J

constexpr const char *video = "video";
constexpr const char *audio = "audio";
constexpr const char *subtitles = "subtitles";
constexpr const char *teletext = "teletext";
constexpr const char *data = "data";

struct known_code {
    uint8_t code;
    const char *name;
    const char *kind;
    std::optional<codec_family> family = {};
};

/// ISO/IEC 13818-1 Table 2-34, ATSC A/53-3 and those of AVS, SMPTE and others.
const known_code stream_types[] = {
    {0x01, "MPEG-1 video",                       video    },
    {0x02, "MPEG-2 video",                       video    },
    {0x03, "MPEG-1 audio",                       audio    },
    {0x04, "MPEG-2 audio",                       audio    },
    {0x05, "private sections",                   data     },
    {0x06, "private data",                       data     },
    {0x07, "MHEG",                               data     },
    {0x08, "DSM-CC",                             data     },
    {0x09, "H.222.1",                            data     },
    {0x0A, "DSM-CC multiprotocol encapsulation", data     },
    {0x0B, "DSM-CC U-N messages",                data     },
    {0x0C, "DSM-CC stream descriptors",          data     },
    {0x0D, "DSM-CC sections",                    data     },
    {0x0E, "auxiliary data",                     data     },
    {0x0F, "AAC",                                audio    },
    {0x10, "MPEG-4 video",                       video    },
    {0x11, "AAC (LATM)",                         audio    },
    {0x12, "MPEG-4 SL-packetized stream",        data     },
    {0x13, "MPEG-4 sections",                    data     },
    {0x14, "DSM-CC synchronized download",       data     },
    {0x15, "metadata",                           data     },
    {0x16, "metadata sections",                  data     },
    {0x1A, "MPEG-2 IPMP",                        data     },
    {0x1B, "H.264 video",                        video    },
    {0x1C, "MPEG-4 audio",                       audio    },
    {0x1D, "MPEG-4 timed text",                  subtitles},
    {0x1E, "auxiliary video",                    video    },
    {0x1F, "H.264 SVC video",                    video    },
    {0x20, "H.264 MVC video",                    video    },
    {0x21, "JPEG 2000 video",                    video    },
    {0x24, "HEVC video",                         video    },
    {0x25, "HEVC temporal sub-layer video",      video    },
    {0x2D, "MPEG-H 3D audio",                    audio    },
    {0x2E, "MPEG-H 3D audio",                    audio    },
    {0x33, "VVC video",                          video    },
    {0x42, "AVS video",                          video    },
    {0x81, "AC-3",                               audio    },
    {0x87, "E-AC-3",                             audio    },
    {0xD1, "Dirac video",                        video    },
    {0xD2, "AVS2 video",                         video    },
    {0xD4, "AVS3 video",                         video    },
    {0xEA, "VC-1 video",                         video    },
};

/// In streams registered as HDMV.
const known_code blu_ray_types[] = {
    {0x80,               "LPCM",         audio       },
    {0x82,               "DTS",          audio       },
    {0x83,               "Dolby TrueHD", audio       },
    {0x84,               "E-AC-3",       audio,        codec_family::ac3},
    {0x85,                  "DTS-HD",                             audio               },
    {0x86,                  "DTS-HD Master",                             audio},
    {0x90,                  "presentation graphics",                             subtitles       },
    {0x91,                  "interactive graphics",                             data},
    {0x92,                  "text subtitles",                             subtitles             },
    {0xA1,                  "E-AC-3",                             audio,   codec_family::ac3},
    {0xA2, "DTS-HD",               audio                     },
};

/// EN 300 468 6.1, in private PES packets.
const known_code private_descriptors[] = {
    {vbi_teletext_descriptor, "VBI teletext",  teletext },
    {teletext_descriptor,     "teletext",      teletext },
    {subtitling_descriptor,   "DVB subtitles", subtitles},
    {0x6A,                    "AC-3",          audio,     codec_family::ac3},
    {0x7A,                       "E-AC-3",                                   audio,              codec_family::ac3},
    {0x7B,      "DTS",                     audio             },
    {0x7C,                  "AAC",             audio,      codec_family::adts},
    {0x45,                  "VBI data",   data      },
};

/// EN 300 468 6.4.
const known_code extension_descriptors[] = {
    {0x0E, "DTS-HD",         audio    },
    {0x15, "AC-4",           audio    },
    {0x20, "TTML subtitles", subtitles},
};

struct known_format {
    char format_identifier[5];
    const char *name;
    const char *kind;
    std::optional<codec_family> family = {};
};

const known_format formats[] = {
    {"AC-3",             "AC-3", audio,   codec_family::ac3},
    {"EAC3",                  "E-AC-3",                   audio, codec_family::ac3},
    {"DTS1", "DTS",       audio        },
    {"DTS2",             "DTS",             audio      },
    {"DTS3",             "DTS",       audio  },
    {"Opus",             "Opus",             audio            },
    {"BSSD",             "SMPTE 302M audio",       audio},
    {"KLVA",             "KLV metadata",             data                  },
};

template <size_t count>
const known_code *find(const known_code (&codes)[count], uint8_t code)
{
    for (const known_code &known : codes)
        if (known.code == code) return &known;
    return nullptr;
}

bool is_caption_component(byte_range body)
{
    bit_reader in = body.reader();
    return in.has(2) && in.bits(16) == caption_component;
}

void take(stream_description &description, const known_code &known)
{
    description.name = known.name;
    description.kind = known.kind;
    description.family = known.family;
}

/// The first descriptor that tells what private PES packets carry.
void describe_private_data(byte_range ES_info, stream_description &description)
{
    descriptor_loop descriptors(ES_info);
    descriptor next;
    while (descriptors.next(next)) {
        const known_code *known = find(private_descriptors, next.tag);
        if (next.tag == extension_descriptor && next.body.size() >= 1)
            known = find(extension_descriptors, next.body.start[0]);
        if (known != nullptr) return take(description, *known);
        if (next.tag == data_component_descriptor && is_caption_component(next.body))
            return take(description, {next.tag, "ARIB captions", subtitles});
    }
    for (const known_format &format : formats)
        if (is_registered(ES_info, format.format_identifier))
            return take(description, {0, format.name, format.kind, format.family});
}

bool has_descriptor(byte_range ES_info, uint8_t tag)
{
    descriptor_loop descriptors(ES_info);
    descriptor next;
    while (descriptors.next(next))
        if (next.tag == tag) return true;
    return false;
}

/// Bytes of an entry of a descriptor whose entries begin with an ISO_639_language_code; 0 of others.
size_t language_entry_size(uint8_t tag)
{
    switch (tag) {
    case language_descriptor: // audio_type
        return 4;
    case vbi_teletext_descriptor: // teletext_type, teletext_magazine_number, teletext_page_number
    case teletext_descriptor:
        return 5;
    case subtitling_descriptor: // subtitling_type, composition_page_id, ancillary_page_id
        return 8;
    default:
        return 0;
    }
}

/// ISO/IEC 13818-1 2.6.18, EN 300 468 6.2.43, 6.2.41 and 6.2.47: each code once, in their order.
std::string languages_of(byte_range ES_info)
{
    std::string joined;
    descriptor_loop descriptors(ES_info);
    descriptor next;
    while (descriptors.next(next)) {
        const size_t size = language_entry_size(next.tag);
        bit_reader in = next.body.reader();
        while (size != 0 && in.has(size)) {
            const std::string language = latin_1_text(in.position(), in.position() + 3);
            in.skip(size);
            if (("," + joined + ",").find("," + language + ",") != std::string::npos) continue;
            joined += (joined.empty() ? "" : ",") + language;
        }
    }
    return joined;
}

} // namespace

stream_description describe_stream(const pmt_entry &stream, bool blu_ray_program)
{
    const uint8_t type = stream.stream_type;
    const bool blu_ray = blu_ray_program || is_registered(stream.ES_info, "HDMV");
    stream_description description;

    description.name = type >= 0x80 ? "user private" : "reserved";
    description.language = languages_of(stream.ES_info);
    if (nature_of(stream, blu_ray_program).splices) {
        description.name = "SCTE-35 cues";
        description.kind = "cues";
        return description;
    }
    if (const known_code *known = find(stream_types, type)) {
        take(description, *known);
        description.family = codec_family_of(type);
    } else if (const known_code *of_disc = blu_ray ? find(blu_ray_types, type) : nullptr) {
        take(description, *of_disc);
    }
    if (type == private_pes_type) describe_private_data(stream.ES_info, description);
    if (description.family) description.details = described_details(stream.ES_info, *description.family);
    if (type == private_sections_stream_type &&
        has_descriptor(stream.ES_info, application_signalling_descriptor))
        description.name = "application information";
    description.is_teletext =
        type == private_pes_type && (has_descriptor(stream.ES_info, teletext_descriptor) ||
                                     has_descriptor(stream.ES_info, vbi_teletext_descriptor));
    return description;
}
