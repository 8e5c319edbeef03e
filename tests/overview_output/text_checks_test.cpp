#include "mpeg_ts_overview/output/text.h"

#include "sample_overview.h"

#include <gtest/gtest.h>

namespace {

check_result check_of(const char *id, const char *name, check_outcome outcome, const char *why = "")
{
    check_result check;
    check.id = id;
    check.priority = id[0] - '0';
    check.name = name;
    check.outcome = outcome;
    check.why = why;
    return check;
}

check_result failed(const char *id, const char *name, uint64_t count)
{
    check_result check = check_of(id, name, check_outcome::fail);
    check.log.count = count;
    check.log.first = moment_at(48211, 3120);
    return check;
}

/// The lines of the summary behind the recording's.
std::string lines_of(const std::vector<check_result> &checks, const std::vector<pid_facts> &pids = {})
{
    overview found;
    found.checks = checks;
    found.pids = pids;
    found.recording.packets = 1;
    const std::string text = summary_text(found, false);
    const std::string lines = text.substr(text.find("\n\n") + 2);
    const size_t end = lines.find("\n\n");
    return end == std::string::npos ? lines : lines.substr(0, end + 1);
}

} // namespace

TEST(text_checks, continuity_errors_are_counted_by_pid)
{
    std::vector<pid_facts> pids(4);
    for (size_t i = 0; i < 3; ++i) pids[i].continuity_errors = 4;
    EXPECT_EQ(lines_of({failed("1.4", "Continuity_count_error", 12)}, pids),
              "  FAIL  1.4   Continuity_count_error    12 on 3 PIDs, first at 0:00:03.120 (packet 48211)\n"
              "  ok    0 checks\n");
}

TEST(text_checks, transport_errors_are_counted_by_pid)
{
    std::vector<pid_facts> pids(4);
    for (size_t i = 0; i < 2; ++i) pids[i].transport_errors = 30;
    EXPECT_EQ(lines_of({failed("2.1", "Transport_error", 60)}, pids),
              "  FAIL  2.1   Transport_error           60 on 2 PIDs, first at 0:00:03.120 (packet 48211)\n"
              "  ok    0 checks\n");
}

TEST(text_checks, pids_are_named_where_every_violation_is_known)
{
    check_result check = failed("1.6", "PID_error", 2);
    check.log.details = {
        {moment_at(48211, 3120), 0x0100, ""},
        {moment_at(50000, 4000), 0x0100, ""}
    };
    EXPECT_EQ(lines_of({check}),
              "  FAIL  1.6   PID_error                 2 on PID 0x0100, first at 0:00:03.120 (packet 48211)\n"
              "  ok    0 checks\n");
    check.log.details[1].pid = 0x0101;
    EXPECT_EQ(lines_of({check}),
              "  FAIL  1.6   PID_error                 2 on 2 PIDs, first at 0:00:03.120 (packet 48211)\n"
              "  ok    0 checks\n");
    check.log.count = 3;
    EXPECT_EQ(lines_of({check}),
              "  FAIL  1.6   PID_error                 3, first at 0:00:03.120 (packet 48211)\n"
              "  ok    0 checks\n");
}

TEST(text_checks, the_worst_and_its_limit_are_said_in_their_unit)
{
    check_result accuracy = failed("2.4", "PCR_accuracy_error", 1);
    accuracy.worst_unit = "ns";
    accuracy.log.worst = 500.4;
    accuracy.limit = 500;
    EXPECT_EQ(lines_of({accuracy}),
              "  FAIL  2.4   PCR_accuracy_error        1, worst 500.4 ns (limit 500 ns),\n"
              "              first at 0:00:03.120 (packet 48211)\n"
              "  ok    0 checks\n");
    check_result absence = failed("1.6", "PID_error", 1);
    absence.worst_unit = "s";
    absence.log.worst = 5.25;
    absence.limit = 5;
    EXPECT_EQ(lines_of({absence}), "  FAIL  1.6   PID_error                 1, worst 5.25 s (limit 5 s),\n"
                                   "              first at 0:00:03.120 (packet 48211)\n"
                                   "  ok    0 checks\n");
}

TEST(text_checks, without_times_the_packet_is_said)
{
    check_result check = failed("1.1", "TS_sync_loss", 1);
    check.log.first.ticks.reset();
    EXPECT_EQ(lines_of({check}), "  FAIL  1.1   TS_sync_loss              1, first at packet 48211\n"
                                 "  ok    0 checks\n");
}

TEST(text_checks, a_failure_without_a_place_has_none)
{
    check_result check = check_of("2.6", "CAT_error", check_outcome::fail);
    EXPECT_EQ(lines_of({check}), "  FAIL  2.6   CAT_error                 0\n"
                                 "  ok    0 checks\n");
}

TEST(text_checks, a_long_name_pushes_its_line)
{
    EXPECT_EQ(lines_of({failed("2.3b", "PCR_discontinuity_indicator_error", 1)}),
              "  FAIL  2.3b  PCR_discontinuity_indicator_error  1, first at 0:00:03.120 (packet 48211)\n"
              "  ok    0 checks\n");
}

TEST(text_checks, what_was_not_measured_is_grouped_by_its_reason)
{
    const auto not_measured = check_outcome::not_measured;
    EXPECT_EQ(
        lines_of({check_of("1.1", "", check_outcome::pass), check_of("1.2", "", check_outcome::pass),
                  check_of("2.4", "", not_measured, "variable bitrate"),
                  check_of("3.1a", "", not_measured, "not a DVB stream"),
                  check_of("3.3", "", not_measured, "needs the decoder model"),
                  check_of("3.5a", "", not_measured, "not a DVB stream"), check_of("X.9", "", not_measured)}),
        "  ok    2 checks       not measured: 2.4 (variable bitrate), 3.1a, 3.5a (not a DVB stream), X.9, 3.3\n");
}

TEST(text_checks, a_list_of_what_was_not_measured_goes_on_in_the_next_line)
{
    std::vector<check_result> checks;
    for (int i = 0; i < 20; ++i)
        checks.push_back(check_of("3.10", "", check_outcome::not_measured, i < 19 ? "no times" : "no PAT"));
    EXPECT_EQ(
        lines_of(checks),
        "  ok    0 checks       not measured: 3.10, 3.10, 3.10, 3.10, 3.10, 3.10, 3.10, 3.10, 3.10, 3.10,\n"
        "        3.10, 3.10, 3.10, 3.10, 3.10, 3.10, 3.10, 3.10, 3.10 (no times), 3.10 (no PAT)\n");
}
