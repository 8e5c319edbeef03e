#include "mpeg_ts_analysis/health/pcr_analysis.h"

#include "mpeg_ts_analysis/health/clocks.h"
#include "mpeg_ts_analysis/health/tracking.h"
#include "mpeg_ts_analysis/health/truncate.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"

namespace {

constexpr double ticks_per_second = 27000000.0;
constexpr unsigned long long pcr_modulus = 2576980377600; // 2^33 * 300
constexpr double drift_gain_divisor = 20.0;
constexpr double jump_seconds = 10.0;
constexpr double unlocked_below = -999999999999.0;

/// The clock that the packet's PCR drives, or null when there is nothing to analyse.
program_clock *clock_of(const mpeg_ts_packet *tsp)
{
    const mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(tsp->pid);
    if (t == nullptr || t->program_number == 0) return nullptr;
    program_clock *const clock = program_clock_get(t->program_number);
    if (clock == nullptr || clock->pcr_pid == 0) return nullptr;
    return clock;
}

void lock(program_clock *clock, unsigned long long pcr, double t)
{
    clock->base_pcr = pcr;
    clock->last_pcr_time = t;
    clock->base_time = t;
}

/// Where the clock puts the PCR of a packet at time t, 27 MHz ticks below the modulus.
unsigned long long predict(const program_clock *clock, double t)
{
    const double expected = static_cast<double>(clock->base_pcr) + (t - clock->base_time) * ticks_per_second;
    return truncate_to_64_bits(expected) % pcr_modulus;
}

void follow(program_clock *clock, unsigned long long pcr, double t)
{
    const bool in_focus = settings.program_focus == 0 || settings.program_focus == clock->program_number;
    const double pcr_s = static_cast<double>(pcr) / ticks_per_second;
    const double expected_s = static_cast<double>(predict(clock, t)) / ticks_per_second;
    const double error = pcr_s - expected_s;

    if ((settings.dump_ts_mode == dump_ts_contents || settings.dump_pcr_analysis) && in_focus)
        report_printf("* Program 0x%04x TS %.6f PCR error=%.9fns interval_from_last_PCR=%.6f\n",
                      clock->program_number, t, error * 1000000000.0, t - clock->last_pcr_time);
    if (t > clock->last_pcr_time + settings.max_pcr_interval)
        report_printf("!!! Program 0x%04x TS %.6f Too much time between PCR timestamps (%.3fms > %.3fms)\n",
                      clock->program_number, t, 1000.0 * (t - clock->last_pcr_time),
                      settings.max_pcr_interval * 1000.0);

    // A PCR that runs ahead moves the clock's origin back: a steady difference of rates goes away.
    if (settings.pcr_drift_correction) clock->base_time = clock->base_time - error / drift_gain_divisor;

    if (expected_s > pcr_s + jump_seconds) {
        if (in_focus)
            report_printf("* Program 0x%04x PCR reset/jump back at TS %.6f PCR %.6f\n", clock->program_number,
                          t, pcr_s);
        lock(clock, pcr, t);
    } else if (pcr_s > expected_s + jump_seconds) {
        if (in_focus)
            report_printf("* Program 0x%04x PCR reset/jump forward at TS %.6f PCR %.6f\n",
                          clock->program_number, t, pcr_s);
        lock(clock, pcr, t);
    } else {
        clock->last_pcr_time = t;
    }
}

} // namespace

void pcr_analysis(const mpeg_ts_packet *tsp, double t)
{
    if (!tsp->PCR_flag) return;
    program_clock *const clock = clock_of(tsp);
    if (clock == nullptr) return;

    const double pcr_s = static_cast<double>(tsp->PCR) / ticks_per_second;
    if (settings.dump_ts_mode == dump_ts_contents)
        report_printf("* PID 0x%04x (program 0x%04x) PCR=%llu (%.6f)\n", tsp->pid, clock->program_number,
                      tsp->PCR, pcr_s);
    if (clock->base_time < unlocked_below) {
        report_printf("* Program 0x%04x PCR initial lock at TS %.6f PCR %.6f\n", clock->program_number, t,
                      pcr_s);
        lock(clock, tsp->PCR, t);
        return;
    }
    follow(clock, tsp->PCR, t);
}
