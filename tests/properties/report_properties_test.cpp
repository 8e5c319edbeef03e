// What holds for the report of every stream.
#include "tests/properties/random_stream.h"
#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/driver/run_analysis.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr size_t packet_size = 188;
constexpr unsigned stream_count = 60;

bytes padding_packet()
{
    return stream_builder().padding().data();
}

bytes first_packets(const bytes &stream, size_t count)
{
    return bytes(stream.begin(), stream.begin() + static_cast<long>(count * packet_size));
}

/// The report without the two lines that name the input.
std::string body_of(const std::string &report)
{
    return report.substr(report.find('\n', report.find('\n') + 1) + 1);
}

std::string without_summary(const std::string &report)
{
    return report.substr(0, report.find("* Scan complete\n"));
}

/// Header lines without the packet's offset and its arrival time.
std::string without_places(const std::string &text)
{
    std::string kept;
    for (size_t start = 0; start < text.size();) {
        const size_t end = text.find('\n', start) + 1;
        std::string line = text.substr(start, end - start);
        start = end;
        if (line.front() == '@') {
            line.erase(0, line.find('('));
            const size_t time = line.find(" TIME=");
            if (time != std::string::npos) line = line.substr(0, time) + "\n";
        }
        kept += line;
    }
    return kept;
}

/// The bytes in a pipe that has room for all of them, its writing end closed.
class filled_pipe {
public:
    explicit filled_pipe(const bytes &content)
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        EXPECT_GE(fcntl(ends[1], F_SETPIPE_SZ, 1 << 20), static_cast<int>(content.size()));
        EXPECT_EQ(write(ends[1], content.data(), content.size()), static_cast<ssize_t>(content.size()));
        close(ends[1]);
        reading_end = ends[0];
        std::snprintf(path, sizeof(path), "/proc/self/fd/%d", reading_end);
    }
    ~filled_pipe() { close(reading_end); }
    filled_pipe(const filled_pipe &) = delete;
    filled_pipe &operator=(const filled_pipe &) = delete;

    char path[32] = {};

private:
    int reading_end = -1;
};

} // namespace

/// The parameter is the seed of the stream.
struct report_properties : report_test, testing::WithParamInterface<unsigned> {
    report_properties()
    {
        random_stream random(GetParam());
        stream = GetParam() % 2 == 0 ? random.damaged_multiplex() : random.tables_and_noise();
        wanted.packet_size_mode = 0;
        wanted.dump_descriptors_mode = static_cast<uint8_t>(random.any(3));
        wanted.dump_tables = random.any(4) == 0;
        wanted.atsc_mode = static_cast<int32_t>(random.any(3)) - 1;
        wanted.assume_country = random.any(4) == 0 ? 0x3200 : 0;
        with_header_dump = wanted;
        with_header_dump.dump_ts_mode = dump_ts_header;
        with_header_dump.skip_padding = false;
    }

    /// The body of the report of a fresh run.
    std::string run(const bytes &content, const analysis_settings &with,
                    size_t block_size = packet_file_block_size)
    {
        process_state_reset();
        settings = with;
        const std::string text = report_of_run(content, block_size);
        EXPECT_EQ(run_status, 0);
        EXPECT_EQ(run_errors, "");
        return body_of(text);
    }

    bytes stream;
    analysis_settings wanted;
    analysis_settings with_header_dump;
};

TEST_P(report_properties, a_second_run_gives_the_same_report)
{
    const std::string first = run(stream, wanted);

    EXPECT_EQ(run(stream, wanted), first);
    EXPECT_TRUE(first.ends_with("* Priority #3 errors: 0\n"));
}

TEST_P(report_properties, the_size_of_the_blocks_does_not_matter)
{
    with_header_dump.ts_bitrate = 1500000;
    with_header_dump.dump_pcr_analysis = true;
    const std::string whole = run(stream, with_header_dump);

    for (const size_t block_size : {1u, 7u, 187u, 188u, 189u, 191u, 4096u, 8191u})
        EXPECT_EQ(run(stream, with_header_dump, block_size), whole) << "blocks of " << block_size << " bytes";
}

TEST_P(report_properties, a_pipe_gives_the_report_of_the_file)
{
    const std::string whole = run(stream, with_header_dump);

    process_state_reset();
    settings = with_header_dump;
    EXPECT_EQ(run_analysis(filled_pipe(stream).path), 0);
    EXPECT_EQ(body_of(report()), whole);
}

TEST_P(report_properties, packets_of_192_bytes_give_the_same_report_but_for_places_and_times)
{
    stream_builder copy;
    for (size_t at = 0; at < stream.size(); at += packet_size)
        copy.raw(bytes(stream.begin() + static_cast<long>(at),
                       stream.begin() + static_cast<long>(at + packet_size)));
    const std::string of_188 = run(stream, with_header_dump);

    with_header_dump.packet_size_mode = 1;
    EXPECT_EQ(without_places(run(copy.avchd(5, 1000), with_header_dump)), without_places(of_188));
}

TEST_P(report_properties, the_report_of_a_beginning_is_a_beginning_of_the_report)
{
    const std::string whole = without_summary(run(stream, wanted));
    const size_t packets = stream.size() / packet_size;

    for (size_t count = 0; count <= packets; count += 1 + packets / 16) {
        const std::string part = without_summary(run(first_packets(stream, count), wanted));
        EXPECT_EQ(whole.substr(0, part.size()), part) << "after " << count << " packets";
    }
}

TEST_P(report_properties, padding_between_packets_changes_nothing)
{
    random_stream random(GetParam());
    bytes padded;
    for (size_t at = 0; at < stream.size(); at += packet_size) {
        padded.insert(padded.end(), stream.begin() + static_cast<long>(at),
                      stream.begin() + static_cast<long>(at + packet_size));
        for (unsigned count = random.any(3); count > 0; --count) padded = join({padded, padding_packet()});
    }

    EXPECT_EQ(run(padded, wanted), run(stream, wanted));
}

/// Packets that print nothing are passed over quickly when nothing is dumped.
TEST_P(report_properties, the_packet_dump_finds_the_same_errors)
{
    run(stream, wanted);
    const error_counters without_dump = errors;
    run(stream, with_header_dump);

    EXPECT_EQ(errors.priority1_errors, without_dump.priority1_errors);
    EXPECT_EQ(errors.continuity_errors, without_dump.continuity_errors);
}

TEST_P(report_properties, the_packet_dump_has_a_line_for_every_clear_packet)
{
    size_t clear = 0;
    for (size_t at = 0; at < stream.size(); at += packet_size) {
        mpeg_ts_packet packet;
        if (mpeg_ts_decode(&packet, stream.data() + at, packet_size) &&
            packet.transport_scrambling_control == 0)
            ++clear;
    }
    const std::string text = "\n" + run(stream, with_header_dump);
    size_t lines = 0;
    for (size_t at = text.find("\n@"); at != std::string::npos; at = text.find("\n@", at + 1)) ++lines;

    EXPECT_EQ(lines, clear);
}

INSTANTIATE_TEST_SUITE_P(streams, report_properties, testing::Range(0u, stream_count));
