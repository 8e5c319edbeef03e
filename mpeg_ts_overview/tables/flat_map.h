// A hash map whose entries stand in one array: what is found costs one cache line, where that of the standard
// library takes three. For stores that come round so slowly that nothing of them is in the cache any more.
// Keys that somebody chose so that all belong to one place cost what a tree costs, and no more.
#pragma once

#include "mpeg_ts_overview/tables/fetch_to_cache.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

/// Spreads the bits of a number over all bits of a size_t.
inline size_t spread_bits(uint64_t number)
{
    number = (number ^ number >> 32) * 0x9E3779B97F4A7C15;
    number = (number ^ number >> 29) * 0xD6E8FEB86659FD93;
    return static_cast<size_t>(number ^ number >> 32);
}

/// hash spreads keys over all bits of a size_t; keys have an order. Places of values change when one is
/// added.
template <typename key, typename value, typename hash>
class flat_map {
public:
    size_t size() const { return count + far.size(); }

    /// The value of a key, or null when it was not added.
    value *find(const key &of)
    {
        if (slots.empty()) return nullptr;
        slot *const place = place_of(of);
        if (place != nullptr) return place->used ? &place->held : nullptr;
        const auto found = far.find(of);
        return found != far.end() ? &found->second : nullptr;
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
        slot *const place = place_of(of);
        if (place == nullptr) return far[of];
        if (!place->used) {
            ++count;
            place->used = true;
            place->name = of;
        }
        return place->held;
    }

private:
    struct slot {
        key name = {};
        value held = {};
        bool used = false;
    };

    static constexpr size_t nearby = 64; ///< slots

    /// The slot of the key, or the free one where it belongs; null when others have all that are near.
    slot *place_of(const key &of)
    {
        size_t place = hash()(of) & (slots.size() - 1);
        for (size_t tries = 0; tries < nearby; ++tries, place = (place + 1) & (slots.size() - 1))
            if (!slots[place].used || slots[place].name == of) return &slots[place];
        return nullptr;
    }

    void grow()
    {
        constexpr size_t least_slots = 16; // a power of 2, as all sizes
        std::vector<slot> before(slots.empty() ? least_slots : 2 * slots.size());
        before.swap(slots);
        std::map<key, value> far_before;
        far_before.swap(far);
        count = 0;
        for (slot &old : before)
            if (old.used) put(old.name, std::move(old.held));
        for (auto &[name, held] : far_before) put(name, std::move(held));
    }

    /// Adds a key that is not there.
    void put(const key &of, value held)
    {
        slot *const place = place_of(of);
        if (place == nullptr) {
            far.emplace(of, std::move(held));
            return;
        }
        *place = {of, std::move(held), true};
        ++count;
    }

    std::vector<slot> slots;
    size_t count = 0;         ///< of slots in use
    std::map<key, value> far; ///< what had no slot near its place
};
