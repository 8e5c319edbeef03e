// A recording in which every store is full: what the page must still hold and browsers open.
#include "page/building.h"
#include "page/recordings.h"

namespace {

const std::string long_text(400, '<');

void add_programs(overview &found)
{
    for (unsigned number = 0; number < 1000; ++number) {
        program_facts program;
        program.number = static_cast<uint16_t>(number);
        program.pmt_pid = static_cast<uint16_t>(8 * number);
        program.pcr_pid = static_cast<uint16_t>(8 * number + 1);
        program.service_name = long_text;
        for (unsigned stream = 1; stream < 8; ++stream) {
            const auto pid = static_cast<uint16_t>(8 * number + stream);
            program.streams.push_back(
                {pid, false, 0x02, "MPEG-2 video", "video", "eng", "1280x720 25p", 7000000, 0.0001});
        }
        found.programs.push_back(program);
    }
}

void add_meters(overview &found)
{
    for (uint16_t pid = 0; pid < 8191; ++pid) add_pid(found, pid, 10000000000ULL + pid, 0.5);
    for (uint16_t pid = 0; pid < 256; ++pid) {
        add_pcr(found, static_cast<uint16_t>(8 * pid + 1));
        add_time_stamps(found, static_cast<uint16_t>(8 * pid + 1));
    }
    for (unsigned number = 0; number < 65536; ++number)
        add_table(found, 0x0012, 0x50, static_cast<uint16_t>(number), "EIT schedule", 10);
    for (unsigned number = 0; number < 1000; ++number)
        found.breaks.kept.push_back(
            {at_s(found, number * 86.0), time_break_kind::irregular_span, ticks_per_second});
}

void add_contents(overview &found)
{
    const std::string text = std::string(8 * 1024 * 1024 / 20000 - 12, 'x');
    for (uint16_t service = 0; service < 1000; ++service) add_guide(found, service, 20, "event", text);
    add_cues(found, 0x0150, 5000);
    for (cue &message : found.cues.cues)
        message.segmentations.assign(4, {0x34, "Provider Placement Opportunity Start", "08 00 1F"});
    add_teletext(found, 0x0204, 2000, "<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<");
    for (unsigned number = 0; number < 500; ++number)
        found.transcript.faults.push_back({long_text, 0x0100, 0x02, 100, at_s(found, 1), at_s(found, 86000),
                                           std::vector<uint64_t>(100, 1000000000000 + number)});
    for (unsigned number = 0; number < 4096; ++number)
        add_section(found, 0x0012, 0x50, "* Event Information Section",
                    std::string(1000, '\n') + std::to_string(number) + "\n", number);
}

} // namespace

overview hostile_recording()
{
    overview found = begun_recording("hostile.ts", 86400, 60000000);
    add_meters(found);
    add_programs(found);
    add_contents(found);
    add_checks(found);
    for (check_result &check : found.checks) {
        check.outcome = check_outcome::fail;
        check.log.details.assign(20, {at_s(found, 4000), 0x0100, std::string(300, 'x')});
    }
    for (unsigned number = 0; number < 20; ++number) found.limits_reached.push_back({"cues", 5000, number});
    add_null_packets(found, 1000000);
    return found;
}
