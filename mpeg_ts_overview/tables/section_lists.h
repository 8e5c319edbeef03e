// What the sections of one table list, each section by itself: a new version of a section takes the place of
// the old one at once.
#pragma once

#include "mpeg_ts_overview/tables/section.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

template <typename item>
class section_lists {
public:
    /// True when the section is the one in hand.
    bool holds(const table_section &section) const
    {
        const auto known = lists.find(section.header.section_number);
        return known != lists.end() && known->second.crc_32 == section.crc_32 && !has_more(section);
    }

    /// Takes a section and what it lists. Tells of each item that is there now, on_listed(item), then of each
    /// that is there no more, on_unlisted(item): of an item that stays, both.
    template <typename listed, typename unlisted>
    void replace(const table_section &section, std::vector<item> items, const listed &on_listed,
                 const unlisted &on_unlisted)
    {
        for (const item &one : items) on_listed(one);
        const uint8_t number = section.header.section_number;
        const section_list before = std::exchange(lists[number], {section.crc_32, std::move(items)});
        for (const item &one : before.items) on_unlisted(one);
        while (has_more(section)) {
            const auto gone = std::prev(lists.end());
            for (const item &one : gone->second.items) on_unlisted(one);
            lists.erase(gone);
        }
    }

private:
    struct section_list {
        uint32_t crc_32 = 0;
        std::vector<item> items;
    };

    /// True when there are sections above the last one.
    bool has_more(const table_section &section) const
    {
        const uint8_t last = std::max(section.header.section_number, section.header.last_section_number);
        return !lists.empty() && lists.rbegin()->first > last;
    }

    std::map<uint8_t, section_list> lists; ///< by section_number
};
