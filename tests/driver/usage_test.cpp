#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/driver/usage.h"

#include <string>

struct usage : report_test {};

namespace {

/// An option's line: the left part indented by four, the description from column 34 on.
std::string option_line(const std::string &left_part, const std::string &description)
{
    constexpr size_t description_start = 33;
    std::string line = "    " + left_part;
    if (line.size() < description_start)
        line.resize(description_start, ' ');
    else
        line += ' ';
    return line + description + '\n';
}

} // namespace

TEST_F(usage, text_goes_to_standard_error_line_by_line)
{
    testing::internal::CaptureStderr();
    print_usage();

    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        "mpeg_ts_analysis [options] <ts file>\n"
        "MPEG-2 transport stream analyser: what is in a recording, and what is wrong with it\n" +
            option_line("-h --help", "This help") +
            option_line("-avchd", "Packets are stored m2ts style (192-byte Blu-ray/AVCHD)") +
            option_line("-std", "Packets are stored ts style (188-byte standard transport streams)") +
            option_line("-dump-ts[=<contents|header|all>]",
                        "Dump all TS packets (contents=packet header & data  head=only header, "
                        "all=EVERYTHING)") +
            option_line("-dump-descriptors[=<contents|raw>]",
                        "Dump descriptors embedded in various tables (raw=dump hex dump as well)") +
            option_line("-ts-bitrate=<N>", "Specify TS bitrate. 'auto' means to try and guess.") +
            option_line("-no-skip-padding", "Don't skip padding packets (PID=0x1FFF)") +
            option_line("-skip-padding", "Skip padding packets") +
            option_line("-assume-country=<N>", "Private country code or name") + std::string(35, ' ') +
            "0x3200-0x32FF or 'aus'           Australia\n" +
            option_line("-dump-pcr-analysis", "Show PCR analysis") +
            option_line("-no-pcr-drift-correction", "Disable PCR drift correction") +
            option_line("-program=<N>", "Focus only on one specific program") +
            option_line("-max-pcr-interval=<N>",
                        "Maximum PCR interval permitted in milliseconds (default=40ms)") +
            option_line("-atsc", "Stream is ATSC compliant. If neither -atsc or -not-atsc, ATSC compliance "
                                 "is detected by PID 0x1FFB.") +
            option_line("-not-atsc", "Stream is NOT ATSC compliant") +
            option_line("-atsc-mh", "Stream is ATSC M/H compliant. If neither -atsc-mh or -not-atsc-mh, ATSC "
                                    "compliance is detected by PID 0x1FF9.") +
            option_line("-not-atsc-mh", "Stream is NOT ATSC M/H compliant") +
            option_line("-dump-tables", "Dump assembled table contents and header") +
            option_line("-bdmv", "Stream is Blu-ray M2TS stream") +
            option_line("-not-bdmv", "Stream is NOT Blu-ray M2TS stream"));
    EXPECT_EQ(report(), "");
}
