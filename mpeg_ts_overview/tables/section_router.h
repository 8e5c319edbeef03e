// From packets to sections: one collector for each PID whose sections are collected.
#pragma once

#include "mpeg12_ts/section_collector.h"
#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/model/pid_array.h"
#include "mpeg_ts_overview/model/sequence.h"
#include "mpeg_ts_overview/tables/pid_directory.h"
#include "mpeg_ts_overview/tables/section_consumer.h"

#include <memory>
#include <vector>

class section_router {
public:
    explicit section_router(const pid_directory &uses) : directory(uses) {}

    /// Takes any packet of a PID that the directory collects, and hands over the sections that end in it.
    void on_packet(const ts_packet &packet, const packet_sequence &sequence, section_consumer &consumer);

    /// What was begun before is not gone on with.
    void on_sync_loss();

    /// True when a packet of the PID came while its sections were collected.
    bool has_seen(uint16_t pid) const { return collectors[pid] != nullptr; }

    uint64_t crc_errors(uint16_t pid) const;
    uint64_t incomplete_sections(uint16_t pid) const;

private:
    struct pid_collector {
        uint16_t pid = 0;
        mpeg_ts_section_collector sections;
        moment begun; ///< of the section in hand
        uint32_t collection = 0;
        uint64_t crc_errors = 0;
    };

    pid_collector &collector_of(uint16_t pid);
    void take_sections(pid_collector &collector, const ts_packet &packet, section_consumer &consumer);
    void begin_section(pid_collector &collector, const ts_packet &packet, section_consumer &consumer);

    const pid_directory &directory;
    pid_array<std::unique_ptr<pid_collector>> collectors;
    std::vector<pid_collector *> in_use; ///< those that there are
};
