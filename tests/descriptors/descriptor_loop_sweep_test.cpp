// Every tag at every length, from blocks of exactly that size.
#include "tests/descriptors/descriptor_test.h"

#include <algorithm>
#include <cstdio>
#include <random>

struct descriptor_loop_sweep : descriptor_test {
    /// Prints a descriptor in the three dump modes, in the context that its tag needs, and holds the reports
    /// against each other.
    void sweep(unsigned tag, const bytes &body);
};

namespace {

std::string raw_dump(unsigned tag, const bytes &body)
{
    char text[64];
    std::snprintf(text, sizeof text, "        TAG 0x%02x LEN %02zx:\n", tag, body.size());
    std::string dump = text;
    for (size_t i = 0; i < body.size(); ++i) {
        std::snprintf(text, sizeof text, "%s0x%02x %s", i % 16 == 0 ? "            " : "", body[i],
                      i % 16 == 15 || i + 1 == body.size() ? "\n" : "");
        dump += text;
    }
    return dump;
}

/// The lines of a report that begin with "!!!".
std::string faults(const std::string &report)
{
    std::string lines;
    for (size_t at = 0; at < report.size();) {
        const size_t end = report.find('\n', at) + 1;
        if (report.compare(at, 3, "!!!") == 0) lines.append(report, at, end - at);
        at = end;
    }
    return lines;
}

/// False for the descriptors that print lines in the dump mode none, or only a fault of that mode.
bool obeys_the_dump_mode(unsigned tag)
{
    constexpr unsigned exceptions[] = {0x28, 0x2A, 0x4E, 0x66, 0x6A, 0x81, 0x86,
                                       0x87, 0x88, 0xA0, 0xA1, 0xA3, 0xAA};
    return std::find(std::begin(exceptions), std::end(exceptions), tag) == std::end(exceptions);
}

} // namespace

void descriptor_loop_sweep::sweep(unsigned tag, const bytes &body)
{
    settings.atsc_mode = 1;
    mpeg_ts_pid_tracking_get(descriptor_pid)->private_data_specifier = tag == 0x83 ? 0x3200 : 0;
    const std::string nothing = none(tag, body);
    const std::string fields = contents(tag, body);
    const std::string everything = raw(tag, body);

    ASSERT_EQ(everything, fields + raw_dump(tag, body));
    if (obeys_the_dump_mode(tag)) {
        ASSERT_EQ(nothing, faults(fields));
    }
}

TEST_F(descriptor_loop_sweep, no_decoder_reads_past_a_body_of_ones)
{
    track(descriptor_pid, TRACK_PMT, 1);
    for (unsigned tag = 0; tag <= 0xFF; ++tag)
        for (unsigned length = 0; length <= 0xFF; ++length) sweep(tag, repeated(0xFF, length));
}

TEST_F(descriptor_loop_sweep, no_decoder_reads_past_a_random_body)
{
    std::mt19937 random(1);
    track(descriptor_pid, TRACK_PMT, 1);
    for (unsigned tag = 0; tag <= 0xFF; ++tag)
        for (unsigned length = 0; length <= 0xFF; ++length) {
            bytes body(length);
            for (uint8_t &byte : body) byte = static_cast<uint8_t>(random());
            sweep(tag, body);
        }
}

/// Small numbers make lengths and counts that fit, so that the decoders get far.
TEST_F(descriptor_loop_sweep, no_decoder_reads_past_a_body_of_small_numbers)
{
    std::mt19937 random(2);
    track(descriptor_pid, TRACK_PMT, 1);
    for (unsigned tag = 0; tag <= 0xFF; ++tag)
        for (unsigned length = 0; length <= 0xFF; ++length) {
            bytes body(length);
            for (uint8_t &byte : body) byte = static_cast<uint8_t>(random() & 0x07);
            sweep(tag, body);
        }
}

TEST_F(descriptor_loop_sweep, no_loop_is_read_past_its_fence)
{
    std::mt19937 random(3);
    settings.dump_descriptors_mode = dump_descriptors_raw;
    for (unsigned i = 0; i < 20000; ++i) {
        settings.atsc_mode = static_cast<int32_t>(random() % 3) - 1;
        bytes loop(random() % 300);
        for (uint8_t &byte : loop) byte = static_cast<uint8_t>(random() & (i % 2 == 0 ? 0xFF : 0x1F));
        report_of_descriptors(loop);
    }
}
