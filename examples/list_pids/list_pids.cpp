// Lists the PIDs of a transport stream, with how many packets and how many continuity errors each has.
// Usage: list_pids FILE, where FILE holds 188-byte packets from its first byte on.

#include "mpeg12_ts/packet.h"

#include <cstdio>

namespace {

struct pid_count {
    unsigned long long packets = 0;
    unsigned long long continuity_errors = 0;
    unsigned last_counter = 0;
    bool repeated = false; ///< the last packet was the second of its counter
};

pid_count counts[mpeg_ts_pid_count];

/// The counter goes on with each payload, one packet may come twice, and a discontinuity may be announced:
/// ISO/IEC 13818-1 2.4.3.3. Padding has no counter.
void count(const mpeg_ts_packet &packet)
{
    pid_count &of_pid = counts[packet.pid];
    const bool has_payload = (packet.adaptation_field_control & 1) != 0;
    const bool due = packet.continuity_counter == ((of_pid.last_counter + (has_payload ? 1 : 0)) & 0xF);
    const bool repeats = has_payload && packet.continuity_counter == of_pid.last_counter && !of_pid.repeated;

    const bool checked = of_pid.packets != 0 && packet.pid != mpeg_ts_padding_pid;
    if (checked && !due && !repeats && !packet.discontinuity_indicator) ++of_pid.continuity_errors;
    of_pid.repeated = checked && repeats;
    of_pid.last_counter = packet.continuity_counter;
    ++of_pid.packets;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FILE\n", argv[0]);
        return 1;
    }
    std::FILE *const file = std::fopen(argv[1], "rb");
    if (file == nullptr) {
        std::perror(argv[1]);
        return 1;
    }

    unsigned char buffer[mpeg_ts_packet_size];
    unsigned long long rejected = 0;
    while (std::fread(buffer, sizeof(buffer), 1, file) == 1) {
        mpeg_ts_packet packet;
        if (mpeg_ts_decode(&packet, buffer, sizeof(buffer)))
            count(packet);
        else
            ++rejected;
    }
    std::fclose(file);

    for (unsigned pid = 0; pid < mpeg_ts_pid_count; ++pid)
        if (counts[pid].packets != 0)
            std::printf("PID 0x%04x %10llu packets %6llu continuity errors\n", pid, counts[pid].packets,
                        counts[pid].continuity_errors);
    if (rejected != 0) std::printf("%llu packets could not be decoded\n", rejected);
    return 0;
}
