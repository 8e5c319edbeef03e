#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/driver/run_analysis.h"

#include <cstdlib>
#include <fcntl.h>
#include <regex>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

/// A directory that is gone with its owner, and the pipe in it.
class temporary_directory {
public:
    temporary_directory() { EXPECT_NE(mkdtemp(path), nullptr); }
    ~temporary_directory()
    {
        unlink(pipe_path().c_str());
        rmdir(path);
    }
    temporary_directory(const temporary_directory &) = delete;
    temporary_directory &operator=(const temporary_directory &) = delete;

    std::string pipe_path() const { return std::string(path) + "/pipe.ts"; }

    char path[40] = "/tmp/mpeg_ts_test_XXXXXX";
};

/// Writes all bytes to the pipe at path, in pieces of a size that no packet has.
void feed(const std::string &path, const bytes &stream)
{
    constexpr size_t piece = 1001;
    const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    for (size_t done = 0; done < stream.size();) {
        const ssize_t written =
            write(descriptor, stream.data() + done, std::min(piece, stream.size() - done));
        if (written <= 0) break;
        done += static_cast<size_t>(written);
    }
    close(descriptor);
}

} // namespace

struct analysis_input : report_test {
    /// Pointers are the one thing in a report that may differ.
    static std::string without_pointers(const std::string &text)
    {
        return std::regex_replace(text, std::regex("nxt=0x[0-9a-f]+ s=0x[0-9a-f]+ f=0x[0-9a-f]+"),
                                  "nxt=* s=* f=*");
    }

    void start_over()
    {
        process_state_reset();
        settings.dump_ts_mode = 2;
        settings.dump_tables = true;
        settings.ts_bitrate = 1500000;
    }

    std::string report_of_path(const std::string &path)
    {
        testing::internal::CaptureStderr();
        run_status = run_analysis(path.c_str());
        run_errors = testing::internal::GetCapturedStderr();
        std::string text = report();
        const size_t at = text.find(path);
        if (at != std::string::npos) text.replace(at, path.size(), "stream.ts");
        return text;
    }

    /// The report of a pipe that carries these bytes.
    std::string report_of_pipe(const bytes &stream)
    {
        const temporary_directory directory;
        EXPECT_EQ(mkfifo(directory.pipe_path().c_str(), 0600), 0);
        std::thread writer(feed, directory.pipe_path(), stream);
        const std::string text = report_of_path(directory.pipe_path());
        writer.join();
        return text;
    }

    /// Something of everything, more than the detection reads.
    static stream_builder some_stream()
    {
        stream_builder stream;
        for (unsigned round = 0; round < 6; ++round) {
            stream.section(0, pat_section(1, {
                                                 {0, 0x10 },
                                                 {1, 0x100}
            }));
            stream.section(0x100, pmt_section(1, 0x101,
                                              {
            },
                                              {{0x02, 0x101, {}}, {0x81, 0x102, {}}}));
            stream.pcr(0x101, 27000000ull * round).unit(0x101, pes_packet(0xE0, repeated(0x55, 900), 90000));
            stream.padding(3).payload(0x102, repeated(0x22, 100), true).payload(0x1FFB, hex("01"));
            stream.lose_packets(0x102, 2).payload(0x102, repeated(0x33, 184)).flip_bit(0, 1);
            stream.payload(0x102, repeated(0x44, 184)).scramble(2);
        }
        return stream;
    }
};

TEST_F(analysis_input, a_missing_file_ends_the_run_with_status_1)
{
    EXPECT_EQ(report_of_path("/nonexistent/stream.ts"), "");
    EXPECT_EQ(run_errors, "Cannot open file '/nonexistent/stream.ts'\n");
    EXPECT_EQ(run_status, 1);
}

TEST_F(analysis_input, a_directory_is_said_to_be_unreadable)
{
    const temporary_directory directory;
    EXPECT_EQ(report_of_path(directory.path), "* Starting analysis of: stream.ts\n"
                                              "* Packet size: 192 bytes/packet\n"
                                              "* Scan complete\n"
                                              "* Priority #1 errors: 0\n"
                                              "* Priority #2 errors: 0\n"
                                              "* Priority #3 errors: 0\n");
    EXPECT_EQ(run_errors, "WARNING: autodetect failed, pktsz=-1\n"
                          "Cannot read file '" +
                              std::string(directory.path) + "': Is a directory\n");
    EXPECT_EQ(run_status, 0);
}

TEST_F(analysis_input, a_directory_is_said_to_be_unreadable_after_an_estimate_too)
{
    const temporary_directory directory;
    settings.packet_size_mode = 0;
    settings.ts_bitrate_auto = true;
    EXPECT_EQ(report_of_path(directory.path), "* Starting analysis of: stream.ts\n"
                                              "* Packet size: 188 bytes/packet\n"
                                              "* Attempting to auto-detect TS bitrate\n"
                                              "!!! Autodetection failed\n"
                                              "* Scan complete\n"
                                              "* Priority #1 errors: 0\n"
                                              "* Priority #2 errors: 0\n"
                                              "* Priority #3 errors: 0\n");
    EXPECT_EQ(run_errors, "Cannot read file '" + std::string(directory.path) + "': Is a directory\n");
    EXPECT_EQ(run_status, 0);
}

TEST_F(analysis_input, a_file_of_187_bytes_has_no_packet)
{
    EXPECT_EQ(report_of_run(repeated(0x47, 187)), "* Starting analysis of: stream.ts\n"
                                                  "* Packet size: 192 bytes/packet\n"
                                                  "* Scan complete\n"
                                                  "* Priority #1 errors: 0\n"
                                                  "* Priority #2 errors: 0\n"
                                                  "* Priority #3 errors: 0\n");
    EXPECT_EQ(run_errors, "WARNING: autodetect failed, pktsz=-1\n");
    EXPECT_EQ(run_status, 0);
    EXPECT_EQ(settings.packet_size_mode, -1);
    EXPECT_EQ(settings.packet_size, 192u);
}

TEST_F(analysis_input, an_empty_file_has_no_packet)
{
    EXPECT_EQ(report_of_run({}), "* Starting analysis of: stream.ts\n"
                                 "* Packet size: 192 bytes/packet\n"
                                 "* Scan complete\n"
                                 "* Priority #1 errors: 0\n"
                                 "* Priority #2 errors: 0\n"
                                 "* Priority #3 errors: 0\n");
    EXPECT_EQ(run_errors, "WARNING: autodetect failed, pktsz=-1\n");
    EXPECT_EQ(run_status, 0);
}

TEST_F(analysis_input, the_packet_size_is_detected)
{
    stream_builder stream;
    stream.padding(4);
    report_of_run(stream.data());
    EXPECT_EQ(run_errors, "");
    EXPECT_EQ(settings.packet_size_mode, 0);
    EXPECT_EQ(settings.packet_size, 188u);

    process_state_reset();
    report_of_run(stream.avchd());
    EXPECT_EQ(run_errors, "");
    EXPECT_EQ(settings.packet_size_mode, 1);
    EXPECT_EQ(settings.packet_size, 192u);
}

TEST_F(analysis_input, a_failed_detection_reads_192_byte_packets)
{
    settings.dump_ts_mode = 1;
    settings.skip_padding = false;
    stream_builder stream;
    stream.padding(3);
    EXPECT_EQ(report_of_run(stream.avchd(1, 1)),
              "* Starting analysis of: stream.ts\n"
              "* Packet size: 192 bytes/packet\n"
              "@0        (t=-1.0000000) TS PACKET: PID=0x1fff CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                  TIME=1 \n"
              "@192      (t=-1.0000000) TS PACKET: PID=0x1fff CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                  TIME=2 \n"
              "@384      (t=-1.0000000) TS PACKET: PID=0x1fff CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                  TIME=3 \n"
              "* Scan complete\n"
              "* Priority #1 errors: 0\n"
              "* Priority #2 errors: 0\n"
              "* Priority #3 errors: 0\n");
    EXPECT_EQ(run_errors, "WARNING: autodetect failed, pktsz=-1\n");
}

TEST_F(analysis_input, a_given_packet_size_is_not_detected)
{
    // 47 steps of 188 bytes and 46 of 192 meet: one packet decodes.
    settings.packet_size_mode = 0;
    settings.dump_ts_mode = 1;
    settings.skip_padding = false;
    stream_builder stream;
    stream.padding(60);
    EXPECT_EQ(report_of_run(stream.avchd()),
              "* Starting analysis of: stream.ts\n"
              "* Packet size: 188 bytes/packet\n"
              "@8836     (t=-1.0000000) TS PACKET: PID=0x1fff CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                 \n"
              "* Scan complete\n"
              "* Priority #1 errors: 0\n"
              "* Priority #2 errors: 0\n"
              "* Priority #3 errors: 0\n");
    EXPECT_EQ(run_errors, "");
    EXPECT_EQ(settings.packet_size_mode, 0);
}

TEST_F(analysis_input, a_last_packet_that_is_cut_is_not_read)
{
    stream_builder stream;
    stream.padding(2);
    settings.skip_padding = false;
    for (const int mode : {0, 1}) {
        settings.dump_ts_mode = 0;
        settings.packet_size_mode = mode;
        const bytes whole = mode == 0 ? stream.data() : stream.avchd();
        const std::string expected =
            "* Starting analysis of: stream.ts\n"
            "* Packet size: " +
            std::string(mode == 0 ? "188" : "192") +
            " bytes/packet\n"
            "@0        (t=-1.0000000) TS PACKET: PID=0x1fff CONT=0  ERR=0 PRI=0 SCRAM=0 "
            "AFC=PAYLOAD                 \n"
            "* Scan complete\n"
            "* Priority #1 errors: 0\n"
            "* Priority #2 errors: 0\n"
            "* Priority #3 errors: 0\n";
        settings.dump_ts_mode = 1;
        for (size_t size = whole.size() / 2; size < whole.size(); size += 11) {
            EXPECT_EQ(report_of_run(bytes(whole.begin(), whole.begin() + static_cast<long>(size))), expected);
            EXPECT_EQ(run_errors, "");
            EXPECT_EQ(run_status, 0);
        }
        const bytes cut(whole.begin(), whole.end() - 1);
        EXPECT_EQ(report_of_run(cut), expected);
    }
}

TEST_F(analysis_input, the_report_is_the_same_whatever_the_block_size)
{
    for (bytes stream : {some_stream().data(), some_stream().avchd(1, 300)}) {
        stream.resize(stream.size() - 5);
        start_over();
        const std::string expected = without_pointers(report_of_run(stream));
        EXPECT_GT(expected.size(), 50000u);
        for (const size_t block_size : {size_t{1}, size_t{7}, size_t{188}, size_t{1000}, size_t{6144}}) {
            start_over();
            EXPECT_EQ(without_pointers(report_of_run(stream, block_size)), expected) << block_size;
            EXPECT_EQ(run_errors, "");
        }
    }
}

TEST_F(analysis_input, the_estimate_is_the_same_whatever_the_block_size)
{
    const bytes stream = some_stream().data();
    for (const size_t block_size : {size_t{1}, size_t{7}, size_t{188}, size_t{1000}, size_t{256} * 1024}) {
        process_state_reset();
        settings.ts_bitrate_auto = true;
        report_of_run(stream, block_size);
        // 15 packets a second.
        EXPECT_EQ(run_errors, "Est bitrate: 22560.000000 bit/sec\n") << block_size;
        EXPECT_EQ(settings.ts_bitrate, 22560u) << block_size;
    }
}

TEST_F(analysis_input, a_stream_larger_than_a_block_is_read_to_its_end)
{
    settings.dump_ts_mode = 1;
    stream_builder stream;
    stream.padding(2000).payload(0x0100, repeated(0x10, 184));
    EXPECT_EQ(report_of_run(stream.data()),
              "* Starting analysis of: stream.ts\n"
              "* Packet size: 188 bytes/packet\n"
              "@376000   (t=-1.0000000) TS PACKET: PID=0x0100 CONT=0  ERR=0 PRI=0 SCRAM=0 "
              "AFC=PAYLOAD                 \n"
              "* Scan complete\n"
              "* Priority #1 errors: 0\n"
              "* Priority #2 errors: 0\n"
              "* Priority #3 errors: 0\n");
}

TEST_F(analysis_input, a_pipe_gives_the_same_report_as_the_file)
{
    for (const bytes &stream :
         {some_stream().data(), some_stream().avchd(1, 300), bytes(187, 0x47), bytes{}}) {
        start_over();
        const std::string expected = without_pointers(report_of_run(stream));
        const std::string expected_errors = run_errors;
        start_over();
        EXPECT_EQ(without_pointers(report_of_pipe(stream)), expected);
        EXPECT_EQ(run_errors, expected_errors);
        EXPECT_EQ(run_status, 0);
    }
}

TEST_F(analysis_input, the_estimate_fails_on_a_pipe_and_no_packet_is_lost)
{
    const bytes stream = some_stream().data();
    start_over();
    settings.ts_bitrate = 0;
    std::string expected = without_pointers(report_of_run(stream));
    const std::string size_line = "* Packet size: 188 bytes/packet\n";
    expected.insert(expected.find(size_line) + size_line.size(), "* Attempting to auto-detect TS bitrate\n"
                                                                 "!!! Autodetection failed\n");

    start_over();
    settings.ts_bitrate = 0;
    settings.ts_bitrate_auto = true;
    EXPECT_EQ(without_pointers(report_of_pipe(stream)), expected);
    EXPECT_EQ(run_errors, "");
    EXPECT_EQ(settings.ts_bitrate, 0u);
}
