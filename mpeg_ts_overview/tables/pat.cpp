#include "mpeg_ts_overview/tables/pat.h"

#include "mpeg12_ts/bit_reader.h"

std::vector<pat_entry> read_pat(const table_section &section)
{
    std::vector<pat_entry> entries;
    bit_reader in(section.body, section.body_fence);

    entries.reserve(in.bytes_left() / 4);
    while (in.has(4)) {
        pat_entry entry;
        entry.program_number = static_cast<uint16_t>(in.bits(16));
        in.bits(3); // reserved
        entry.PID = static_cast<uint16_t>(in.bits(13));
        entries.push_back(entry);
    }
    return entries;
}
