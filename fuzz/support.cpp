#include "fuzz/support.h"

#include "mpeg_ts_analysis/report/invariant.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

jmp_buf fuzz_entry;

namespace {

std::string report_so_far;

/// The one required stop comes directly behind the third line of a master guide table's entry.
bool stop_is_required()
{
    const std::string_view report = report_so_far;
    if (!report.ends_with('\n')) return false;
    const size_t line_start = report.rfind('\n', report.size() - 2) + 1;
    return report.substr(line_start).starts_with("            table_type_descriptors_length=");
}

void on_broken_invariant()
{
    if (stop_is_required()) std::longjmp(fuzz_entry, 1);
    std::abort();
}

} // namespace

/// The address sanitizer asks for this: releasing 8192 empty records is quick when no call stack is noted for
/// each.
extern "C" const char *__asan_default_options();
const char *__asan_default_options()
{
    return "malloc_context_size=1:quarantine_size_mb=16";
}

fuzz_input fuzz_input::part(size_t size)
{
    const uint8_t *const start = p;
    p += std::min(size, left());
    return {start, p};
}

void fuzz_start_settings()
{
    static FILE *const nowhere = std::fopen("/dev/null", "w");

    if (nowhere != nullptr) stderr = nowhere;
    report_divert(&report_so_far);
    report_so_far.clear();
    invariant_handler = on_broken_invariant;
    settings = analysis_settings{};
    settings.packet_size = mpeg_ts_packet_size;
}

void fuzz_start()
{
    process_state_reset();
    fuzz_start_settings();
}

void fuzz_settings(fuzz_input &in)
{
    constexpr uint32_t countries[] = {0, 0x3200, 0x32FF, 0x00000028};

    const unsigned modes = in.byte();
    settings.dump_descriptors_mode = static_cast<uint8_t>((modes & 3) % 3);
    settings.dump_ts_mode = static_cast<uint8_t>(((modes >> 2) & 3) % 3);
    settings.atsc_mode = static_cast<int32_t>((modes >> 4) & 3) - 1;
    settings.assume_country = countries[modes >> 6];

    const unsigned switches = in.byte();
    settings.dump_tables = (switches & 1) != 0;
    settings.colour_output = (switches & 2) != 0;
    settings.skip_padding = (switches & 4) == 0;
    settings.dump_pcr_analysis = (switches & 8) != 0;
    settings.pcr_drift_correction = (switches & 16) == 0;
    settings.program_focus = (switches & 32) != 0 ? 1 : 0;
    settings.packet_size_mode = static_cast<int32_t>((switches >> 6) % 3) - 1;

    constexpr unsigned long long bitrates[] = {1,       10000,    200000,     1000000,
                                               8000000, 40000000, 1ull << 63, ~0ull};
    const unsigned rates = in.byte();
    settings.ts_bitrate_auto = (rates & 1) != 0;
    settings.ts_bitrate = (rates & 2) != 0 ? bitrates[(rates >> 4) & 7] : 0;
    settings.max_pcr_interval = (rates & 4) != 0 ? 0.04 : 0.1;
}

const std::string &fuzz_report()
{
    report_flush();
    return report_so_far;
}

void fuzz_promise(bool kept)
{
    if (!kept) __builtin_trap();
}
