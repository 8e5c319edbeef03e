// Assertions that are on in every build. A broken one flushes the report, prints what the C library's assert
// prints and aborts.
#pragma once

/// Called instead of aborting when it is set; it must not return. For fuzzing, where a required stop is no
/// finding.
extern void (*invariant_handler)();

[[noreturn]] void invariant_failed(const char *condition, const char *file, unsigned line,
                                   const char *function);

// The condition becomes text here and not in a second macro, which would expand NULL first.
#define invariant(condition)      \
    (static_cast<bool>(condition) \
         ? void(0)                \
         : invariant_failed(#condition, __FILE__, __LINE__, __extension__ __PRETTY_FUNCTION__))
