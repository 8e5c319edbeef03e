// A hash map whose entries stand in one array: what is found costs one cache line, where that of the standard
// library takes three. For stores that come round so slowly that nothing of them is in the cache any more.
#pragma once

#include "mpeg_ts_overview/tables/fetch_to_cache.h"

#include <cstddef>
#include <utility>
#include <vector>

/// hash spreads keys over all bits of a size_t. Places of values change when one is added.
template <typename key, typename value, typename hash>
class flat_map {
public:
    size_t size() const { return count; }

    /// The value of a key, or null when it was not added.
    value *find(const key &of)
    {
        if (slots.empty()) return nullptr;
        slot &place = place_of(of);
        return place.used ? &place.held : nullptr;
    }

    /// Has the cache fetch the slot of a key, and the next, where it often is; it is there some 100 ns later.
    void fetch(const key &of) const
    {
        if (slots.empty()) return;
        const size_t place = hash()(of) & (slots.size() - 1);
        fetch_to_cache(slots[place]);
        fetch_to_cache(slots[(place + 1) & (slots.size() - 1)]);
    }

    /// The value of a key, added with its defaults where there is none.
    value &operator[](const key &of)
    {
        if (slots.empty() || 4 * (count + 1) > 3 * slots.size()) grow();
        slot &place = place_of(of);
        if (!place.used) {
            ++count;
            place.used = true;
            place.name = of;
        }
        return place.held;
    }

private:
    struct slot {
        key name = {};
        value held = {};
        bool used = false;
    };

    /// The slot of the key, or the free one where it belongs.
    slot &place_of(const key &of)
    {
        size_t place = hash()(of) & (slots.size() - 1);
        while (slots[place].used && !(slots[place].name == of)) place = (place + 1) & (slots.size() - 1);
        return slots[place];
    }

    void grow()
    {
        constexpr size_t least_slots = 16; // a power of 2, as all sizes
        std::vector<slot> before(slots.empty() ? least_slots : 2 * slots.size());
        before.swap(slots);
        for (slot &old : before)
            if (old.used) place_of(old.name) = std::move(old);
    }

    std::vector<slot> slots;
    size_t count = 0;
};
