#include "mpeg_ts_overview/contents/segmentation.h"

#include "mpeg12_ts/bit_reader.h"

#include <algorithm>
#include <utility>

namespace {

struct type_name {
    uint8_t segmentation_type_id;
    const char *name;
};

// Table 23.
constexpr type_name type_names[] = {
    {0x00, "Not Indicated"                                  },
    {0x01, "Content Identification"                         },
    {0x02, "Private"                                        },
    {0x10, "Program Start"                                  },
    {0x11, "Program End"                                    },
    {0x12, "Program Early Termination"                      },
    {0x13, "Program Breakaway"                              },
    {0x14, "Program Resumption"                             },
    {0x15, "Program Runover Planned"                        },
    {0x16, "Program Runover Unplanned"                      },
    {0x17, "Program Overlap Start"                          },
    {0x18, "Program Blackout Override"                      },
    {0x19, "Program Join"                                   },
    {0x1A, "Program Immediate Resumption"                   },
    {0x20, "Chapter Start"                                  },
    {0x21, "Chapter End"                                    },
    {0x22, "Break Start"                                    },
    {0x23, "Break End"                                      },
    {0x24, "Opening Credit Start"                           },
    {0x25, "Opening Credit End"                             },
    {0x26, "Closing Credit Start"                           },
    {0x27, "Closing Credit End"                             },
    {0x30, "Provider Advertisement Start"                   },
    {0x31, "Provider Advertisement End"                     },
    {0x32, "Distributor Advertisement Start"                },
    {0x33, "Distributor Advertisement End"                  },
    {0x34, "Provider Placement Opportunity Start"           },
    {0x35, "Provider Placement Opportunity End"             },
    {0x36, "Distributor Placement Opportunity Start"        },
    {0x37, "Distributor Placement Opportunity End"          },
    {0x38, "Provider Overlay Placement Opportunity Start"   },
    {0x39, "Provider Overlay Placement Opportunity End"     },
    {0x3A, "Distributor Overlay Placement Opportunity Start"},
    {0x3B, "Distributor Overlay Placement Opportunity End"  },
    {0x3C, "Provider Promo Start"                           },
    {0x3D, "Provider Promo End"                             },
    {0x3E, "Distributor Promo Start"                        },
    {0x3F, "Distributor Promo End"                          },
    {0x40, "Unscheduled Event Start"                        },
    {0x41, "Unscheduled Event End"                          },
    {0x42, "Alternate Content Opportunity Start"            },
    {0x43, "Alternate Content Opportunity End"              },
    {0x44, "Provider Ad Block Start"                        },
    {0x45, "Provider Ad Block End"                          },
    {0x46, "Distributor Ad Block Start"                     },
    {0x47, "Distributor Ad Block End"                       },
    {0x50, "Network Start"                                  },
    {0x51, "Network End"                                    },
};

const char *name_of_type(uint8_t segmentation_type_id)
{
    for (const type_name &entry : type_names)
        if (entry.segmentation_type_id == segmentation_type_id) return entry.name;
    return "reserved";
}

// Values of segmentation_upid_type whose upid is text, table 22.
constexpr unsigned ISCI = 0x02;
constexpr unsigned Ad_ID = 0x03;
constexpr unsigned TID = 0x07;
constexpr unsigned ADI = 0x09;
constexpr unsigned ADS_information = 0x0E;
constexpr unsigned URI = 0x0F;

bool is_text(unsigned segmentation_upid_type)
{
    constexpr unsigned types[] = {ISCI, Ad_ID, TID, ADI, ADS_information, URI};
    return std::find(std::begin(types), std::end(types), segmentation_upid_type) != std::end(types);
}

bool is_printable(uint8_t byte)
{
    return byte >= 0x20 && byte <= 0x7E;
}

/// Text where the type says so and the bytes agree, else two hexadecimal digits each.
std::string upid_text(unsigned segmentation_upid_type, const uint8_t *start, const uint8_t *fence)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text;

    if (is_text(segmentation_upid_type) && std::all_of(start, fence, is_printable)) return {start, fence};
    for (; start < fence; ++start) {
        text += digits[*start >> 4];
        text += digits[*start & 0xF];
    }
    return text;
}

} // namespace

bool read_segmentation(const uint8_t *start, const uint8_t *fence, cue &message)
{
    bit_reader in(start, fence);
    cue_segmentation segmentation;

    in.bits(32); // segmentation_event_id
    const bool segmentation_event_cancel_indicator = in.bits(1) != 0;
    in.bits(7); // segmentation_event_id_compliance_indicator, reserved
    if (segmentation_event_cancel_indicator) return true;
    const bool program_segmentation_flag = in.bits(1) != 0;
    const bool segmentation_duration_flag = in.bits(1) != 0;
    in.bits(1); // delivery_not_restricted_flag
    in.bits(5); // the restrictions, or reserved
    if (!program_segmentation_flag) {
        const unsigned component_count = in.bits(8);
        in.skip(size_t{6} * component_count); // component_tag, reserved, pts_offset
    }
    if (segmentation_duration_flag) in.bits64(40); // segmentation_duration
    const unsigned segmentation_upid_type = in.bits(8);
    const unsigned segmentation_upid_length = in.bits(8);
    if (!in.has(segmentation_upid_length + size_t{1})) return false;
    const uint8_t *const upid = in.position();
    in.skip(segmentation_upid_length);
    segmentation.type = static_cast<uint8_t>(in.bits(8)); // segmentation_type_id
    segmentation.name = name_of_type(segmentation.type);
    segmentation.upid = upid_text(segmentation_upid_type, upid, upid + segmentation_upid_length);
    message.segmentations.push_back(std::move(segmentation));
    return false;
}
