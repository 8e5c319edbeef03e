// What the fuzz entries share: a fresh process state, a report that goes nowhere, options from the input, and
// stops that a stream may ask for.
#pragma once

#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"

#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

/// The input, taken from the front. Past its end it gives zeros.
struct fuzz_input {
    const uint8_t *p;
    const uint8_t *fence;

    size_t left() const { return static_cast<size_t>(fence - p); }
    uint8_t byte() { return p < fence ? *p++ : uint8_t{0}; }
    unsigned word()
    {
        const unsigned high = byte();
        return high << 8 | byte();
    }

    /// The next size bytes, or all that are left.
    fuzz_input part(size_t size);
};

/// Everything that an entry needs anew for each input. Messages to standard error are dropped.
void fuzz_start();

/// The same without the tables of PIDs and programs, for entries that touch none of them.
void fuzz_start_settings();

/// Settings from the next three bytes of the input.
void fuzz_settings(fuzz_input &in);

/// The report since fuzz_start.
const std::string &fuzz_report();

/// Stops as a crash does when a promise is broken.
void fuzz_promise(bool kept);

/// Where the program goes back to when a stream has asked for a stop: the master guide table announces a PID
/// that is already something else. Any other broken invariant is a crash. Entries that reach tables set it.
extern jmp_buf fuzz_entry;
