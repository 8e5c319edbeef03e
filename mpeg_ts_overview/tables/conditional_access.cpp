#include "mpeg_ts_overview/tables/conditional_access.h"

#include "mpeg_ts_overview/tables/descriptor_loop.h"

namespace {

constexpr uint8_t ca_descriptor_tag = 0x09;

} // namespace

std::vector<ca_descriptor> read_ca_descriptors(byte_range loop)
{
    std::vector<ca_descriptor> found;
    descriptor_loop descriptors(loop);
    descriptor next;

    while (descriptors.next(next)) {
        bit_reader in = next.body.reader();
        if (next.tag != ca_descriptor_tag || !in.has(4)) continue;
        ca_descriptor ca;
        ca.CA_system_ID = static_cast<uint16_t>(in.bits(16));
        in.bits(3); // reserved
        ca.CA_PID = static_cast<uint16_t>(in.bits(13));
        found.push_back(ca);
    }
    return found;
}

std::vector<ca_descriptor> read_cat(const table_section &section)
{
    return read_ca_descriptors({section.body, section.body_fence});
}
