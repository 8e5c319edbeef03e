#include "mpeg_ts_overview/contents/nal_unit.h"

#include "mpeg_ts_overview/contents/start_code.h"

namespace {

/// Copies a payload without its emulation_prevention_three_bytes; how many bytes were kept.
size_t without_emulation_prevention(uint8_t *payload, size_t capacity, const uint8_t *p, const uint8_t *fence)
{
    size_t size = 0;
    unsigned zeros = 0;
    for (; p < fence && size < capacity; ++p) {
        if (zeros >= 2 && *p == 3) {
            zeros = 0;
            continue;
        }
        zeros = *p == 0 ? zeros + 1 : 0;
        payload[size++] = *p;
    }
    return size;
}

} // namespace

bool next_nal_unit(const uint8_t **position, const uint8_t *fence, nal_unit *found)
{
    const uint8_t *const start = behind_start_code(*position, fence);
    if (start == nullptr) return false;
    const uint8_t *const behind_next = behind_start_code(start, fence);
    if (behind_next == nullptr) return false;

    const uint8_t *end = behind_next - 3;
    *position = end;
    while (end > start && end[-1] == 0) --end;
    *found = {start, end};
    return true;
}

rbsp_reader::rbsp_reader(const uint8_t *start, const uint8_t *fence)
    : size(without_emulation_prevention(payload, capacity, start, fence)), in(payload, payload + size)
{
}

unsigned rbsp_reader::u(unsigned width)
{
    bits_read += width;
    return width == 0 ? 0 : in.bits(width);
}

unsigned rbsp_reader::ue()
{
    unsigned leading_zero_bits = 0;
    while (is_good() && u(1) == 0) ++leading_zero_bits;
    if (!is_good() || leading_zero_bits > 31) {
        is_broken = true;
        return 0;
    }
    return (1u << leading_zero_bits) - 1 + u(leading_zero_bits);
}

int rbsp_reader::se()
{
    const unsigned code = ue();
    const auto magnitude = static_cast<int>(code / 2 + code % 2);
    return code % 2 == 1 ? magnitude : -magnitude;
}

void rbsp_reader::skip(unsigned bits)
{
    for (; bits > 32; bits -= 32) u(32);
    u(bits);
}

bool rbsp_reader::ends_well()
{
    const bool rbsp_stop_one_bit = flag();
    const auto padding = static_cast<unsigned>((8 - bits_read % 8) % 8);
    const unsigned rbsp_alignment_zero_bits = u(padding);
    return is_good() && rbsp_stop_one_bit && rbsp_alignment_zero_bits == 0 && bits_read == 8 * size;
}
