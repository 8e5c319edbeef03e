#include "mpeg_ts_analysis/state/process_state.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

analysis_settings settings;
error_counters errors;
mpeg_ts_pid_tracking pid_tracking[mpeg_ts_pid_count];
pid_set tracked_pmts;
spare_storage spare_program_storage;
spare_storage spare_private_storage;
uint8_t last_continuity_counter[mpeg_ts_pid_count];
program_clock *program_table[program_count];
uint16_t current_nit_pid = default_nit_pid;
int32_t atsc_gps_utc_offset = unknown_gps_utc_offset;

void process_state_reset()
{
    settings = analysis_settings{};
    errors = error_counters{};
    for (mpeg_ts_pid_tracking &t : pid_tracking) {
        mpeg_ts_table_assembly_init(&t.tbl_asm, 0);
        t = mpeg_ts_pid_tracking{};
    }
    spare_storage_free(&spare_program_storage);
    spare_storage_free(&spare_private_storage);
    tracked_pmts = pid_set{};
    std::fill(std::begin(last_continuity_counter), std::end(last_continuity_counter), no_continuity_counter);
    for (program_clock *&clock : program_table) {
        std::free(clock);
        clock = nullptr;
    }
    current_nit_pid = default_nit_pid;
    atsc_gps_utc_offset = unknown_gps_utc_offset;
}
