// What the actual NIT says, EN 300 468 5.2.1: the network's name, the networks that transport streams come
// from, and the logical channel numbers of their services.
#pragma once

#include "mpeg_ts_overview/contents/dvb_text.h"
#include "mpeg_ts_overview/tables/nit.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>

/// Channel numbers beyond these are not kept.
constexpr size_t channel_number_limit = 16384;

class network_information {
public:
    explicit network_information(dvb_text_converter &converter) : texts(converter) {}

    /// Takes any current section, with a right CRC_32, of a table on its own PID; looks at the actual NIT.
    void on_section(const table_section &section);

    const std::optional<std::string> &network_name() const { return name; }

    /// The original_network_id of the transport stream.
    std::optional<uint16_t> network_of(uint16_t transport_stream_id) const;

    /// The logical channel number of a service, 0 to 1023.
    std::optional<unsigned> channel_of(uint16_t original_network_id, uint16_t transport_stream_id,
                                       uint16_t service_id) const;

    /// Receptions of channel numbers beyond the limit.
    uint64_t not_kept() const { return dropped; }

private:
    void look_at_name(byte_range network_descriptors);
    void look_at_channels(const nit_transport_stream &stream);

    dvb_text_converter &texts;
    std::optional<std::string> name;
    std::unordered_map<uint16_t, uint16_t> networks; ///< by transport_stream_id
    std::map<uint64_t, uint16_t> channels;           ///< by network, transport stream and service
    uint64_t dropped = 0;
};
