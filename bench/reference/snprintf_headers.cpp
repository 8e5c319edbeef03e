// The header lines of a packet dump by the C library's formatting: each packet of a file that is read in
// large blocks, one snprintf for the line's fields, the text written out in large blocks. Packets of 188
// bytes.
#include "mpeg12_ts/packet.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: snprintf_headers <file>\n");
        return 1;
    }
    constexpr size_t block_size = size_t{mpeg_ts_packet_size} * 1394;
    constexpr size_t longest_line = 256;
    const int file = open(argv[1], O_RDONLY);
    std::vector<unsigned char> block(block_size);
    std::vector<char> text(65536);
    size_t held = 0;
    unsigned long long offset = 0;
    mpeg_ts_packet tsp;

    for (ssize_t size = 0; (size = read(file, block.data(), block_size)) > 0;) {
        for (size_t at = 0; at + mpeg_ts_packet_size <= static_cast<size_t>(size);
             at += mpeg_ts_packet_size) {
            if (mpeg_ts_decode(&tsp, block.data() + at, mpeg_ts_packet_size)) {
                held += static_cast<size_t>(std::snprintf(
                    text.data() + held, longest_line,
                    "@%-8llu (t=%.7f) TS PACKET: PID=0x%04x CONT=%-2u ERR=%u PRI=%u SCRAM=%u AFC=PAYLOAD                 %s\n",
                    offset, static_cast<double>(offset) * 8.0 / 20000000.0, tsp.pid, tsp.continuity_counter,
                    tsp.transport_error_indicator, tsp.transport_priority, tsp.transport_scrambling_control,
                    tsp.payload_unit_start_indicator ? " UNIT_START" : ""));
            }
            if (held + longest_line > text.size()) {
                if (write(STDOUT_FILENO, text.data(), held) < 0) return 1;
                held = 0;
            }
            offset += mpeg_ts_packet_size;
        }
    }
    if (write(STDOUT_FILENO, text.data(), held) < 0) return 1;
    close(file);
    return 0;
}
