// Packets of one PID into sections: raw payloads, sections in pieces, drops; against a collector that is as
// plain as can be.
#include "fuzz/support.h"

#include "mpeg12_ts/bytes.h"
#include "mpeg12_ts/crc32.h"
#include "mpeg12_ts/section_collector.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

using byte_list = std::vector<uint8_t>;

size_t size_of(const byte_list &section)
{
    return 3 + (size_t{section[1] & 0xFu} << 8 | section[2]);
}

/// CRC_32 bit by bit, ISO/IEC 13818-1 Annex A.
uint32_t plain_crc(const byte_list &bytes)
{
    uint32_t crc = 0xFFFFFFFF;
    for (const uint8_t byte : bytes) {
        crc ^= uint32_t{byte} << 24;
        for (int bit = 0; bit < 8; ++bit) crc = crc << 1 ^ ((crc >> 31) * 0x04C11DB7);
    }
    return crc;
}

struct plain_section {
    byte_list bytes;
    uint64_t begun = 0;
};

class plain_collector {
public:
    /// The sections that end in the payload.
    std::vector<plain_section> take(const byte_list &payload, bool unit_start, uint64_t tag)
    {
        std::vector<plain_section> whole;
        if (payload.empty()) return whole;
        if (!unit_start) {
            for (const uint8_t byte : payload) add(byte, whole);
            return whole;
        }
        const size_t first = std::min(payload.size(), size_t{1} + payload[0]);
        for (size_t i = 1; i < first; ++i) add(payload[i], whole);
        drop();
        for (size_t i = first; i < payload.size(); ++i) {
            if (!in_hand && payload[i] == 0xFF) break;
            if (!in_hand) in_hand = plain_section{{}, tag};
            add(payload[i], whole);
        }
        return whole;
    }

    void drop()
    {
        if (in_hand) ++incomplete;
        in_hand.reset();
    }

    uint64_t incomplete = 0;

private:
    void add(uint8_t byte, std::vector<plain_section> &whole)
    {
        if (!in_hand) return;
        in_hand->bytes.push_back(byte);
        if (in_hand->bytes.size() < 3 || in_hand->bytes.size() < size_of(in_hand->bytes)) return;
        whole.push_back(*in_hand);
        in_hand.reset();
    }

    std::optional<plain_section> in_hand;
};

void check_fields(const mpeg_ts_section &section)
{
    const byte_list bytes(section.start, section.fence);
    const bool is_long = (bytes[1] & 0x80) != 0;
    const bool has_crc = is_long || bytes[0] == 0x73 || bytes[0] == 0xFC;
    const bool has_room = bytes.size() >= (is_long ? 12 : 7);

    fuzz_promise(bytes.size() == size_of(bytes) && bytes.size() <= mpeg_ts_section_max_size);
    fuzz_promise(bytes.size() == 3u + section.header.section_length);
    fuzz_promise(section.header.table_id == bytes[0]);
    fuzz_promise((section.header.section_syntax_indicator != 0) == is_long);
    fuzz_promise(section.CRC_error == (has_crc && (!has_room || plain_crc(bytes) != 0)));
    fuzz_promise(section.start <= section.body && section.body <= section.body_fence);
    fuzz_promise(section.body_fence <= section.fence);
    if (!is_long || !has_room) return;
    fuzz_promise(section.body == section.start + 8 && section.body_fence == section.fence - 4);
    fuzz_promise(section.CRC_32 == big_endian_32(section.body_fence));
    fuzz_promise(section.header.table_id_extension == big_endian_16(section.start + 3));
    fuzz_promise(section.header.last_section_number == bytes[7]);
}

struct both_collectors {
    mpeg_ts_section_collector fast = {};
    plain_collector plain;
    uint64_t tag = 0;

    void take(const byte_list &payload, bool unit_start)
    {
        mpeg_ts_section section;
        const std::vector<plain_section> expected = plain.take(payload, unit_start, ++tag);
        mpeg_ts_section_collector_packet(&fast, payload.data(), payload.data() + payload.size(), unit_start,
                                         tag);
        for (const plain_section &next : expected) {
            fuzz_promise(mpeg_ts_section_collector_next(&fast, &section));
            fuzz_promise(std::equal(section.start, section.fence, next.bytes.begin(), next.bytes.end()));
            fuzz_promise(section.begun == next.begun);
            check_fields(section);
        }
        fuzz_promise(!mpeg_ts_section_collector_next(&fast, &section));
        fuzz_promise(fast.incomplete == plain.incomplete && fast.held < mpeg_ts_section_max_size);
    }

    void drop()
    {
        mpeg_ts_section_collector_drop(&fast);
        plain.drop();
    }
};

/// A section of what comes next in the input, with its checksum, in packets.
void take_section(both_collectors &collectors, fuzz_input &in)
{
    const unsigned flags = in.byte();
    const size_t piece = 1 + in.byte();
    byte_list section = {in.byte(), 0, 0};
    const fuzz_input body = in.part(in.word() & 0xFFF);
    section.insert(section.end(), body.p, body.fence);
    const bool is_long = (flags & 1) != 0;
    const size_t section_length = std::min<size_t>(body.left() + (is_long ? 4 : 0), 0xFFF);
    section[1] = static_cast<uint8_t>((is_long ? 0xB0 : 0x30) | section_length >> 8);
    section[2] = static_cast<uint8_t>(section_length);
    if (is_long) {
        const uint32_t crc = mpeg_ts_crc32(section.data(), section.data() + section.size());
        for (int shift = 24; shift >= 0; shift -= 8) section.push_back(static_cast<uint8_t>(crc >> shift));
    }

    for (size_t at = 0; at < section.size(); at += piece) {
        const auto from = section.begin() + static_cast<ptrdiff_t>(at);
        byte_list payload(from,
                          section.begin() + static_cast<ptrdiff_t>(std::min(at + piece, section.size())));
        if (at == 0) payload.insert(payload.begin(), 0);
        collectors.take(payload, at == 0);
    }
}

/// Somebody who does not take all sections: nothing but the fields of those that are taken can be said.
void take_some(fuzz_input in)
{
    mpeg_ts_section_collector collector = {};
    mpeg_ts_section section;

    while (in.left() > 0) {
        const unsigned flags = in.byte();
        const fuzz_input part = in.part(in.byte());
        const byte_list payload(part.p, part.fence);
        mpeg_ts_section_collector_packet(&collector, payload.data(), payload.data() + payload.size(),
                                         (flags & 1) != 0, 0);
        for (unsigned left = flags >> 4; left > 0; --left)
            if (mpeg_ts_section_collector_next(&collector, &section)) check_fields(section);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    both_collectors collectors;

    take_some(in);
    while (in.left() > 0) {
        const unsigned call = in.byte();
        if ((call & 0xE) == 0xE) {
            collectors.drop();
        } else if ((call & 0xE) == 0xC) {
            take_section(collectors, in);
        } else {
            const fuzz_input payload = in.part(in.byte());
            collectors.take(byte_list(payload.p, payload.fence), (call & 1) != 0);
        }
    }
    return 0;
}
