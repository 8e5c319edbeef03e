#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/tables/stream_type.h"

#include <map>

struct stream_type : report_test {};

namespace {

const std::map<unsigned, std::string> names = {
    {0x00, "ITU-T ISO/IEC Reserved"                                                                    },
    {0x01, "ISO/IEC 11172-2 Video (MPEG-1)"                                                            },
    {0x02, "ISO/IEC 13818-2 Video (MPEG-2)"                                                            },
    {0x03, "ISO/IEC 11172-3 Audio (MPEG)"                                                              },
    {0x04, "ISO/IEC 13818-3 Audio (MPEG)"                                                              },
    {0x05, "ISO/IEC 13818-1 private_section"                                                           },
    {0x06, "ISO/IEC 13818-1 PES packets containing private data"                                       },
    {0x07, "ISO/IEC 13522 MHEG"                                                                        },
    {0x08, "ISO/IEC 13818-1 Annex A DSM CC"                                                            },
    {0x09, "ITU-T Rec. H.222.1"                                                                        },
    {0x0A, "ISO/IEC 13818-6 type A"                                                                    },
    {0x0B, "ISO/IEC 13818-6 type B"                                                                    },
    {0x0C, "ISO/IEC 13818-6 type C"                                                                    },
    {0x0D, "ISO/IEC 13818-6 type D"                                                                    },
    {0x0E, "ISO/IEC 13818-1 auxiliary"                                                                 },
    {0x0F, "ISO/IEC 13818-7 Audio with ADTS transport syntax"                                          },
    {0x10, "ISO/IEC 14496-2 Visual"                                                                    },
    {0x11, "ISO/IEC 14496-3 Audio with the LATM transport syntax as defined in ISO/IEC 14496-3 / AMD 1"},
    {0x12, "ISO/IEC 14496-1 SL-packetized stream or FlexMux stream carried in PES packets"             },
    {0x13, "ISO/IEC 14496-1 SL-packetized stream or FlexMux stream carried in ISO/IEC14496_sections"   },
    {0x14, "ISO/IEC 13818-6 Synchronized Download Protocol"                                            },
    {0x1B, "ITU-T Rec. H.264"                                                                          },
    {0x21, "ISO/IEC 15444-1 (JPEG 2000)"                                                               },
    {0x24, "ITU-T Rec. H.265"                                                                          },
};

const std::map<unsigned, std::string> atsc_names = {
    {0x81, "Dolby Digital AC-3"},
    {0x86, "SCTE-35"           },
};

std::string expected_name(unsigned value, bool with_atsc_names)
{
    if (with_atsc_names && atsc_names.count(value) != 0) return atsc_names.at(value);
    return names.count(value) != 0 ? names.at(value) : "?";
}

} // namespace

TEST_F(stream_type, every_value_has_its_name_or_a_question_mark)
{
    settings.atsc_mode = 1;
    for (unsigned value = 0; value <= 0xFF; ++value)
        EXPECT_EQ(stream_type_name(value), expected_name(value, true)) << value;
}

TEST_F(stream_type, the_atsc_names_are_given_while_the_mode_is_unknown)
{
    settings.atsc_mode = -1;
    for (unsigned value = 0; value <= 0xFF; ++value)
        EXPECT_EQ(stream_type_name(value), expected_name(value, true)) << value;
}

TEST_F(stream_type, the_atsc_names_are_not_given_when_the_mode_is_off)
{
    settings.atsc_mode = 0;
    for (unsigned value = 0; value <= 0xFF; ++value)
        EXPECT_EQ(stream_type_name(value), expected_name(value, false)) << value;
}
