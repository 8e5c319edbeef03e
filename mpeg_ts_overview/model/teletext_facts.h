// Teletext pages, ETSI EN 300 706: the last complete reception of each.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

constexpr unsigned teletext_row_count = 25;

struct teletext_page {
    uint16_t pid = 0;
    unsigned page = 0;    ///< as dialled: 0x100 to 0x8FF, its digits hexadecimal
    unsigned subcode = 0; ///< 0 to 0x3F7F
    uint64_t count = 0;   ///< complete receptions
    std::optional<int64_t> first_ticks;
    std::optional<int64_t> last_ticks;
    unsigned national_option = 0;                     ///< C12 to C14 of the last reception, 0 to 7
    std::array<std::string, teletext_row_count> rows; ///< 40 characters each, UTF-8
};

struct teletext_facts {
    std::vector<teletext_page> pages;
    uint64_t not_kept = 0;
};
