// What the tables say of the services of the stream itself: SDT, EN 300 468 5.2.3, and the virtual channel
// tables, ATSC A/65 6.3.
#pragma once

#include "mpeg_ts_overview/contents/dvb_text.h"
#include "mpeg_ts_overview/model/program_facts.h"
#include "mpeg_ts_overview/tables/sdt.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/tvct.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

/// Services of the SDT, and as many of virtual channel tables; what comes beyond is not kept.
constexpr size_t service_limit = 4096;

class service_list {
public:
    explicit service_list(dvb_text_converter &converter) : texts(converter) {}

    /// Takes any current section, with a right CRC_32, of a table on its own PID; looks at SDT actual, TVCT
    /// and CVCT. What came last of a service stands.
    void on_section(const table_section &section);

    /// Adds what is known of the service of the program. Where a virtual channel has it, that goes before.
    void add_to(program_facts &program) const;

    /// Of the last SDT actual.
    std::optional<uint16_t> original_network_id() const { return network_id; }

    /// Receptions of services beyond the limit.
    uint64_t not_kept() const { return dropped; }

private:
    struct service {
        uint32_t crc_32 = 0; ///< of the section that said so
        std::optional<std::string> service_name;
        std::optional<std::string> provider_name;
        std::optional<service_kind> service_type;
        std::optional<std::string> channel;
        std::optional<unsigned> running_status;
        std::optional<unsigned> free_CA_mode;
    };
    using services = std::unordered_map<uint16_t, service>;

    void on_sdt(const table_section &section);
    void on_virtual_channels(const table_section &section);
    service service_of(const sdt_service &description);

    /// The service when the section says something new of it, else null.
    service *changed(services &among, uint16_t number, const table_section &section);

    dvb_text_converter &texts;
    services described;        ///< by service_id
    services virtual_channels; ///< by program_number
    std::optional<uint16_t> network_id;
    uint64_t dropped = 0;
};
