#include "mpeg_ts_overview/contents/teletext_units.h"

#include "mpeg12_ts/bytes.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr uint32_t private_stream_1_start_code = 0x000001BD;
constexpr size_t length_end = 6;  ///< bytes up to and with PES_packet_length
constexpr size_t header_size = 9; ///< bytes up to and with PES_header_data_length
constexpr size_t unit_header_size = 2;
constexpr uint8_t non_subtitle_data = 0x02;
constexpr uint8_t subtitle_data = 0x03;

bool is_EBU_data(uint8_t data_identifier)
{
    return data_identifier >> 4 == 1;
}

bool is_teletext(uint8_t data_unit_id)
{
    return data_unit_id == non_subtitle_data || data_unit_id == subtitle_data;
}

} // namespace

void teletext_unit_reader::on_payload(const uint8_t *start, const uint8_t *fence, bool payload_unit_start)
{
    p = start;
    payload_fence = fence;
    if (!payload_unit_start) return;
    left = header_size;
    expect(part::header, header_size);
}

/// Goes on with the next part, or with nothing when the PES packet has no room for it.
void teletext_unit_reader::expect(part next, size_t size)
{
    reading = size <= left ? next : part::nothing;
    wanted = size;
    held = 0;
    left -= std::min(size, left);
}

const uint8_t *teletext_unit_reader::next_unit()
{
    while (reading != part::nothing) {
        const size_t taken = std::min(wanted - held, static_cast<size_t>(payload_fence - p));
        if (taken > 0) std::memcpy(storage.data() + held, p, taken);
        held += taken;
        p += taken;
        if (held < wanted) return nullptr;

        const bool is_unit = reading == part::unit;
        take_whole_part();
        if (is_unit) return storage.data();
    }
    return nullptr;
}

/// Decides by the part in hand, which is whole, what comes next.
void teletext_unit_reader::take_whole_part()
{
    switch (reading) {
    case part::header:
        take_header();
        break;
    case part::header_end:
        if (is_EBU_data(storage[wanted - 1]))
            expect(part::unit_header, unit_header_size);
        else
            drop();
        break;
    case part::unit_header: {
        const uint8_t data_unit_id = storage[0];
        const uint8_t data_unit_length = storage[1];
        const bool is_unit = is_teletext(data_unit_id) && data_unit_length == teletext_unit_size;
        expect(is_unit ? part::unit : part::other_unit, data_unit_length);
        break;
    }
    default:
        expect(part::unit_header, unit_header_size);
        break;
    }
}

/// ISO/IEC 13818-1 2.4.3.6; EN 300 472 4.2.
void teletext_unit_reader::take_header()
{
    constexpr size_t counted_header_size = header_size - length_end;
    const uint32_t start_code = big_endian_32(storage.data());
    const size_t PES_packet_length = big_endian_16(storage.data() + 4);
    const unsigned PES_scrambling_control = (storage[6] >> 4) & 3;
    const size_t PES_header_data_length = storage[8];

    left = PES_packet_length < counted_header_size ? 0 : PES_packet_length - counted_header_size;
    if (start_code == private_stream_1_start_code && PES_scrambling_control == 0)
        expect(part::header_end, PES_header_data_length + 1);
    else
        drop();
}
