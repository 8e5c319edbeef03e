// What a PMT's entry for a stream says that it is: stream_type, ISO/IEC 13818-1 Table 2-34 and those of
// others, and the descriptors that decide where the type does not.
#pragma once

#include "mpeg_ts_overview/tables/byte_range.h"
#include "mpeg_ts_overview/tables/pmt.h"
#include "mpeg_ts_overview/tables/stream_role.h"

#include <cstdint>

constexpr uint8_t private_sections_stream_type = 0x05;

struct stream_nature {
    stream_kind kind = stream_kind::other;
    bool still_pictures = false; ///< a video descriptor says so
    bool splices = false;        ///< splice information, SCTE 35
};

/// True when the loop holds a registration_descriptor of that format_identifier, four characters.
bool is_registered(byte_range descriptors, const char (&format_identifier)[5]);

/// What the stream is; blu_ray_program: program_info is registered as HDMV.
stream_nature nature_of(const pmt_entry &stream, bool blu_ray_program);
