// Text of DVB service information, ETSI EN 300 468 Annex A, as UTF-8.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "mpeg_ts_overview/contents/character_table.h"

/// Converts texts and keeps the character tables that they needed, one of each at most.
class dvb_text_converter {
public:
    /// open is another way to get at converters than the C library's own.
    explicit dvb_text_converter(iconv_opener open = iconv_open) : open_table(open) {}

    /// The text field [start, fence), which begins with what selects its table, as valid UTF-8. A line end is
    /// "\n", other DVB control codes are dropped, what cannot be converted is U+FFFD. "(encoded)" for
    /// encoding_type_id, reserved selections and tables that the C library lacks, as long as the text is not
    /// empty.
    std::string text(const uint8_t *start, const uint8_t *fence);

private:
    /// The table of this iconv name, or null when the C library lacks it.
    character_table *table_of(const char *iconv_name);

    iconv_opener open_table;
    std::map<std::string, character_table> tables;
};
