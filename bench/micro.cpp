// What single steps cost.
#include "mpeg12_ts/crc32.h"
#include "mpeg12_ts/packet.h"
#include "mpeg_ts_analysis/descriptors/descriptor_loop.h"
#include "mpeg_ts_analysis/report/hex_dump.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <string>
#include <vector>

namespace {

/// Takes the report, so that a benchmark writes nowhere.
struct report_sink {
    report_sink() { report_divert(&text); }
    ~report_sink() { report_divert(nullptr); }
    void empty()
    {
        report_flush();
        text.clear();
    }
    std::string text;
};

void packet_decode(benchmark::State &state)
{
    unsigned char bytes[mpeg_ts_packet_size] = {0x47, 0x41, 0x00, 0x30, 7, 0x10};
    mpeg_ts_packet packet;
    for (auto _ : state) benchmark::DoNotOptimize(mpeg_ts_decode(&packet, bytes, sizeof(bytes)));
}
BENCHMARK(packet_decode);

void crc_of_a_section(benchmark::State &state)
{
    const std::vector<uint8_t> section(static_cast<size_t>(state.range(0)), 0x5A);
    for (auto _ : state)
        benchmark::DoNotOptimize(mpeg_ts_crc32(section.data(), section.data() + section.size()));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}
BENCHMARK(crc_of_a_section)->Arg(16)->Arg(183)->Arg(1024)->Arg(4096);

void hex_rows_of_a_payload(benchmark::State &state)
{
    report_sink sink;
    const std::vector<uint8_t> payload(184, 0x5A);
    for (auto _ : state) {
        report_hex_and_text_rows(payload.data(), payload.data() + payload.size());
        sink.text.clear();
    }
}
BENCHMARK(hex_rows_of_a_payload);

void line_of_three_numbers(benchmark::State &state)
{
    report_sink sink;
    unsigned number = 0;
    for (auto _ : state) {
        report_printf("    Now tracking PID 0x%04x type=0x%04x number %u\n", number & 0x1FFF, number & 0xFFFF,
                      number % 1000);
        ++number;
        sink.text.clear();
    }
}
BENCHMARK(line_of_three_numbers);

void line_of_three_numbers_by_snprintf(benchmark::State &state)
{
    char line[128];
    unsigned number = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::snprintf(line, sizeof(line),
                                               "    Now tracking PID 0x%04x type=0x%04x number %u\n",
                                               number & 0x1FFF, number & 0xFFFF, number % 1000));
        ++number;
    }
}
BENCHMARK(line_of_three_numbers_by_snprintf);

void packet_time(benchmark::State &state)
{
    report_sink sink;
    double t = 0.0;
    for (auto _ : state) {
        report_printf("(t=%.7f)", t);
        t += 0.0000752;
        sink.text.clear();
    }
}
BENCHMARK(packet_time);

void terrestrial_delivery_system_descriptor(benchmark::State &state)
{
    report_sink sink;
    const uint8_t loop[] = {0x5A, 11, 0x02, 0xD3, 0xF3, 0xC0, 0x1F, 0x92, 0x06, 0xFF, 0xFF, 0xFF, 0xFF};
    mpeg_ts_pid_tracking t;
    for (auto _ : state) {
        descriptor_loop(&t, loop, loop + sizeof(loop));
        sink.text.clear();
    }
}
BENCHMARK(terrestrial_delivery_system_descriptor);

} // namespace
