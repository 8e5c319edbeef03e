// A program of the recording: its PIDs, its service, its streams.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct ca_system {
    uint16_t id = 0; ///< CA_system_ID
    uint16_t pid = 0;
};

struct program_stream {
    uint16_t pid = 0;
    bool absent = false; ///< no packet of the PID
    uint8_t stream_type = 0;
    std::string name;     ///< what it is: "MPEG-2 video"
    std::string kind;     ///< "video", "audio", "teletext", "subtitles", "cues", "data"
    std::string language; ///< ISO 639-2, several joined by ","; empty when not said
    std::string details;  ///< of the first header: "1280x720 25p"; empty when none was found
    std::optional<uint64_t> mean_bps;
    std::optional<double> share; ///< of all packets with a sync byte, 0 to 1
};

struct service_kind {
    uint8_t code = 0; ///< service_type
    std::string name;
};

struct program_facts {
    uint16_t number = 0;
    uint16_t pmt_pid = 0;
    std::optional<uint16_t> pcr_pid; ///< none without a PMT
    bool absent = false;             ///< no packet on the PMT PID
    std::optional<std::string> service_name;
    std::optional<std::string> provider_name;
    std::optional<service_kind> service_type;
    std::optional<std::string> channel; ///< "major.minor" or the logical channel number
    std::optional<unsigned> running_status;
    std::optional<unsigned> free_CA_mode;
    std::vector<ca_system> ca_systems;
    std::vector<program_stream> streams;
};
