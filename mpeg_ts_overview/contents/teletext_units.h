// From transport packets to EBU Teletext data units, ETSI EN 300 472 4.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// Bytes of a data unit behind its data_unit_length: field and line, framing code, address, data block.
constexpr size_t teletext_unit_size = 44;

/// The PES packets of one PID. Nothing is kept of one but the header, or the data unit, in hand.
class teletext_unit_reader {
public:
    /// Hands over the payload of the PID's next packet, which stays in place until its units are taken.
    void on_payload(const uint8_t *start, const uint8_t *fence, bool payload_unit_start);

    /// The next teletext data unit (data_unit_id 0x02 or 0x03) that ends in that payload, 44 bytes as they
    /// are sent; null when there is none. Valid until the next call.
    const uint8_t *next_unit();

    /// Packets are missing: what was begun is dropped, up to the next unit start.
    void drop() { reading = part::nothing; }

private:
    enum class part : uint8_t {
        nothing,     ///< no PES packet, or one that is of no use
        header,      ///< up to and with PES_header_data_length
        header_end,  ///< the rest of the PES header, and data_identifier
        unit_header, ///< data_unit_id and data_unit_length
        unit,        ///< a teletext data unit
        other_unit
    };

    void take_whole_part();
    void take_header();
    void expect(part next, size_t size);

    part reading = part::nothing;
    size_t held = 0;   ///< bytes of the part in hand
    size_t wanted = 0; ///< bytes that it has when it is whole
    size_t left = 0;   ///< bytes of the PES packet behind the part in hand
    const uint8_t *p = nullptr;
    const uint8_t *payload_fence = nullptr;
    std::array<uint8_t, 256> storage; ///< the largest: 255 bytes of header and a data_identifier
};
