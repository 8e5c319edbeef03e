#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/descriptors/descriptor_loop.h"
#include "mpeg_ts_analysis/driver/run_analysis.h"
#include "mpeg_ts_analysis/tables/table_dispatch.h"
#include "mpeg_ts_analysis/teletext/teletext_pes.h"

#include <cstdlib>
#include <memory>
#include <unistd.h>

namespace {

constexpr size_t packet_size = 188;

/// A file that is gone with its owner.
class temporary_file {
public:
    explicit temporary_file(const bytes &content)
    {
        const int descriptor = mkstemp(path);
        EXPECT_GE(descriptor, 0);
        size_t done = 0;
        while (done < content.size()) {
            const ssize_t written = write(descriptor, content.data() + done, content.size() - done);
            if (written <= 0) break;
            done += static_cast<size_t>(written);
        }
        EXPECT_EQ(done, content.size());
        close(descriptor);
    }
    ~temporary_file() { unlink(path); }
    temporary_file(const temporary_file &) = delete;
    temporary_file &operator=(const temporary_file &) = delete;

    char path[32] = "/tmp/mpeg_ts_test_XXXXXX";
};

std::string with_path_named(std::string text, const std::string &path)
{
    for (size_t at = text.find(path); at != std::string::npos; at = text.find(path, at))
        text.replace(at, path.size(), "stream.ts");
    return text;
}

} // namespace

report_test::report_test()
{
    process_state_reset();
    mpeg_ts_pid_tracking_init_tracking();
    settings.packet_size = packet_size;
    report_divert(&printed);
}

report_test::~report_test()
{
    report_divert(nullptr);
    process_state_reset();
}

std::string report_test::report()
{
    report_flush();
    std::string text;
    text.swap(printed);
    return text;
}

mpeg_ts_pid_tracking *report_test::track(unsigned pid, uint16_t type, unsigned program_number)
{
    mpeg_ts_pid_tracking *const t =
        mpeg_ts_pid_tracking_start(static_cast<uint16_t>(pid), type, static_cast<uint16_t>(program_number));
    if (t != nullptr && carries_sections(type))
        mpeg_ts_table_assembly_init(&t->tbl_asm, private_section_storage);
    return t;
}

std::string report_test::report_of_descriptors(const bytes &loop)
{
    mpeg_ts_pid_tracking *t = mpeg_ts_pid_tracking_get(descriptor_pid);
    if (t == nullptr) t = track(descriptor_pid, TRACK_PMT, 1);

    // A block of exactly this size, so that the address sanitizer sees one byte too many.
    const std::unique_ptr<uint8_t[]> block(new uint8_t[loop.size()]);
    std::copy(loop.begin(), loop.end(), block.get());
    descriptor_loop(t, block.get(), block.get() + loop.size());
    return report();
}

std::string report_test::report_of_section(unsigned pid, const bytes &section)
{
    return report_of_packets(stream_builder().section(pid, section).data());
}

std::string report_test::report_of_packets(const bytes &stream)
{
    for (size_t at = 0; at + packet_size <= stream.size(); at += packet_size) {
        mpeg_ts_packet packet;
        if (!mpeg_ts_decode(&packet, stream.data() + at, packet_size)) continue;
        mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(packet.pid);
        if (t == nullptr) continue;
        if (carries_sections(t->type)) on_ts_table_packet(t, &packet);
        if (t->type == TRACK_TELETEXT) on_teletext_packet(t, &packet);
    }
    return report();
}

std::string report_test::report_of_run(const bytes &stream, size_t block_size)
{
    const temporary_file file(stream);

    testing::internal::CaptureStderr();
    run_status = run_analysis(file.path, block_size);
    run_errors = with_path_named(testing::internal::GetCapturedStderr(), file.path);
    return with_path_named(report(), file.path);
}
