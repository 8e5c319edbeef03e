// Writes the streams of the comparison that no encoder makes: make_bench_streams <folder> <megabytes>.
//   dense.ts   sections that are collected, checked and dropped: EIT schedule of another transport stream
//   tables.ts  sections that are printed: PAT, PMT, SDT and EIT with descriptors, over and over
//   guide.ts   a satellite multiplex rich in EIT: of its own programs, which is printed, and of other
//              transport streams, which is not; a PAT every ten packets
#include "bench/event_text.h"
#include "tests/support/stream_builder.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace {

constexpr size_t megabyte = 1000000;

/// Writes a stream again and again, its continuity counters running on, until it is as long as asked for.
void write_repeated(const std::string &path, const bytes &stream, size_t size)
{
    std::ofstream file(path, std::ios::binary);
    uint8_t next[0x2000] = {};
    bytes round = stream;

    for (size_t written = 0; written < size; written += round.size()) {
        for (size_t at = 0; at < round.size(); at += 188) {
            const unsigned pid = (round[at + 1] & 0x1Fu) << 8 | round[at + 2];
            round[at + 3] = static_cast<uint8_t>((round[at + 3] & 0xF0u) | (next[pid]++ & 0xFu));
        }
        file.write(reinterpret_cast<const char *>(round.data()), static_cast<std::streamsize>(round.size()));
    }
    if (!file.flush()) {
        std::fprintf(stderr, "cannot write %s\n", path.c_str());
        std::exit(1);
    }
}

stream_builder dense()
{
    stream_builder stream;
    for (unsigned i = 0; i < 200; ++i)
        stream.section(0x0012, long_section(0x60, i, repeated(static_cast<uint8_t>(i), 3900)));
    return stream;
}

stream_builder tables()
{
    stream_builder stream;
    const bytes service = descriptor(0x48, join({hex("01"), counted("Provider"), counted("A service")}));
    const bytes event =
        descriptor(0x4D, join({text_bytes("eng"), counted("An event"), counted("What happens in it.")}));
    const bytes component = descriptor(0x50, join({hex("F1 03 01"), text_bytes("eng")}));
    const bytes descriptors =
        join({event, component, descriptor(0x54, hex("1000")), descriptor(0x55, hex("47425204"))});
    bytes services = hex("0001FF");
    bytes events = hex("0001 0001 00 4E");

    for (unsigned i = 1; i <= 20; ++i)
        services =
            join({services, big_endian(i, 2), hex("FF"), big_endian(0x8000u | service.size(), 2), service});
    for (unsigned i = 1; i <= 20; ++i)
        events = join({events, big_endian(i, 2), hex("C079123456 013000"),
                       big_endian(0x8000u | descriptors.size(), 2), descriptors});
    stream.section(0x0000, pat_section(1, {
                                              {1, 0x0100},
                                              {2, 0x0200}
    }));
    stream.section(0x0100, pmt_section(1, 0x0101,
                                       {
    },
                                       {{0x02, 0x0101, descriptor(0x02, hex("1B445F"))},
                                        {0x04, 0x0102, descriptor(0x0A, hex("656E6700"))},
                                        {0x06, 0x0103, descriptor(0x6A, hex("8042"))}}));
    stream.section(0x0011, long_section(0x42, 1, services)).section(0x0012, long_section(0x4E, 1, events));
    return stream;
}

constexpr unsigned programs = 8;
constexpr unsigned first_pmt_pid = 0x0100;

/// An EIT section of count events.
bytes event_section(unsigned table_id, unsigned service_id, unsigned transport_stream_id, unsigned count)
{
    const std::string story = story_of(service_id, 6);
    bytes events = join({big_endian(transport_stream_id, 2), hex("0001 00"), big_endian(table_id, 1)});
    for (unsigned i = 0; i < count; ++i) {
        const bytes loop = event_descriptors("Event " + std::to_string(100 * service_id + i), story);
        events = join({events, big_endian(100 * service_id + i, 2), hex("E48A091811 005352"),
                       big_endian(loop.size(), 2), loop});
    }
    return long_section(table_id, service_id, events);
}

/// What announces the programs, but for the PAT.
void announce(stream_builder &stream)
{
    bytes services = hex("0001FF");
    for (unsigned program = 1; program <= programs; ++program) {
        const unsigned pid = first_pmt_pid * program;
        stream.section(pid, pmt_section(program, pid + 1,
                                        {
        },
                                        {{0x1B, pid + 1, descriptor(0x52, hex("01"))},
                                         {0x04, pid + 2, descriptor(0x0A, hex("656E6700"))},
                                         {0x06, pid + 3, descriptor(0x6A, hex("8042"))}}));
        const std::string name = "Service " + std::to_string(program);
        const bytes service = descriptor(0x48, join({hex("19"), counted("Provider"), counted(name)}));
        services = join(
            {services, big_endian(program, 2), hex("FF"), big_endian(0x8000u | service.size(), 2), service});
    }
    stream.section(0x0011, long_section(0x42, 1, services));
}

stream_builder guide()
{
    stream_builder stream;
    std::vector<std::pair<unsigned, unsigned>> entries;
    for (unsigned program = 1; program <= programs; ++program)
        entries.emplace_back(program, first_pmt_pid * program);
    const bytes pat = pat_section(1, entries);

    for (unsigned round = 0; round < 10; ++round) {
        announce(stream);
        for (unsigned service = 1; service <= programs; ++service) {
            stream.section(0x0000, pat).section(0x0012, event_section(0x4E, service, 1, 1));
            stream.section(0x0012, event_section(0x4F, service, 2, 1));
            stream.section(0x0012, event_section(0x60, service, 3, 4));
            stream.section(0x0000, pat).section(0x0012, event_section(0x4F, service, 4, 2));
        }
        stream.section(0x0012, event_section(0x50, 1 + round % programs, 1, 4));
    }
    return stream;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: make_bench_streams <folder> <megabytes>\n");
        return 1;
    }
    const std::string folder = argv[1];
    const size_t size = std::strtoul(argv[2], nullptr, 10) * megabyte;
    write_repeated(folder + "/dense.ts", dense().data(), size);
    write_repeated(folder + "/tables.ts", tables().data(), size / 10);
    write_repeated(folder + "/guide.ts", guide().data(), size);
    return 0;
}
