// Tables that give a code its name, and their look-up. A dense code is an array of texts indexed by the code,
// with a null where there is no name; a sparse one is an array of named_value, ascending.
#pragma once

#include <cstddef>

struct named_value {
    unsigned value;
    const char *name;
};

template <size_t size>
constexpr bool is_ascending(const named_value (&table)[size])
{
    for (size_t i = 1; i < size; ++i)
        if (table[i - 1].value >= table[i].value) return false;
    return true;
}

/// The name of value, or absent when the table has none.
template <size_t size>
constexpr const char *name_of(const char *const (&table)[size], unsigned value, const char *absent = "")
{
    return value < size && table[value] != nullptr ? table[value] : absent;
}

template <size_t size>
constexpr const char *name_of(const named_value (&table)[size], unsigned value, const char *absent = "")
{
    size_t place = 0;
    for (size_t count = size; count > 1; count -= count / 2)
        if (table[place + count / 2].value <= value) place += count / 2;
    return table[place].value == value ? table[place].name : absent;
}
