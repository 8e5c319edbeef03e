#include "mpeg_ts_analysis/report/invariant.h"

#include "tests/support/death.h"
#include "tests/support/report_test.h"

#include <csetjmp>
#include <csignal>
#include <cstddef>

struct invariants : report_test {};

namespace {

jmp_buf entry;

void jump_to_entry()
{
    std::longjmp(entry, 1);
}

void stop_without(const int *t)
{
    invariant(t != NULL);
}

void stop_after_a_report()
{
    report_to_standard_error();
    report_line("* the last line before");
    stop_without(nullptr);
}

} // namespace

TEST_F(invariants, a_broken_one_flushes_the_report_and_stops_with_the_message_of_the_c_library)
{
    EXPECT_EXIT(stop_after_a_report(), testing::KilledBySignal(SIGABRT),
                "^\\* the last line before\n"
                "report_tests: [./]*tests/report/invariant_test\\.cpp:[0-9]+: "
                "void [^\n]*stop_without\\(const int ?\\*\\): Assertion `t != NULL' failed\\.\n" +
                    end_of_errors);
}

TEST_F(invariants, the_message_has_every_part_as_it_is_given)
{
    EXPECT_EXIT(invariant_failed("100 % n == 0", "folder/file.cpp", 4294967295u, "int f(char)"),
                testing::KilledBySignal(SIGABRT),
                "^report_tests: folder/file\\.cpp:4294967295: int f\\(char\\): "
                "Assertion `100 % n == 0' failed\\.\n" +
                    end_of_errors);
}

TEST_F(invariants, the_line_is_that_of_the_condition)
{
    EXPECT_EXIT(invariant(1 == 2), testing::KilledBySignal(SIGABRT),
                          ":" + std::to_string(__LINE__ - 1) + ": .*: Assertion `1 == 2' failed\\.\n" +
                              end_of_errors);
}

TEST_F(invariants, one_that_holds_prints_nothing_and_evaluates_its_condition_once)
{
    int evaluated = 0;
    invariant(++evaluated == 1);
    EXPECT_EQ(evaluated, 1);
    EXPECT_EQ(report(), "");
}

TEST_F(invariants, a_condition_may_be_a_pointer)
{
    const char *const text = "somewhere";
    invariant(text);
    EXPECT_EXIT(invariant(static_cast<const int *>(nullptr)), testing::KilledBySignal(SIGABRT),
                          "Assertion `static_cast<const int \\*>\\(nullptr\\)' failed\\.\n" + end_of_errors);
}

TEST_F(invariants, a_handler_is_called_instead_of_stopping_when_the_report_is_flushed)
{
    testing::internal::CaptureStderr();
    report_line("* before");
    invariant_handler = jump_to_entry;
    if (setjmp(entry) == 0) {
        stop_without(nullptr);
        ADD_FAILURE() << "went on";
    }
    invariant_handler = nullptr;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(report(), "* before\n");
}
