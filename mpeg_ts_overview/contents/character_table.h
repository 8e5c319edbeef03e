// One character table of the C library's iconv, opened once and used for many texts.
#pragma once

#include <iconv.h>

#include <cstdint>
#include <string>

/// Opens a converter as iconv_open does.
using iconv_opener = iconv_t (*)(const char *to, const char *from);

class character_table {
public:
    /// Opens the table by its iconv name ("ISO-8859-5"); is_open() tells whether the C library has it.
    character_table(const char *name, iconv_opener open);
    ~character_table();
    character_table(const character_table &) = delete;
    character_table &operator=(const character_table &) = delete;

    bool is_open() const;

    /// Appends the bytes of [start, fence) to text as UTF-8. Each byte at which no character can be read is
    /// U+FFFD, and so is a character that the end cuts. Only for open tables.
    void append(std::string &text, const uint8_t *start, const uint8_t *fence);

private:
    iconv_t descriptor;
};
