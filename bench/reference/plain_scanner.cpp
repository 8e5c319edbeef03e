// A scanner as one would write it first: one read per packet, a decoded record, the continuity check of every
// PID.
#include "mpeg12_ts/packet.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: plain_scanner <file> <packet size>\n");
        return 1;
    }
    const int file = open(argv[1], O_RDONLY);
    const auto size = static_cast<size_t>(std::atoi(argv[2]));
    unsigned char buffer[mpeg_ts_m2ts_packet_size];
    uint8_t last[mpeg_ts_pid_count];
    unsigned long long errors = 0;
    mpeg_ts_packet packet;

    std::memset(last, 0xFF, sizeof(last));
    while (read(file, buffer, size) == static_cast<ssize_t>(size)) {
        if (!mpeg_ts_decode(&packet, buffer, size)) continue;
        uint8_t &counter = last[packet.pid];
        const unsigned expected = (counter + (packet.adaptation_field_control & 1u)) & 0xF;
        if (counter != 0xFF && packet.continuity_counter != expected) ++errors;
        counter = packet.continuity_counter;
    }
    std::printf("%llu errors\n", errors);
    close(file);
    return 0;
}
