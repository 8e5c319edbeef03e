// What the descriptors of an event say of it, EN 300 468 6.2.37 and 6.2.15.
#pragma once

#include "mpeg_ts_overview/contents/dvb_text.h"
#include "mpeg_ts_overview/tables/byte_range.h"

#include <string>

/// UTF-8.
struct event_texts {
    std::string title;    ///< event_name_char
    std::string text;     ///< of the short, then of the extended event descriptors, a line end between
    std::string language; ///< ISO_639_language_code
};

/// Of the first short_event_descriptor and the extended_event_descriptors in its language; without a short
/// one, in the language of the first extended one.
event_texts read_event_texts(byte_range descriptors, dvb_text_converter &texts);
