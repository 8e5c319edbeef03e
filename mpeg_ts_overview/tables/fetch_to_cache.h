// Asks the processor for memory before it is needed.
#pragma once

/// Fetches something no longer than a cache line, which may lie in two. Nothing waits for it.
template <typename value>
void fetch_to_cache(const value &what)
{
    const char *const first = reinterpret_cast<const char *>(&what);
    __builtin_prefetch(first);
    __builtin_prefetch(first + sizeof(value) - 1);
}
