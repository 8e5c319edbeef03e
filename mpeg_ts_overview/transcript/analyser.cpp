#include "mpeg_ts_overview/transcript/analyser.h"

#include "mpeg_ts_analysis/health/tracking.h"
#include "mpeg_ts_analysis/report/invariant.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"
#include "mpeg_ts_analysis/tables/table_dispatch.h"

#include <algorithm>
#include <csetjmp>
#include <cstring>

namespace {

constexpr uint8_t stuffing = 0xFF;

/// Where a broken invariant goes back to.
jmp_buf before_section;

void leave()
{
    std::longjmp(before_section, 1);
}

/// Puts the section where the analyser collects those of the PID, as if its last packet had just come: with
/// that packet's stuffing, which the analyser reads of a section that is shorter than it says.
void collect(mpeg_ts_table_assembly &assembly, const uint8_t *start, const uint8_t *fence)
{
    const auto size = static_cast<size_t>(fence - start);
    const auto room = static_cast<size_t>(assembly.fence - assembly.buffer);

    std::memcpy(assembly.buffer, start, size);
    assembly.write = assembly.buffer + size;
    std::memset(assembly.write, stuffing, std::min<size_t>(mpeg_ts_packet_size, room - size));
    assembly.closed = false;
}

/// Has the section in hand handled. Returns false when the analyser stops at it. Nothing that has a
/// destructor lives in here: the way out may be the long one.
bool handle_section(mpeg_ts_pid_tracking *t, const mpeg_ts_packet *packet)
{
    if (setjmp(before_section) != 0) return false;
    take_ready_section(t, packet, false);
    return true;
}

} // namespace

analyser::analyser(const transcript_settings &from_command_line)
{
    process_state_reset();
    settings.packet_size = mpeg_ts_packet_size;
    settings.assume_country = from_command_line.assume_country;
    settings.atsc_mode = from_command_line.atsc_mode;
    mpeg_ts_pid_tracking_init_tracking();
}

analyser::~analyser()
{
    process_state_reset();
}

void analyser::on_atsc_packet()
{
    if (settings.assume_country == 0 && settings.atsc_mode == -1) settings.atsc_mode = 1;
}

bool analyser::follows(uint16_t pid) const
{
    const mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(pid);
    return t != nullptr && carries_sections(t->type) && t->tbl_asm.buffer != nullptr;
}

analyser::answer analyser::show(const table_section &section)
{
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(section.pid);
    mpeg_ts_packet packet = {};
    answer given;

    packet.pid = section.pid;
    collect(t->tbl_asm, section.start, section.fence);
    report_divert(&given.text);
    invariant_handler = leave;
    given.stops = !handle_section(t, &packet);
    invariant_handler = nullptr;
    report_divert(nullptr);
    return given;
}
