// Writes first inputs for every entry into folders of their names: make_seeds <folder>. They come from the
// streams that the golden reports are made of.
#include "tests/streams/recipes.h"

#include "mpeg12_ts/bytes.h"
#include "mpeg12_ts/packet.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

namespace {

std::filesystem::path folder;
unsigned seed_count = 0;

void write(const char *entry, const bytes &content)
{
    std::filesystem::create_directories(folder / entry);
    std::ofstream file(folder / entry / ("seed_" + std::to_string(seed_count++)), std::ios::binary);
    file.write(reinterpret_cast<const char *>(content.data()), static_cast<std::streamsize>(content.size()));
}

/// The kind of record that the sections entry carries this PID as.
unsigned kind_of(unsigned pid)
{
    const std::map<unsigned, unsigned> kinds = {
        {0x0000, 0},
        {0x0100, 1},
        {0x0200, 1},
        {0x0010, 2},
        {0x0011, 3},
        {0x0012, 4},
        {0x1FFB, 5},
        {0x1D00, 6},
        {0x1E00, 7},
        {0x0103, 8}
    };
    const auto found = kinds.find(pid);
    return found == kinds.end() ? 8 : found->second;
}

/// A section without its checksum as a record of the sections entry.
bytes record_of(unsigned pid, const bytes &section)
{
    const bool is_long = (section[1] & 0x80) != 0;
    const bytes body(section.begin() + 3, section.end() - (is_long ? 4 : 0));
    return join({
        {static_cast<uint8_t>(kind_of(pid)), section[0], static_cast<uint8_t>(is_long ? 0 : 1)},
        big_endian(body.size(), 2),
        body
    });
}

/// The sections of a stream in the order of their beginnings, with their PIDs.
std::vector<std::pair<unsigned, bytes>> sections_of(const bytes &stream)
{
    std::vector<std::pair<unsigned, bytes>> found;
    std::map<unsigned, size_t> open;

    for (size_t at = 0; at + mpeg_ts_packet_size <= stream.size(); at += mpeg_ts_packet_size) {
        mpeg_ts_packet packet;
        if (!mpeg_ts_decode(&packet, stream.data() + at, mpeg_ts_packet_size) || packet.payload == nullptr)
            continue;
        const uint8_t *p = packet.payload;
        if (packet.payload_unit_start_indicator) {
            p += 1 + *p;
            if (p >= packet.fence) continue;
            open[packet.pid] = found.size();
            found.emplace_back(packet.pid, bytes());
        }
        const auto place = open.find(packet.pid);
        if (place == open.end()) continue;
        bytes &section = found[place->second].second;
        section.insert(section.end(), p, packet.fence);
    }
    std::erase_if(found, [](auto &each) {
        bytes &section = each.second;
        const size_t size = 3 + (big_endian_16(section.data() + 1) & 0xFFFu);
        if (section[0] == 0xFF || size > section.size() || size < 12) return true;
        section.resize(size);
        return false;
    });
    return found;
}

/// Padding says nothing to the analyser and makes slow inputs.
bytes without_padding(const bytes &stream)
{
    bytes kept;
    for (auto p = stream.begin(); p != stream.end(); p += mpeg_ts_packet_size)
        if ((big_endian_16(&*p + 1) & 0x1FFF) != mpeg_ts_padding_pid)
            kept.insert(kept.end(), p, p + mpeg_ts_packet_size);
    return kept;
}

/// The packets of the PIDs that carry sections, as raw payloads of the collector's entry.
void write_collections(const bytes &stream)
{
    std::map<unsigned, bytes> payloads;
    for (size_t at = 0; at + mpeg_ts_packet_size <= stream.size(); at += mpeg_ts_packet_size) {
        mpeg_ts_packet packet;
        if (!mpeg_ts_decode(&packet, stream.data() + at, mpeg_ts_packet_size) || packet.payload == nullptr)
            continue;
        const bytes payload(packet.payload, packet.fence);
        bytes &all = payloads[packet.pid];
        all = join({all, {packet.payload_unit_start_indicator}, big_endian(payload.size(), 1), payload});
    }
    for (const auto &[pid, all] : payloads) write("section_collector", all);
}

void write_seeds_of(const bytes &stream, const bytes &options)
{
    bytes all;
    for (const auto &[pid, section] : sections_of(stream)) {
        const bytes record = record_of(pid, section);
        all = join({all, record});
        write("sections", join({options, record}));
        write("descriptor_loop", join({options, bytes(section.begin() + 8, section.end() - 4)}));
        const size_t part = std::min<size_t>(section.size(), 180);
        write("table_assembly", join({hex("0400 03"), big_endian(part + 1, 1), hex("00"),
                                      bytes(section.begin(), section.begin() + static_cast<long>(part))}));
    }
    write("sections", join({options, all}));
    write_collections(stream);
    write("whole_stream", join({options, hex("07"), without_padding(stream)}));
    write("overview_outputs", join({options, hex("0C"), without_padding(stream)}));
    for (size_t at = 0; at + mpeg_ts_packet_size <= stream.size(); at += 7 * mpeg_ts_packet_size) {
        const bytes packet(stream.begin() + static_cast<long>(at),
                           stream.begin() + static_cast<long>(at + mpeg_ts_packet_size));
        write("packet", join({hex("18 00 00"), packet}));
    }
}

void write_teletext(const bytes &stream)
{
    for (size_t at = 0; at + mpeg_ts_packet_size <= stream.size(); at += mpeg_ts_packet_size) {
        mpeg_ts_packet packet;
        if (mpeg_ts_decode(&packet, stream.data() + at, mpeg_ts_packet_size) && packet.payload != nullptr)
            write("teletext_unit", join({hex("01 02 00 01"), bytes(packet.payload, packet.fence)}));
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) return 1;
    folder = argv[1];

    for (const stream_builder &stream :
         {dvb_multiplex(), atsc_multiplex(), splice_points(), teletext_pages(), faults()}) {
        write_seeds_of(stream.data(), hex("11 00 00"));
        write_seeds_of(stream.data(), hex("26 01 12"));
    }
    // Packets whose PID alone says something, and PCRs that go anywhere at extreme bitrates.
    for (const char *options : {"11 00 02 07", "11 08 12 07", "15 10 72 07", "11 08 62 07"})
        write(
            "whole_stream",
            join({hex(options), dvb_multiplex().payload(0x1FF9, hex("00")).payload(0x1FFB, hex("00")).data(),
                  stream_builder().pcr(0x0101, 5).pcr(0x0101, 1ull << 41).pcr(0x0101, 7).data()}));
    write("fixed_point", hex("03 3FB999999999999A 06 C0C8000000000000 00 3FE0000000000000"));
    write("fixed_point",
          hex("09 7FEFFFFFFFFFFFFF 03 7FF8000000000000 07 0000000000000001 06 FFF0000000000000"));
    write("whole_stream", join({hex("15 80 12 07"), splice_points().avchd(5, 7)}));
    write("overview_outputs", join({hex("03 80 00 0C"), splice_points().avchd(5, 40000)}));
    write_teletext(teletext_pages().data());
    write("section_collector",
          hex("0D 30 42 0009 0001C10000 2222FF55 0C 05 70 0005 C079124500 0E 01 03 00FFFF"));
    write("pes", pes_packet(0xE0, repeated(0x55, 100), 90000, 86400));
    write("pes", pes_packet(0xBD, repeated(0x55, 100), 90000));
    write("pes", hex("000001C0 0010 FFFF 4012 3100010001 1100010001 55"));
    write("multiple_string",
          join({hex("01 00 00 40 00 00 01"), text_bytes("eng"), hex("01 00 00 04"), text_bytes("text")}));
    write("multiple_string",
          join({hex("01 00 00 FF 00 20 02"), text_bytes("eng"), hex("02 00 04 02 4142 00 3F 01 41"),
                text_bytes("fra"), hex("01 01 00 01 41")}));
    write("command_line", text_bytes("-dump-ts=contents\n-program=0x10\nfile.ts"));
    write("command_line",
          text_bytes("--ts-bitrate=auto\n-assume-country=aus\n-max-pcr-interval=40\nfile.ts\nother"));
    return 0;
}
