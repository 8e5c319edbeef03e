#include "mpeg_ts_overview/tables/table_name.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

namespace {

struct named_range {
    uint8_t first;
    uint8_t last;
    const char *name;
};

/// ISO/IEC 13818-1 Table 2-31, ISO/IEC 13818-6, EN 300 468 Table 2, ATSC A/65 Table 4.1, ARIB STD-B10,
/// SCTE 35.
constexpr named_range names[] = {
    {0x00, 0x00, "PAT"               },
    {0x01, 0x01, "CAT"               },
    {0x02, 0x02, "PMT"               },
    {0x03, 0x03, "TSDT"              },
    {0x3A, 0x3F, "DSM-CC"            },
    {0x40, 0x40, "NIT"               },
    {0x41, 0x41, "NIT other"         },
    {0x42, 0x42, "SDT"               },
    {0x46, 0x46, "SDT other"         },
    {0x4A, 0x4A, "BAT"               },
    {0x4B, 0x4B, "UNT"               },
    {0x4C, 0x4C, "INT"               },
    {0x4E, 0x4E, "EIT p/f"           },
    {0x4F, 0x4F, "EIT p/f other"     },
    {0x50, 0x5F, "EIT schedule"      },
    {0x60, 0x6F, "EIT schedule other"},
    {0x70, 0x70, "TDT"               },
    {0x71, 0x71, "RST"               },
    {0x72, 0x72, "ST"                },
    {0x73, 0x73, "TOT"               },
    {0x74, 0x74, "AIT"               },
    {0x7E, 0x7E, "DIT"               },
    {0x7F, 0x7F, "SIT"               },
    {0x80, 0x8F, "CA message"        },
    {0xC4, 0xC4, "BIT"               },
    {0xC7, 0xC7, "MGT"               },
    {0xC8, 0xC8, "TVCT"              },
    {0xC9, 0xC9, "CVCT"              },
    {0xCA, 0xCA, "RRT"               },
    {0xCB, 0xCB, "ATSC EIT"          },
    {0xCC, 0xCC, "ETT"               },
    {0xCD, 0xCD, "STT"               },
    {0xD3, 0xD3, "DCCT"              },
    {0xD4, 0xD4, "DCCSCT"            },
    {0xFC, 0xFC, "splice information"},
};

} // namespace

std::string table_name(uint8_t table_id)
{
    const auto holds = [&](const named_range &range) {
        return table_id >= range.first && table_id <= range.last;
    };
    const auto found = std::find_if(std::begin(names), std::end(names), holds);
    return found != std::end(names) ? found->name : fmt::format("table 0x{:02X}", table_id);
}
