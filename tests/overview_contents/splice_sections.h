// Splice information sections as recipes, ANSI/SCTE 35 9.6.
#pragma once

#include "tests/support/stream_builder.h"

#include "mpeg12_ts/crc32.h"

struct splice_fields {
    unsigned encrypted_packet = 0;
    uint64_t pts_adjustment = 0;
    int splice_command_length = -1; ///< below 0: that of the command
};

/// A section with its CRC_32; descriptors without their descriptor_loop_length.
inline bytes splice_section(unsigned splice_command_type, const bytes &command, const bytes &descriptors = {},
                            splice_fields fields = {})
{
    const unsigned length = fields.splice_command_length < 0
                                ? static_cast<unsigned>(command.size())
                                : static_cast<unsigned>(fields.splice_command_length);
    const unsigned long long flags_and_adjustment =
        static_cast<unsigned long long>(fields.encrypted_packet) << 39 | fields.pts_adjustment;
    const bytes body =
        join({hex("00"), big_endian(flags_and_adjustment, 5), hex("00"), big_endian(0xFFF000u | length, 3),
              big_endian(splice_command_type, 1), command, big_endian(descriptors.size(), 2), descriptors});
    bytes section = short_section(0xFC, join({body, repeated(0, 4)}));
    section.resize(section.size() - 4);
    return join({section, big_endian(mpeg_ts_crc32(section.data(), section.data() + section.size()), 4)});
}

/// splice_time() with a time.
inline bytes splice_time(uint64_t pts_time)
{
    return big_endian(0xFE00000000ull | pts_time, 5);
}

/// break_duration().
inline bytes break_duration(bool auto_return, uint64_t duration)
{
    return big_endian((auto_return ? 0xFEull : 0x7Eull) << 32 | duration, 5);
}

/// A segmentation_descriptor with the identifier "CUEI".
inline bytes segmentation_descriptor(const bytes &body)
{
    return descriptor(0x02, join({text_bytes("CUEI"), body}));
}
