// Captures of real broadcasts, in the folder that the environment variable MPEG_TS_STREAMS names. They are no
// part of this repository; without them the tests are skipped.
#include "tests/support/report_test.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace {

std::vector<std::string> capture_paths()
{
    std::vector<std::string> paths;
    const char *const folder = std::getenv("MPEG_TS_STREAMS");
    if (folder == nullptr) return paths;
    for (const auto &entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".ts") paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    return paths;
}

bytes content_of(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return bytes(std::istreambuf_iterator<char>(file), {});
}

bool ends_with(const std::string &text, const std::string &end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// Lines of a report that begin with a text.
size_t count_lines(const std::string &text, const std::string &start)
{
    size_t count = text.compare(0, start.size(), start) == 0 ? 1 : 0;
    for (size_t at = text.find("\n" + start); at != std::string::npos; at = text.find("\n" + start, at + 1))
        ++count;
    return count;
}

/// Continuity errors of a stream of 188-byte packets, counted without the library.
size_t continuity_errors(const bytes &stream)
{
    std::map<unsigned, unsigned> last;
    size_t errors = 0;
    for (size_t at = 0; at + 188 <= stream.size(); at += 188) {
        const unsigned pid = (stream[at + 1] & 0x1Fu) << 8 | stream[at + 2];
        const unsigned flags = stream[at + 3];
        if (stream[at] != 0x47 || pid == 0x1FFF || flags >> 6 != 0) continue;
        if ((flags & 0x20) != 0 && stream[at + 4] > 183) continue;
        const auto before = last.find(pid);
        const unsigned step = (flags >> 4) & 1;
        if (before != last.end() && (before->second + step) % 16 != (flags & 0xF)) ++errors;
        last[pid] = flags & 0xF;
    }
    return errors;
}

} // namespace

class captures : public report_test {
protected:
    captures() : paths(capture_paths()) {}

    void SetUp() override
    {
        if (paths.empty()) GTEST_SKIP() << "MPEG_TS_STREAMS does not name a folder of captures";
    }

    std::vector<std::string> paths;
};

TEST_F(captures, every_capture_is_scanned_to_its_end_in_every_mode)
{
    for (const std::string &path : paths) {
        const bytes stream = content_of(path);
        for (const uint8_t descriptors :
             {dump_descriptors_none, dump_descriptors_contents, dump_descriptors_raw}) {
            for (const uint8_t packets : {dump_ts_off, dump_ts_header, dump_ts_contents}) {
                process_state_reset();
                settings.dump_descriptors_mode = descriptors;
                settings.dump_ts_mode = packets;
                settings.dump_tables = descriptors == dump_descriptors_raw;
                const std::string text = report_of_run(stream);
                EXPECT_EQ(run_status, 0) << path;
                EXPECT_TRUE(ends_with(text, "* Priority #3 errors: 0\n")) << path;
            }
        }
    }
}

TEST_F(captures, continuity_alarms_are_those_of_an_independent_count)
{
    for (const std::string &path : paths) {
        const bytes stream = content_of(path);
        process_state_reset();
        settings.packet_size_mode = 0;
        const std::string text = report_of_run(stream);
        EXPECT_EQ(count_lines(text, "!!! ALARM: TS continuity counter error"), continuity_errors(stream))
            << path;
        EXPECT_EQ(errors.continuity_errors, continuity_errors(stream)) << path;
    }
}

TEST_F(captures, reports_do_not_depend_on_the_block_size)
{
    for (const std::string &path : paths) {
        bytes stream = content_of(path);
        stream.resize(std::min<size_t>(stream.size(), size_t{188} * 2000));
        process_state_reset();
        const std::string text = report_of_run(stream);
        process_state_reset();
        EXPECT_EQ(report_of_run(stream, 1000), text) << path;
    }
}

TEST_F(captures, spanish_and_english_texts_of_psip_come_out_as_utf_8)
{
    const auto path = std::find_if(paths.begin(), paths.end(), [](const std::string &name) {
        return name.find("atsc_psip") != std::string::npos;
    });
    ASSERT_NE(path, paths.end());
    const std::string text = report_of_run(content_of(*path));
    EXPECT_NE(text.find("                    string: 'Se emitir\xC3\xA1 programaci\xC3\xB3n pagada.'\n"),
              std::string::npos);
    EXPECT_NE(text.find("                    string: 'Telemundo'\n"), std::string::npos);
}
