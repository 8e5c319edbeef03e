// Records on the heap, where memory may be short. operator new does not serve there: even the one that
// returns null throws and catches inside the C++ library, and where there is no memory for that, it ends the
// program.
#pragma once

#include <cstdlib>
#include <new>
#include <type_traits>

/// A record of its default values, or null when memory is short. Release it with std::free.
template <typename record>
record *new_record()
{
    static_assert(std::is_trivially_destructible_v<record>);
    void *const memory = std::aligned_alloc(alignof(record), sizeof(record));
    return memory != nullptr ? new (memory) record : nullptr;
}
