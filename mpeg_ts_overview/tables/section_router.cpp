#include "mpeg_ts_overview/tables/section_router.h"

namespace {

/// The section as the tables get it: with moments instead of tags.
table_section section_of(const mpeg_ts_section &from, const ts_packet &packet, const moment &begun_before)
{
    table_section section;

    section.pid = packet.pid;
    section.header = from.header;
    section.start = from.start;
    section.fence = from.fence;
    section.body = from.body;
    section.body_fence = from.body_fence;
    section.crc_32 = from.CRC_32;
    section.begun = from.begun == packet.at.packet ? packet.at : begun_before;
    section.at = packet.at;
    return section;
}

} // namespace

section_router::pid_collector &section_router::collector_of(uint16_t pid)
{
    std::unique_ptr<pid_collector> &collector = collectors[pid];
    if (!collector) {
        collector = std::make_unique<pid_collector>();
        collector->pid = pid;
        in_use.push_back(collector.get());
    }
    const uint32_t collection = directory.collections_of(pid);
    if (collector->collection != collection) collector->sections.held = 0;
    collector->collection = collection;
    return *collector;
}

void section_router::on_packet(const ts_packet &packet, const packet_sequence &sequence,
                               section_consumer &consumer)
{
    if (sequence.duplicate) return;
    pid_collector &collector = collector_of(packet.pid);
    const bool scrambled = packet.transport_scrambling_control != 0;

    if (packet.transport_error_indicator || scrambled || sequence.broken)
        mpeg_ts_section_collector_drop(&collector.sections);
    if (packet.transport_error_indicator) return;
    if (scrambled)
        consumer.on_scrambled_packet(packet.pid, packet.at);
    else
        take_sections(collector, packet, consumer);
}

void section_router::take_sections(pid_collector &collector, const ts_packet &packet,
                                   section_consumer &consumer)
{
    mpeg_ts_section_collector &sections = collector.sections;
    mpeg_ts_section found;

    mpeg_ts_section_collector_packet(&sections, packet.payload, packet.fence,
                                     packet.payload_unit_start_indicator, packet.at.packet);
    while (mpeg_ts_section_collector_next(&sections, &found)) {
        if (!directory.collects(packet.pid, found.header.table_id)) continue;
        const table_section section = section_of(found, packet, collector.begun);
        if (found.CRC_error) {
            ++collector.crc_errors;
            consumer.on_bad_section(section);
        } else {
            consumer.on_section(section);
        }
    }
    if (sections.held == 0) return;
    if (!directory.collects(packet.pid, sections.storage[0]))
        sections.held = 0;
    else if (sections.begun == packet.at.packet)
        begin_section(collector, packet, consumer);
}

void section_router::begin_section(pid_collector &collector, const ts_packet &packet,
                                   section_consumer &consumer)
{
    mpeg_ts_section begun;

    collector.begun = packet.at;
    if (mpeg_ts_section_collector_in_hand(&collector.sections, &begun))
        consumer.on_section_begun(section_of(begun, packet, collector.begun));
}

void section_router::on_sync_loss()
{
    for (pid_collector *collector : in_use) {
        const bool goes_on = directory.collects(collector->pid) &&
                             collector->collection == directory.collections_of(collector->pid);
        if (!goes_on) collector->sections.held = 0;
        mpeg_ts_section_collector_drop(&collector->sections);
    }
}

uint64_t section_router::crc_errors(uint16_t pid) const
{
    return collectors[pid] ? collectors[pid]->crc_errors : 0;
}

uint64_t section_router::incomplete_sections(uint16_t pid) const
{
    return collectors[pid] ? collectors[pid]->sections.incomplete : 0;
}
