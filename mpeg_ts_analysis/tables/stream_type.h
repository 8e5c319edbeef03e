// Names of stream_type, ISO/IEC 13818-1 table 2-29.
#pragma once

/// The name of a stream_type (0 to 255), "?" when it has none. The two ATSC ones have theirs unless the ATSC
/// mode is off.
const char *stream_type_name(unsigned stream_type);
