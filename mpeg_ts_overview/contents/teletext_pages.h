// The teletext pages of a recording, ETSI EN 300 706: of each page and subpage the last complete reception.
#pragma once

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_overview/contents/teletext_characters.h"
#include "mpeg_ts_overview/contents/teletext_units.h"
#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/model/sequence.h"
#include "mpeg_ts_overview/model/teletext_facts.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

constexpr size_t teletext_page_limit = 2000;

/// PIDs with teletext beyond these are not looked at.
constexpr size_t teletext_pid_limit = 256;

/// A page is received from its header to the next header of its magazine, in serial mode (C11) to that of any
/// magazine; what packet loss or the end of the recording cuts short does not count. Pages with a hexadecimal
/// digit are data for receivers, or fill time: they end a reception and are none. Rows that do not come stay
/// what they were when the page was complete last, unless its header erases the page (C4).
class teletext_pages {
public:
    /// Takes every packet of the PIDs that carry teletext.
    void on_packet(const ts_packet &packet, const packet_sequence &sequence);

    /// Sync was lost: every reception in hand ends there.
    void on_sync_loss();

    /// The PID carries something else from here on.
    void on_other_contents(uint16_t pid);

    /// The pages by PID, page and subcode; not_kept counts receptions.
    teletext_facts finish() const;

    /// PIDs with teletext beyond the limit.
    uint64_t pids_not_kept() const { return dropped_pids; }

private:
    using page_rows = std::array<teletext_row, teletext_row_count>;

    /// What is received of a magazine.
    struct reception {
        bool in_hand = false;
        bool serial = false; ///< C11
        bool erase = false;  ///< C4
        unsigned page = 0;
        unsigned subcode = 0;
        unsigned national_option = 0;
        moment at;             ///< of its header
        uint32_t received = 0; ///< a bit each row
        page_rows rows;
    };
    static constexpr unsigned magazine_count = 8;
    struct service {
        uint16_t pid = 0;
        teletext_unit_reader units;
        std::array<reception, magazine_count> magazines;
    };
    struct known_page {
        teletext_page facts; ///< without texts
        page_rows rows;
    };

    service *service_of(uint16_t pid);
    static void drop(service &from);
    void take_unit(service &to, const uint8_t *unit, const moment &at);
    void take_header(service &to, unsigned magazine, const uint8_t *block, const moment &at);
    void complete(uint16_t pid, reception &received);
    known_page *page_of(uint16_t pid, const reception &received);

    /// 1 + place in services; 0: none yet; no_service: no room for one.
    std::array<uint16_t, mpeg_ts_pid_count> service_number = {};
    static constexpr uint16_t no_service = 0xFFFF;
    std::vector<std::unique_ptr<service>> services;
    std::map<uint64_t, std::unique_ptr<known_page>> pages; ///< by PID, page and subcode
    uint64_t not_kept = 0;
    uint64_t dropped_pids = 0;
};
