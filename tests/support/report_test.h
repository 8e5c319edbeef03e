// What every test of the analyser begins with: a fresh process state and a report that can be looked at.
#pragma once

#include "tests/support/hex.h"
#include "tests/support/stream_builder.h"

#include "mpeg_ts_analysis/health/tracking.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"

#include <gtest/gtest.h>
#include <string>

class report_test : public testing::Test {
protected:
    report_test();
    ~report_test() override;

    /// What has been printed since the last call.
    std::string report();

    /// The report of a descriptor loop of exactly these bytes, on a PID that is tracked as a PMT.
    std::string report_of_descriptors(const bytes &loop);

    /// The report of one section, carried on a PID in packets of its own. The PID's tracking decides what it
    /// is.
    std::string report_of_section(unsigned pid, const bytes &section);

    /// The report of the packets of a stream, as the main loop gives them to the tables: no start-up lines,
    /// no summary.
    std::string report_of_packets(const bytes &stream);

    /// The whole report of a run over a file of these bytes, the file's path printed as "stream.ts". What the
    /// run writes to standard error is in run_errors, its exit status in run_status. The settings stay as the
    /// test has set them.
    std::string report_of_run(const bytes &stream, size_t block_size = size_t{256} * 1024);

    std::string run_errors;
    int run_status = -1;

    /// Starts a PID with storage for sections, as the handlers do.
    static mpeg_ts_pid_tracking *track(unsigned pid, uint16_t type, unsigned program_number = 0);

    /// The PID of report_of_descriptors.
    static constexpr unsigned descriptor_pid = 0x0100;

private:
    std::string printed;
};
