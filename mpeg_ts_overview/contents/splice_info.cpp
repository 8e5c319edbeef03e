#include "mpeg_ts_overview/contents/splice_info.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_overview/contents/segmentation.h"

#include <cstddef>
#include <utility>

namespace {

constexpr size_t fixed_size = 14; ///< bytes up to and with splice_command_type
constexpr size_t crc_size = 4;
constexpr unsigned unstated_length = 0xFFF;
constexpr uint8_t segmentation_tag = 0x02;
constexpr unsigned cue_identifier = 0x43554549; // "CUEI"
constexpr uint64_t pts_mask = (uint64_t{1} << 33) - 1;

// Values of splice_command_type, table 7.
constexpr unsigned splice_null = 0x00;
constexpr unsigned splice_schedule = 0x04;
constexpr unsigned splice_insert = 0x05;
constexpr unsigned time_signal = 0x06;
constexpr unsigned bandwidth_reservation = 0x07;
constexpr unsigned private_command = 0xFF;

const char *command_name(unsigned splice_command_type)
{
    switch (splice_command_type) {
    case splice_null:
        return "splice_null";
    case splice_schedule:
        return "splice_schedule";
    case splice_insert:
        return "splice_insert";
    case time_signal:
        return "time_signal";
    case bandwidth_reservation:
        return "bandwidth_reservation";
    case private_command:
        return "private_command";
    default:
        return "reserved";
    }
}

/// splice_time(), 9.8.1: 33 bits of 90 kHz, or nothing.
std::optional<uint64_t> read_splice_time(bit_reader &in)
{
    const bool time_specified_flag = in.bits(1) != 0;
    if (!time_specified_flag) {
        in.bits(7); // reserved
        return std::nullopt;
    }
    in.bits(6); // reserved
    const uint64_t pts_time = in.bits64(33);
    return pts_time;
}

/// break_duration(), 9.8.2.
void read_break_duration(bit_reader &in, cue &message)
{
    message.auto_return = in.bits(1) != 0;
    in.bits(6); // reserved
    message.break_duration = in.bits64(33);
}

/// unique_program_id, avail_num and avails_expected.
void skip_avail(bit_reader &in)
{
    in.bits(16);
    in.bits(8);
    in.bits(8);
}

/// The times of a splice by components; the first stands for all.
std::optional<uint64_t> read_component_times(bit_reader &in, bool splice_immediate_flag)
{
    std::optional<uint64_t> first;

    const unsigned component_count = in.bits(8);
    for (unsigned i = 0; i < component_count && in.has(1); ++i) {
        in.bits(8); // component_tag
        if (splice_immediate_flag) continue;
        const std::optional<uint64_t> pts_time = read_splice_time(in);
        if (!first) first = pts_time;
    }
    return first;
}

/// splice_insert(), 9.7.3.
void read_splice_insert(bit_reader &in, cue &message)
{
    message.splice_event_id = in.bits(32);
    message.cancelled = in.bits(1) != 0; // splice_event_cancel_indicator
    in.bits(7);                          // event_id_compliance_flag, reserved
    if (message.cancelled) return;

    message.out_of_network = in.bits(1) != 0;
    const bool program_splice_flag = in.bits(1) != 0;
    const bool duration_flag = in.bits(1) != 0;
    const bool splice_immediate_flag = in.bits(1) != 0;
    in.bits(4); // reserved
    message.immediate = splice_immediate_flag;
    if (!program_splice_flag)
        message.pts_time = read_component_times(in, splice_immediate_flag);
    else if (!splice_immediate_flag)
        message.pts_time = read_splice_time(in);
    if (duration_flag) read_break_duration(in, message);
    skip_avail(in);
}

/// One event of splice_schedule(), 9.7.2.
void read_scheduled_event(bit_reader &in, cue &message)
{
    message.splice_event_id = in.bits(32);
    message.cancelled = in.bits(1) != 0; // splice_event_cancel_indicator
    in.bits(7);                          // reserved
    if (message.cancelled) return;

    message.out_of_network = in.bits(1) != 0;
    const bool program_splice_flag = in.bits(1) != 0;
    const bool duration_flag = in.bits(1) != 0;
    in.bits(5); // reserved
    if (program_splice_flag) {
        in.bits(32); // utc_splice_time
    } else {
        const unsigned component_count = in.bits(8);
        in.skip(size_t{5} * component_count); // component_tag, utc_splice_time
    }
    if (duration_flag) read_break_duration(in, message);
    skip_avail(in);
}

void read_splice_schedule(bit_reader &in, cue &message)
{
    const unsigned splice_count = in.bits(8);
    if (splice_count > 0) read_scheduled_event(in, message);
    for (unsigned i = 1; i < splice_count && in.has(1); ++i) {
        cue next;
        read_scheduled_event(in, next);
    }
}

void read_command(bit_reader &in, unsigned splice_command_type, cue &message)
{
    if (splice_command_type == splice_schedule) read_splice_schedule(in, message);
    if (splice_command_type == splice_insert) read_splice_insert(in, message);
    if (splice_command_type == time_signal) message.pts_time = read_splice_time(in);
}

void read_descriptors(bit_reader in, cue &message)
{
    const unsigned descriptor_loop_length = in.bits(16);
    if (!in.has(descriptor_loop_length)) return;
    in = bit_reader(in.position(), in.position() + descriptor_loop_length);
    bool one_is_cancelled = false;
    while (in.has(6)) {
        const unsigned splice_descriptor_tag = in.bits(8);
        const unsigned descriptor_length = in.bits(8);
        if (!in.has(descriptor_length)) break;
        const uint8_t *const body = in.position();
        const unsigned identifier = bit_reader(body, body + descriptor_length).bits(32);
        if (splice_descriptor_tag == segmentation_tag && identifier == cue_identifier)
            one_is_cancelled |= read_segmentation(body + 4, body + descriptor_length, message);
        in.skip(descriptor_length);
    }
    if (one_is_cancelled && message.segmentations.empty()) message.cancelled = true;
}

} // namespace

cue read_splice_info(const uint8_t *start, const uint8_t *fence)
{
    cue message;

    if (fence - start < static_cast<long>(fixed_size + crc_size)) {
        message.command = "cut off";
        return message;
    }
    fence -= crc_size;
    bit_reader in(start, fence);
    in.bits(8);  // table_id
    in.bits(1);  // section_syntax_indicator
    in.bits(1);  // private_indicator
    in.bits(2);  // sap_type
    in.bits(12); // section_length
    const unsigned protocol_version = in.bits(8);
    const bool encrypted_packet = in.bits(1) != 0;
    in.bits(6); // encryption_algorithm
    const uint64_t pts_adjustment = in.bits64(33);
    in.bits(8);  // cw_index
    in.bits(12); // tier
    const unsigned splice_command_length = in.bits(12);
    const unsigned splice_command_type = in.bits(8);

    // Later protocols may be laid out in another way.
    if (protocol_version != 0) {
        message.command = "reserved";
        return message;
    }
    message.command = encrypted_packet ? "encrypted" : command_name(splice_command_type);
    if (encrypted_packet) return message;
    const uint8_t *const command = in.position();
    cue told = message;
    read_command(in, splice_command_type, told);
    // Of a command that the section cuts short, fields that are not there would read as zeros.
    const bool is_whole = in.bytes_read() <= static_cast<size_t>(fence - start);
    if (is_whole) message = std::move(told);
    if (message.pts_time) message.pts_time = (*message.pts_time + pts_adjustment) & pts_mask;

    if (splice_command_length == unstated_length) {
        if (splice_command_type != private_command) read_descriptors(in, message);
    } else if (static_cast<ptrdiff_t>(splice_command_length) < fence - command) {
        read_descriptors(bit_reader(command + splice_command_length, fence), message);
    }
    return message;
}
