#include "tests/support/stream_builder.h"

#include "mpeg12_ts/crc32.h"

#include <algorithm>
#include <stdexcept>

namespace {

constexpr size_t packet_size = 188;
constexpr size_t payload_size = 184;

bytes slice(const bytes &from, size_t start, size_t size)
{
    const size_t first = std::min(start, from.size());
    const size_t last = std::min(start + size, from.size());
    return bytes(from.begin() + static_cast<long>(first), from.begin() + static_cast<long>(last));
}

bytes time_stamp(unsigned marks, long long time)
{
    const auto ticks = static_cast<unsigned long long>(time);
    const unsigned long long field =
        (static_cast<unsigned long long>(marks) << 36) | ((ticks >> 30 & 7) << 33) | (1ull << 32) |
        ((ticks >> 15 & 0x7FFF) << 17) | (1ull << 16) | ((ticks & 0x7FFF) << 1) | 1;
    return big_endian(field, 5);
}

} // namespace

bytes long_section(unsigned table_id, unsigned table_id_extension, const bytes &body, section_fields fields)
{
    const auto section_length = static_cast<unsigned>(body.size() + 9);
    if (section_length > 0xFFF) throw std::length_error("section too long");
    bytes section =
        join({big_endian(table_id, 1),
              big_endian(0x8000u | fields.private_indicator << 14 | 0x3000u | section_length, 2),
              big_endian(table_id_extension, 2),
              big_endian(0xC0u | fields.version_number << 1 | fields.current_next_indicator, 1),
              big_endian(fields.section_number, 1), big_endian(fields.last_section_number, 1), body});
    return join({section, big_endian(mpeg_ts_crc32(section.data(), section.data() + section.size()), 4)});
}

bytes short_section(unsigned table_id, const bytes &body, unsigned private_indicator)
{
    return join({big_endian(table_id, 1),
                 big_endian(private_indicator << 14 | 0x3000u | static_cast<unsigned>(body.size()), 2),
                 body});
}

bytes descriptor(unsigned tag, const bytes &body)
{
    if (body.size() > 0xFF) throw std::length_error("descriptor too long");
    return join({big_endian(tag, 1), big_endian(body.size(), 1), body});
}

bytes pat_section(unsigned transport_stream_id, const std::vector<std::pair<unsigned, unsigned>> &programs,
                  section_fields fields)
{
    bytes body;
    for (const auto &[program_number, pid] : programs)
        body = join({body, big_endian(program_number, 2), big_endian(0xE000u | pid, 2)});
    return long_section(0x00, transport_stream_id, body, fields);
}

bytes pmt_section(unsigned program_number, unsigned PCR_PID, const bytes &program_info,
                  const std::vector<pmt_stream> &streams, section_fields fields)
{
    bytes body =
        join({big_endian(0xE000u | PCR_PID, 2), big_endian(0xF000u | program_info.size(), 2), program_info});
    for (const pmt_stream &stream : streams)
        body = join({body, big_endian(stream.stream_type, 1), big_endian(0xE000u | stream.elementary_PID, 2),
                     big_endian(0xF000u | stream.ES_info.size(), 2), stream.ES_info});
    return long_section(0x02, program_number, body, fields);
}

bytes pes_packet(unsigned stream_id, const bytes &data, long long pts, long long dts)
{
    bytes times;
    if (pts >= 0 && dts >= 0)
        times = join({time_stamp(3, pts), time_stamp(1, dts)});
    else if (pts >= 0)
        times = time_stamp(2, pts);
    const unsigned flags = dts >= 0 ? 0xC0 : pts >= 0 ? 0x80 : 0x00;
    const size_t length = 3 + times.size() + data.size();
    return join({hex("000001"), big_endian(stream_id, 1), big_endian(length <= 0xFFFF ? length : 0, 2),
                 hex("80"), big_endian(flags, 1), big_endian(times.size(), 1), times, data});
}

stream_builder &stream_builder::section(unsigned pid, const bytes &section)
{
    return sections(pid, {section});
}

stream_builder &stream_builder::sections(unsigned pid, const std::vector<bytes> &sections)
{
    bytes all;
    std::vector<size_t> starts;
    for (const bytes &section : sections) {
        starts.push_back(all.size());
        all = join({all, section});
    }
    for (size_t done = 0; done < all.size();) {
        const auto start = std::find_if(starts.begin(), starts.end(), [&](size_t at) { return at >= done; });
        const bool starts_unit = start != starts.end() && *start < done + payload_size - 1;
        bytes part = slice(all, done, starts_unit ? payload_size - 1 : payload_size);
        done += part.size();
        if (starts_unit) part.insert(part.begin(), static_cast<uint8_t>(*start + part.size() - done));
        part.resize(payload_size, 0xFF);
        add(pid, 1, starts_unit, part);
    }
    return *this;
}

stream_builder &stream_builder::payload(unsigned pid, const bytes &payload, bool unit_start)
{
    if (payload.size() > payload_size) throw std::length_error("payload too long");
    if (payload.size() == payload_size) {
        add(pid, 1, unit_start, payload);
        return *this;
    }
    const size_t field_size = payload_size - payload.size() - 1;
    bytes field;
    if (field_size > 0) field = join({hex("00"), repeated(0xFF, field_size - 1)});
    return adaptation(pid, field, payload, unit_start);
}

stream_builder &stream_builder::unit(unsigned pid, const bytes &unit)
{
    for (size_t done = 0; done < unit.size(); done += payload_size)
        payload(pid, slice(unit, done, payload_size), done == 0);
    return *this;
}

stream_builder &stream_builder::adaptation(unsigned pid, const bytes &field, const bytes &payload,
                                           bool unit_start)
{
    bytes filled = field;
    if (payload.empty())
        filled.resize(payload_size - 1, 0xFF);
    else if (field.size() + 1 + payload.size() != payload_size)
        throw std::length_error("adaptation field and payload do not fill the packet");
    add(pid, payload.empty() ? 2 : 3, unit_start, join({big_endian(filled.size(), 1), filled, payload}));
    return *this;
}

stream_builder &stream_builder::pcr(unsigned pid, unsigned long long ticks)
{
    const unsigned long long base = ticks / 300;
    const unsigned long long extension = ticks % 300;
    return adaptation(pid, join({hex("10"), big_endian(base << 15 | 0x7E00 | extension, 6)}));
}

stream_builder &stream_builder::padding(unsigned count)
{
    for (unsigned i = 0; i < count; ++i) raw(join({hex("471FFF10"), repeated(0xFF, payload_size)}));
    return *this;
}

stream_builder &stream_builder::raw(const bytes &packet)
{
    if (packet.size() != packet_size) throw std::length_error("not a packet");
    stream.resize(stream.size() + packet_size);
    std::copy_n(packet.data(), packet_size, stream.data() + stream.size() - packet_size);
    return *this;
}

stream_builder &stream_builder::lose_packets(unsigned pid, unsigned count)
{
    counters.at(pid) += count;
    return *this;
}

stream_builder &stream_builder::flip_bit(unsigned byte, unsigned bit)
{
    stream.at(stream.size() - packet_size + byte) ^= static_cast<uint8_t>(1u << bit);
    return *this;
}

stream_builder &stream_builder::scramble(unsigned control)
{
    uint8_t &flags = stream.at(stream.size() - packet_size + 3);
    flags = static_cast<uint8_t>((flags & 0x3F) | control << 6);
    return *this;
}

bytes stream_builder::avchd(unsigned first_arrival_time, unsigned step) const
{
    bytes out;
    for (size_t at = 0; at < stream.size(); at += packet_size) {
        const auto arrival_time = first_arrival_time + step * static_cast<unsigned>(at / packet_size);
        const bytes header = big_endian(arrival_time, 4);
        out.insert(out.end(), header.begin(), header.end());
        out.insert(out.end(), stream.data() + at, stream.data() + at + packet_size);
    }
    return out;
}

void stream_builder::add(unsigned pid, unsigned control, bool unit_start, const bytes &rest)
{
    unsigned &next = counters.at(pid);
    const unsigned counter = (control & 1) != 0 ? next++ : next + 15;
    raw(join({hex("47"), big_endian((unit_start ? 0x4000u : 0u) | pid, 2),
              big_endian(control << 4 | (counter & 0xF), 1), rest}));
}
