// Mutations that leave a transport stream one: of packets, and of the bytes in a packet. Afterwards sync
// bytes, continuity counters and section checksums are set right, or few inputs would get past them.
#include "fuzz/support.h"

#include "mpeg12_ts/bytes.h"
#include "mpeg12_ts/crc32.h"
#include "mpeg12_ts/packet.h"

#include <algorithm>
#include <array>
#include <random>
#include <vector>

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t max_size);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size, unsigned seed);

namespace {

constexpr size_t options_size = 4;

using packet_bytes = std::vector<uint8_t>;
using generator = std::minstd_rand;

/// The section that a PID is in the middle of, by the places of its bytes.
using section_bytes = std::vector<uint8_t *>;

size_t size_of_packets(const uint8_t *options)
{
    fuzz_input in = {options, options + options_size};
    fuzz_settings(in);
    return settings.packet_size_mode == 1 ? mpeg_ts_m2ts_packet_size : mpeg_ts_packet_size;
}

/// Writes the checksum of a long section that is whole.
void repair_checksum(const section_bytes &places)
{
    if (places.size() < 12 || *places[0] == 0xFF || (*places[1] & 0x80) == 0) return;
    const size_t size = 3 + (size_t{*places[1] & 0xFu} << 8 | *places[2]);
    if (size < 12 || places.size() < size) return;

    packet_bytes section;
    for (size_t i = 0; i < size - 4; ++i) section.push_back(*places[i]);
    const uint32_t crc = mpeg_ts_crc32(section.data(), section.data() + section.size());
    for (unsigned i = 0; i < 4; ++i) *places[size - 4 + i] = static_cast<uint8_t>(crc >> (24 - 8 * i));
}

void add_places(section_bytes &places, uint8_t *p, const uint8_t *fence)
{
    while (p < fence) places.push_back(p++);
}

void repair_checksums(uint8_t *stream, size_t size, size_t packet_size)
{
    std::vector<section_bytes> sections(mpeg_ts_pid_count);

    for (size_t at = 0; at + packet_size <= size; at += packet_size) {
        mpeg_ts_packet packet;
        if (!mpeg_ts_decode(&packet, stream + at, packet_size) || packet.payload == nullptr) continue;
        uint8_t *payload = stream + at + (packet.payload - packet.packet);
        section_bytes &places = sections[packet.pid];
        if (packet.payload_unit_start_indicator) {
            repair_checksum(places);
            places.clear();
            payload += 1 + *payload;
        } else if (places.empty()) {
            continue;
        }
        add_places(places, payload, packet.fence);
    }
    for (const section_bytes &places : sections) repair_checksum(places);
}

/// Sets the counters as if now and then some packets of a PID had been lost.
void repair_headers(uint8_t *stream, size_t size, size_t packet_size, generator &random)
{
    std::array<uint8_t, mpeg_ts_pid_count> last = {};

    for (size_t at = packet_size - mpeg_ts_packet_size; at + mpeg_ts_packet_size <= size; at += packet_size) {
        uint8_t *const p = stream + at;
        p[0] = mpeg_ts_sync_byte;
        uint8_t &counter = last[big_endian_16(p + 1) & 0x1FFF];
        counter = static_cast<uint8_t>((counter + (p[3] >> 4 & 1)) & 0xF);
        if (random() % 64 == 0) counter = static_cast<uint8_t>((counter + random()) & 0xF);
        p[3] = static_cast<uint8_t>((p[3] & 0xF0) | counter);
    }
}

/// Mutates a part of one packet; the packet keeps its size.
void mutate_packet(packet_bytes &packet, generator &random)
{
    const size_t first =
        random() % 3 == 0 ? random() % packet.size() : packet.size() - mpeg_ts_packet_size + 4;
    const size_t size = packet.size() - first;
    const size_t part = 1 + random() % size;
    packet_bytes work(packet.begin() + static_cast<long>(first), packet.end());
    work.resize(size, 0xFF);
    const size_t mutated = LLVMFuzzerMutate(work.data(), part, size);
    std::copy_n(work.begin(), mutated, packet.begin() + static_cast<long>(first));
}

void mutate_order(std::vector<packet_bytes> &packets, generator &random)
{
    const auto any = [&] { return packets.begin() + static_cast<long>(random() % packets.size()); };

    switch (random() % 5) {
    case 0:
        if (packets.size() > 1) packets.erase(any());
        break;
    case 1:
        std::swap(*any(), *any());
        break;
    case 2: { // the payload of one behind the header of another
        const packet_bytes from = *any();
        std::copy(from.end() - 184, from.end(), any()->end() - 184);
        break;
    }
    default:
        packets.insert(any(), packet_bytes(*any()));
        break;
    }
}

} // namespace

size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size, unsigned seed)
{
    generator random(seed);
    if (size < options_size + mpeg_ts_m2ts_packet_size || random() % 16 == 0)
        return LLVMFuzzerMutate(data, size, max_size);
    if (random() % 8 == 0) LLVMFuzzerMutate(data, options_size, options_size);

    const size_t packet_size = size_of_packets(data);
    std::vector<packet_bytes> packets;
    for (size_t at = options_size; at + packet_size <= size; at += packet_size)
        packets.emplace_back(data + at, data + at + packet_size);
    for (unsigned changes = 1 + random() % 4; changes > 0; --changes) {
        if (random() % 4 == 0)
            mutate_order(packets, random);
        else
            mutate_packet(packets[random() % packets.size()], random);
    }

    uint8_t *write = data + options_size;
    for (const packet_bytes &packet : packets)
        if (data + max_size - write >= static_cast<long>(packet_size))
            write = std::copy(packet.begin(), packet.end(), write);
    const auto stream_size = static_cast<size_t>(write - data) - options_size;
    if (random() % 8 != 0) repair_headers(data + options_size, stream_size, packet_size, random);
    if (random() % 8 != 0) repair_checksums(data + options_size, stream_size, packet_size);
    return options_size + stream_size;
}
