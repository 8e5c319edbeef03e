#include "mpeg_ts_analysis/health/clocks.h"

#include "mpeg12_ts/new_record.h"
#include "mpeg_ts_analysis/state/process_state.h"

#include <cstdlib>

program_clock *program_clock_get(uint16_t program_number)
{
    return program_table[program_number];
}

program_clock *program_clock_create(uint16_t program_number, uint16_t pmt_pid)
{
    program_clock *&clock = program_table[program_number];
    if (clock != nullptr) return clock;

    clock = new_record<program_clock>();
    if (clock == nullptr) return nullptr;
    clock->program_number = program_number;
    clock->pmt_pid = pmt_pid;
    clock->last_pcr_time = -1.0;
    clock->base_time = unlocked_base_time;
    return clock;
}

void program_clock_free(uint16_t program_number)
{
    std::free(program_table[program_number]);
    program_table[program_number] = nullptr;
}

void program_clock_free_all()
{
    for (unsigned program_number = 0; program_number < program_count; ++program_number)
        program_clock_free(static_cast<uint16_t>(program_number));
}
