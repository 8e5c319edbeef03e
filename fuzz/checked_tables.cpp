// Sections on PIDs of every kind, as a script times them, through tables and contents to the checks. Each
// record is a PID with a kind and a time, then a section without its checksum, a payload as it is, or an
// event.
#include "fuzz/overview_promises.h"
#include "fuzz/support.h"

#include "mpeg12_ts/crc32.h"
#include "mpeg_ts_overview/checks/checks.h"
#include "mpeg_ts_overview/contents/contents.h"
#include "mpeg_ts_overview/tables/stream_tables.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace {

using byte_list = std::vector<uint8_t>;

constexpr uint16_t pids[] = {0x0000, 0x0001, 0x0010, 0x0011, 0x0012, 0x0013, 0x0014, 0x001F,
                             0x0024, 0x1FFB, 0x0100, 0x0200, 0x0103, 0x1D00, 0x1E00, 0x0300};

struct conditions {
    limits other_limits;
    bool whole_multiplex = false;
    std::optional<bool> atsc;
};

class script_run final : private section_consumer {
public:
    explicit script_run(const conditions &wanted)
        : how(wanted), tables(how.other_limits, how.whole_multiplex, how.atsc),
          contents(std::make_unique<recording_contents>(tables.uses(), tables.programs(), clocks))
    {
        now.ticks = 0;
        tables.see(now);
    }

    void take_all(fuzz_input in)
    {
        while (in.left() > 0) take_record(in);
    }

    overview finish()
    {
        overview found;
        const auto occurred = [&](uint16_t pid) { return tables.sections().has_seen(pid); };
        ++now.packet;
        now.byte += mpeg_ts_packet_size;
        tables.finish(now, occurred);
        note_recording(found);
        found.programs = tables.programs().facts();
        contents->finish(found);
        found.tables = tables.rows().facts();
        promise_counts(found);
        found.checks = verdict(found);
        tables.add_to(found.limits_reached);
        return found;
    }

private:
    void on_section(const table_section &section) override
    {
        fuzz_promise(section.begun.packet <= section.at.packet && section.at.packet == now.packet);
        fuzz_promise(section.fence - section.start == 3 + section.header.section_length);
        ++good_sections;
        for (const uint16_t pid : tables.programs().changed_pids()) fuzz_promise(pid < mpeg_ts_pid_count);
        contents->on_section(section);
    }

    void take_record(fuzz_input &in)
    {
        const unsigned call = in.byte();
        const uint16_t pid = pids[call & 15];
        advance(in.byte());
        switch (call >> 4 & 7) {
        case 0:
        case 1:
        case 2:
        case 3:
            take_payload(pid, section_payload(in, true), true);
            break;
        case 4:
            take_payload(pid, section_payload(in, false), true);
            break;
        case 5:
        case 6: {
            const fuzz_input part = in.part(in.byte() % 185);
            take_payload(pid, byte_list(part.p, part.fence), (call & 0x20) != 0, call >> 7);
            break;
        }
        default:
            take_event(pid, in.byte());
            break;
        }
    }

    /// Time goes on by up to 31 times 1 ms, 20 ms, 0.3 s or 1 s; now and then it breaks.
    void advance(unsigned step)
    {
        constexpr int64_t units[] = {27000, 540000, 8100000, 27000000};
        ++now.packet;
        now.byte += mpeg_ts_packet_size;
        *now.ticks += units[step >> 6] * (step & 0x1F);
        if ((step & 0x3F) != 0x3F) return;
        ++now.stretch;
        tables.see(now);
    }

    /// A pointer_field of 0 and a section with what follows section_length from the input.
    static byte_list section_payload(fuzz_input &in, bool is_long)
    {
        byte_list payload = {0, in.byte(), 0, 0};
        const fuzz_input body = in.part(in.word() & 0xFFF);
        payload.insert(payload.end(), body.p, body.fence);
        const size_t section_length = std::min<size_t>(body.left() + (is_long ? 4 : 0), 0xFFF);
        payload[2] = static_cast<uint8_t>((is_long ? 0xB0 : 0x30) | section_length >> 8);
        payload[3] = static_cast<uint8_t>(section_length);
        if (!is_long && payload[1] != 0x73 && payload[1] != 0xFC) return payload;

        // Where it has a CRC_32 though it is short, that takes the last four bytes.
        if (!is_long) payload.resize(payload.size() - std::min<size_t>(body.left(), 4));
        const uint32_t crc = mpeg_ts_crc32(payload.data() + 1, payload.data() + payload.size());
        for (int shift = 24; shift >= 0; shift -= 8) payload.push_back(static_cast<uint8_t>(crc >> shift));
        return payload;
    }

    void take_payload(uint16_t pid, const byte_list &payload, bool unit_start, bool is_duplicate = false)
    {
        ts_packet packet;
        packet.pid = pid;
        packet.payload = payload.data();
        packet.fence = payload.data() + payload.size();
        packet.payload_unit_start_indicator = unit_start;
        packet_sequence sequence;
        sequence.duplicate = is_duplicate;
        take_packet(packet, sequence);
    }

    void take_packet(ts_packet &packet, const packet_sequence &sequence)
    {
        packet.at = now;
        if (packet.PCR || packet.discontinuity_indicator) clocks.on_packet(packet, sequence);
        if (contents->wants(packet.pid)) contents->on_packet(packet, sequence);
        if (packet.PCR) tables.see(now);
        if (tables.collects(packet.pid)) tables.on_packet(packet, sequence, *this);
    }

    /// A packet without payload that something is the matter with, or a loss of sync.
    void take_event(uint16_t pid, unsigned event)
    {
        ts_packet packet;
        const uint8_t nothing = 0;
        packet.pid = pid;
        packet.payload = packet.fence = &nothing;
        packet.transport_error_indicator = (event & 1) != 0;
        packet.transport_scrambling_control = event >> 1 & 3;
        packet.discontinuity_indicator = (event & 8) != 0;
        if ((event & 0x10) != 0) packet.PCR = static_cast<uint64_t>(*now.ticks);
        packet_sequence sequence;
        sequence.broken = (event & 0x20) != 0;
        if (event >> 6 == 3) {
            tables.on_sync_loss();
            contents->on_sync_loss();
        }
        take_packet(packet, sequence);
    }

    void note_recording(overview &found) const
    {
        found.recording.packet_size = mpeg_ts_packet_size;
        found.recording.packets = now.packet;
        found.recording.bytes = now.byte;
        found.recording.duration_ticks = now.ticks;
        found.recording.time_base = time_base_kind::bitrate;
        found.standard = tables.standard();
        for (const uint16_t pid : pids) {
            pid_facts row;
            row.pid = pid;
            row.crc_errors = tables.sections().crc_errors(pid);
            row.incomplete_sections = tables.sections().incomplete_sections(pid);
            if (tables.sections().has_seen(pid)) found.pids.push_back(row);
        }
    }

    void promise_counts(const overview &found) const
    {
        uint64_t sections = 0;
        for (const table_facts &row : found.tables.rows) sections += row.sections;
        fuzz_promise(sections == good_sections && found.tables.not_kept == 0);
        fuzz_promise(tables.rows().changed_under_same_version().count <= good_sections);
    }

    std::vector<check_result> verdict(const overview &found) const
    {
        const transport_faults faults;
        const continuity_meter continuity;
        const pcr_meter pcr(tables.times(), 1, 1);
        const time_stamp_meter stamps(clocks, tables.times(), 1);
        const absence_meter absence(tables.times(), ticks_per_second);
        recording_end end;
        end.at = now;
        return judge({.faults = faults,
                      .continuity = continuity,
                      .tables = tables,
                      .pcr = pcr,
                      .time_stamps = stamps,
                      .absence = absence,
                      .facts = found,
                      .end = end,
                      .other_limits = how.other_limits,
                      .whole_multiplex = how.whole_multiplex});
    }

    conditions how;
    stream_tables tables;
    program_clocks clocks;
    std::unique_ptr<recording_contents> contents;
    moment now;
    uint64_t good_sections = 0;
};

overview run(fuzz_input in, const conditions &how)
{
    script_run script(how);
    script.take_all(in);
    overview found = script.finish();
    promise_contents(found);
    promise_checks(found);
    return found;
}

limits limits_of(unsigned choice, int64_t factor)
{
    limits values;
    const int64_t ticks = factor * 2700000 * (1 + (choice & 7));
    if ((choice & 8) != 0) values.pat_interval_ticks = values.pmt_interval_ticks = ticks;
    if ((choice & 0x10) != 0) values.sdt_interval_ticks = values.nit_interval_ticks = ticks;
    if ((choice & 0x20) != 0) values.eit_schedule_ticks = ticks;
    if ((choice & 0x40) != 0) values.si_minimum_gap_ticks = ticks;
    return values;
}

/// No more breaks a limit that is wider; a gap, one that is narrower.
void check_wider_limits(const overview &narrow, const overview &wide)
{
    fuzz_promise(narrow.checks.size() == wide.checks.size());
    for (size_t i = 0; i < narrow.checks.size(); ++i) {
        const uint64_t count = narrow.checks[i].log.count;
        const uint64_t count_when_wide = wide.checks[i].log.count;
        const bool is_gap = narrow.checks[i].id == "3.2b";
        fuzz_promise(is_gap ? count_when_wide >= count : count_when_wide <= count);
    }
}

/// What must be there adds faults to a multiplex, and takes none away.
void check_whole_multiplex(const overview &part, const overview &whole)
{
    for (size_t i = 0; i < part.checks.size(); ++i)
        fuzz_promise(part.checks[i].log.count <= whole.checks[i].log.count);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    const unsigned modes = in.byte();
    const unsigned choice = in.byte();
    conditions how;
    how.whole_multiplex = (modes & 1) != 0;
    if ((modes & 2) != 0) how.atsc = (modes & 4) != 0;
    how.other_limits = limits_of(choice, 1);

    const overview found = run(in, how);
    promised_json(json_of(found));
    conditions other = how;
    if (how.whole_multiplex || (modes & 8) != 0) {
        other.other_limits = limits_of(choice, 2);
        check_wider_limits(found, run(in, other));
    } else {
        other.whole_multiplex = true;
        check_whole_multiplex(found, run(in, other));
    }
    return 0;
}
