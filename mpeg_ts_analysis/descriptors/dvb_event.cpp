#include "mpeg_ts_analysis/descriptors/dvb_event.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/report/invariant.h"

namespace {

/// Room for the longest text of a descriptor and its zero.
constexpr unsigned text_size = 256;

constexpr const char *content_level_1_names[16] = {"undefined content",
                                                   "Movie/Drama",
                                                   "News/Current affairs",
                                                   "Show/Game show",
                                                   "Sports",
                                                   "Children's/Youth programmes",
                                                   "Music/Ballet/Dance",
                                                   "Arts/Culture (without music)",
                                                   "Social/Political issues/Economics",
                                                   "Education/Science/Factual topics",
                                                   "Leisure hobbies",
                                                   "Special characteristics",
                                                   nullptr,
                                                   nullptr,
                                                   nullptr,
                                                   "User defined content"};

/// content_nibble_level_1 * 16 + content_nibble_level_2.
// kept: levels 4, 6, 7, 9, 10 and 15 have no second level, not even "user defined".
constexpr named_value content_level_2_names[] = {
    {0x10, "general movie/drama"                               },
    {0x11, "detective/thriller"                                },
    {0x12, "adventure/western/war"                             },
    {0x13, "science fiction/fantasy/horror"                    },
    {0x14, "comedy"                                            },
    {0x15, "soap/melodrama/folkloric"                          },
    {0x16, "romance"                                           },
    {0x17, "serious/classical/religious/historical movie/drama"},
    {0x18, "adult movie/drama"                                 },
    {0x1F, "user defined"                                      },
    {0x20, "news/current affairs (general)"                    },
    {0x21, "news/weather report"                               },
    {0x22, "news magazine"                                     },
    {0x23, "documentary"                                       },
    {0x24, "discussion/interview/debate"                       },
    {0x2F, "user defined"                                      },
    {0x30, "show/game show (general)"                          },
    {0x31, "game show/quiz/contest"                            },
    {0x32, "variety show"                                      },
    {0x33, "talk show"                                         },
    {0x3F, "user defined"                                      },
    {0x50, "children's/youth programmes (general)"             },
    {0x51, "pre-school children's programmes"                  },
    {0x52, "entertainment programmes for 6 to 14"              },
    {0x53, "entertainment programmes for 10 to 16"             },
    {0x54, "informational/educational/school programmes"       },
    {0x55, "cartoons/puppets"                                  },
    {0x5F, "user defined"                                      },
    {0x80, "social/political issues/economics (general)"       },
    {0x81, "magazines/reports/documentary"                     },
    {0x82, "economics/social advisory"                         },
    {0x8F, "user defined"                                      },
    {0xB0, "original language"                                 },
    {0xB1, "black and white"                                   },
    {0xB2, "unpublished"                                       },
    {0xB3, "live broadcast"                                    },
    {0xBF, "user defined"                                      },
};
static_assert(is_ascending(content_level_2_names));

} // namespace

void desc_dvb_A38_6_2_9_content_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        content_descriptor() [DVB A38 6.2.9]\n");
    while (in.has(2)) {
        const unsigned content_nibble_level_1 = in.bits(4);
        const unsigned content_nibble_level_2 = in.bits(4);
        const unsigned user_byte = in.bits(8);
        show("            content_nibble_level_1=%u content_nibble_level_2=%u user_byte=0x%02x\n",
             content_nibble_level_1, content_nibble_level_2, user_byte);
        show("                This is a %s, a %s\n",
             name_of(content_level_1_names, content_nibble_level_1, "?"),
             name_of(content_level_2_names, content_nibble_level_1 * 16 + content_nibble_level_2, "?"));
    }
}

void desc_dvb_A38_6_2_28_parental_rating_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        parental_rating_descriptor() [DVB A38 6.2.28]\n");
    while (in.has(4)) {
        char country_code[4];
        in.text(country_code);
        const unsigned rating = in.bits(8);
        show("            country=%s rating=0x%02x\n", country_code, rating);
        if (rating >= 1 && rating <= 15) show("                minimum age: %u years or older\n", rating + 3);
    }
}

namespace {

void short_event_overrun()
{
    report_line("!!! One or more fields of the short event descriptor extend past the descriptor");
}

} // namespace

void desc_dvb_A38_6_2_37_short_event_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);
    char text[text_size];

    show("        short_event_descriptor() [DVB A38 6.2.37]\n");
    if (!in.has(3)) return short_event_overrun();
    char ISO_639_language_code[4];
    in.text(ISO_639_language_code);
    show("            ISO_639_language_code=%s\n", ISO_639_language_code);

    if (!in.has(1)) return short_event_overrun();
    const unsigned event_name_length = in.bits(8);
    if (!in.has(event_name_length)) return short_event_overrun();
    in.text(text, event_name_length);
    show("            event_name=%s\n", text);

    if (!in.has(1)) return short_event_overrun();
    const unsigned text_length = in.bits(8);
    if (!in.has(text_length)) return short_event_overrun();
    in.text(text, text_length);
    show("            text=%s\n", text);
}

namespace {

/// The items area. An item that overruns it, or the area's end where a length is due, ends the walk.
void extended_event_items(bit_reader in)
{
    char text[text_size];

    report_line("!!! WARNING: Untested case: extended_event_descriptor() with item description+item entries");
    while (in.has(1)) {
        const unsigned item_description_length = in.bits(8);
        if (!in.has(item_description_length)) {
            report_printf(
                "!!! extended_event_descriptor() item_description_length is too long. length=%u avail=%u\n",
                item_description_length, static_cast<unsigned>(in.bytes_left()));
            return;
        }
        in.text(text, item_description_length);
        show("            item:\n");
        show("                item_description=%s\n", text);

        if (!in.has(1)) return;
        const unsigned item_length = in.bits(8);
        if (!in.has(item_length)) {
            report_printf("!!! extended_event_descriptor() item_length is too long. length=%u avail=%u\n",
                          item_length, static_cast<unsigned>(in.bytes_left()));
            return;
        }
        in.text(text, item_length);
        show("                item=%s\n", text);
    }
}

} // namespace

void desc_etsi_en_300_468_2010_04_6_2_15_extended_event_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);
    char text[text_size];

    if (!descriptors_are_shown()) {
        // kept: without its lines the descriptor counts as not understood.
        if (length != 0)
            report_printf("!!! WARNING: extended_event_descriptor() %u bytes leftover/not understood\n",
                          length);
        return;
    }
    show("        extended_event_descriptor() [ETSI EN 300 468 (2010-04) 6.2.15]\n");
    if (!in.has(5)) return;
    const uint8_t *const f = body + length;
    const uint8_t *const p = body + 5;
    invariant(p <= f);
    show("            descriptor_number=%u\n", in.bits(4));
    show("            last_descriptor_number=%u\n", in.bits(4));
    char ISO_639_language_code[4];
    in.text(ISO_639_language_code);
    show("            ISO_639_language_code=%s\n", ISO_639_language_code);
    const unsigned length_of_items = in.bits(8);
    show("            length_of_items=%u\n", length_of_items);
    if (!in.has(1)) return;

    if (!in.has(length_of_items)) {
        report_printf("!!! extended_event_descriptor() length_of_items is too long. length=%u avail=%u\n",
                      length_of_items, static_cast<unsigned>(in.bytes_left()));
        return;
    }
    if (length_of_items != 0) extended_event_items(bit_reader(p, p + length_of_items));
    in.skip(length_of_items);

    if (!in.has(1)) return;
    const unsigned text_length = in.bits(8);
    if (!in.has(text_length)) {
        report_printf("!!! extended_event_descriptor() text_length is too long. length=%u avail=%u\n",
                      text_length, static_cast<unsigned>(in.bytes_left()));
        return;
    }
    in.text(text, text_length);
    show("            text=%s\n", text);
    if (in.has(1))
        report_printf("!!! WARNING: extended_event_descriptor() %u bytes leftover/not understood\n",
                      static_cast<unsigned>(in.bytes_left()));
}

namespace {

/// stream_content * 256 + component_type.
constexpr named_value component_names[] = {
    {0x101, "MPEG-2 video, 4:3 aspect ratio, 25 Hz"                                                },
    {0x102, "MPEG-2 video, 16:9 aspect ratio with pan vectors, 25 Hz"                              },
    {0x103, "MPEG-2 video, 16:9 aspect ratio without pan vectors, 25 Hz"                           },
    {0x104, "MPEG-2 video, > 16:9 aspect ratio, 25 Hz"                                             },
    {0x105, "MPEG-2 video, 4:3 aspect ratio, 30 Hz"                                                },
    {0x106, "MPEG-2 video, 16:9 aspect ratio with pan vectors, 30 Hz"                              },
    {0x107, "MPEG-2 video, 16:9 aspect ratio without pan vectors, 30 Hz"                           },
    {0x108, "MPEG-2 video, > 16:9 aspect ratio, 30 Hz"                                             },
    {0x109, "MPEG-2 high definition video, 4:3 aspect ratio, 25 Hz"                                },
    {0x10A, "MPEG-2 high definition video, 16:9 aspect ratio with pan vectors, 25 Hz"              },
    {0x10B, "MPEG-2 high definition video, 16:9 aspect ratio without pan vectors, 25 Hz"           },
    {0x10C, "MPEG-2 high definition video, > 16:9 aspect ratio, 25 Hz"                             },
    {0x10D, "MPEG-2 high definition video, 4:3 aspect ratio, 30 Hz"                                },
    {0x10E, "MPEG-2 high definition video, 16:9 aspect ratio with pan vectors, 30 Hz"              },
    {0x10F, "MPEG-2 high definition video, 16:9 aspect ratio without pan vectors, 30 Hz"           },
    {0x110, "MPEG-2 high definition video, > 16:9 aspect ratio, 30 Hz"                             },
    {0x201, "MPEG-1 Layer 2 audio, single mono channel"                                            },
    {0x202, "MPEG-1 Layer 2 audio, dual mono channel"                                              },
    {0x203, "MPEG-1 Layer 2 audio, stereo (2 channel)"                                             },
    {0x204, "MPEG-1 Layer 2 audio, multi-lingual, multi-channel"                                   },
    {0x205, "MPEG-1 Layer 2 audio, surround sound"                                                 },
    {0x240, "MPEG-1 Layer 2 audio description for the visually impaired"                           },
    {0x241, "MPEG-1 Layer 2 audio for the hard of hearing"                                         },
    {0x242, "receiver-mixed supplementary audio as per annex E of TS 101 154 [9]"                  },
    {0x247, "MPEG-1 Layer 2 audio, receiver mix audio description as per annex E of TS 101 154 [9]"},
    {0x248, "MPEG-1 Layer 2 audio, broadcaster mix audio description"                              },
};
static_assert(is_ascending(component_names));

} // namespace

void desc_etsi_en_300_468_2010_04_6_2_8_component_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        component_descriptor() [ETSI EN 300 468 (2010-04) 6.2.8]\n");
    if (!in.has(6)) return;
    const uint8_t *const f = body + length;
    const uint8_t *const p = body + 6;
    invariant(p <= f);
    show("            reserved_future_use=%u\n", in.bits(4));
    const unsigned stream_content = in.bits(4);
    const unsigned component_type = in.bits(8);
    // kept: "(null)" stands for a component that has no description.
    show("            stream_content=0x%1x component_type=0x%02x (%s)\n", stream_content, component_type,
         name_of(component_names, stream_content * 256 + component_type, "(null)"));
    show("            component_tag=0x%02x\n", in.bits(8));
    char ISO_639_language_code[4];
    in.text(ISO_639_language_code);
    show("            ISO_639_language_code=%s\n", ISO_639_language_code);
}

namespace {

constexpr const char *crid_type_names[] = {
    "No type defined", "CRID references the item that this event is an instance of",
    "CRID references a series that this event belongs to", "CRID references a recommendation"};
constexpr const char *crid_location_names[] = {"Carried within this descriptor",
                                               "Carried in Content Identifier Table (CIT)"};

} // namespace

void desc_etsi_tr_102_323_12_1_4_content_identifier_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);
    char crid[text_size];

    show("        content_identifier_descriptor() [ETSI TR 102 323 12.1.4]\n");
    while (in.has(1)) {
        const unsigned crid_type = in.bits(6);
        const unsigned crid_location = in.bits(2);
        show("            crid_type=0x%02x [%s] crid_location=%u [%s]\n", crid_type,
             name_of(crid_type_names, crid_type, "?"), crid_location,
             name_of(crid_location_names, crid_location, "?"));
        if (crid_location == 0) {
            if (!in.has(1)) return;
            const unsigned crid_length = in.bits(8);
            if (!in.has(crid_length)) return;
            in.text(crid, crid_length);
            show("            CRID: %s\n", crid);
        } else if (crid_location == 1) {
            if (!in.has(2)) return;
            show("            CRID reference: 0x%04x\n", in.bits(16));
        }
    }
}

void desc_etsi_tr_102_323_6_3_3_default_authority_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);
    char default_authority[text_size];

    in.text(default_authority, length);
    show("        default_authority_descriptor() [ETSI TR 102 323 6.3.3]\n");
    show("            default_authority=%s\n", default_authority);
}
