#include "mpeg_ts_overview/contents/scsu.h"

#include <vector>

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_overview/contents/utf8_text.h"

namespace {

/// Offsets of the static windows, and of the dynamic windows at the start.
constexpr unsigned static_offsets[8] = {0x0000, 0x0080, 0x0100, 0x0300, 0x2000, 0x2080, 0x2100, 0x3000};
constexpr unsigned initial_offsets[8] = {0x0080, 0x00C0, 0x0400, 0x0600, 0x0900, 0x3040, 0x30A0, 0xFF00};

/// The offsets of the window positions 0xF9 to 0xFF.
constexpr unsigned special_offsets[] = {0x00C0, 0x0250, 0x0370, 0x0530, 0x3040, 0x30A0, 0xFF60};

class decoder {
public:
    decoder(const uint8_t *start, const uint8_t *fence) : in(start, fence)
    {
        for (unsigned i = 0; i < 8; ++i) offsets[i] = initial_offsets[i];
    }

    std::string text()
    {
        while (in.has(1)) {
            const unsigned byte = in.bits(8);
            if (in_unicode_mode)
                in_unicode(byte);
            else
                in_single_byte(byte);
        }
        return utf16_text(units.data(), units.data() + units.size());
    }

private:
    void in_single_byte(unsigned byte)
    {
        if (byte >= 0x80)
            put(offsets[active] + byte - 0x80);
        else if (byte >= 0x20 || byte == 0x00 || byte == 0x09 || byte == 0x0A || byte == 0x0D)
            put(byte);
        else if (byte <= 0x08)
            quote_from_window(byte - 0x01);
        else if (byte == 0x0B)
            define_extended_window();
        else if (byte == 0x0E)
            quote_unit();
        else if (byte == 0x0F)
            in_unicode_mode = true;
        else if (byte >= 0x18)
            define_window(byte - 0x18);
        else if (byte >= 0x10)
            active = byte - 0x10;
        else
            put(replacement_character);
    }

    void in_unicode(unsigned byte)
    {
        if (byte < 0xE0 || byte > 0xF2) {
            put_unit(byte);
            return;
        }
        if (byte <= 0xE7)
            active = byte - 0xE0;
        else if (byte <= 0xEF)
            define_window(byte - 0xE8);
        else if (byte == 0xF0)
            quote_unit();
        else if (byte == 0xF1)
            define_extended_window();
        else
            put(replacement_character);
        in_unicode_mode = byte >= 0xF0 && byte != 0xF1;
    }

    void quote_from_window(unsigned window)
    {
        if (!is_there(1)) return;
        const unsigned byte = in.bits(8);
        put(byte < 0x80 ? static_offsets[window] + byte : offsets[window] + byte - 0x80);
    }

    void quote_unit()
    {
        if (!is_there(1)) return;
        put_unit(in.bits(8));
    }

    void define_window(unsigned window)
    {
        if (!is_there(1)) return;
        active = window;
        const unsigned position = in.bits(8);
        if (position >= 0x01 && position <= 0x67)
            offsets[window] = position * 0x80;
        else if (position >= 0x68 && position <= 0xA7)
            offsets[window] = position * 0x80 + 0xAC00;
        else if (position >= 0xF9)
            offsets[window] = special_offsets[position - 0xF9];
        else
            put(replacement_character);
    }

    void define_extended_window()
    {
        if (!is_there(2)) return;
        active = in.bits(3);
        offsets[active] = 0x10000 + (in.bits(13) << 7);
    }

    /// True when this many bytes are left; otherwise what they would have told is a U+FFFD, and nothing is
    /// left.
    bool is_there(size_t bytes)
    {
        if (in.has(bytes)) return true;
        in.skip(bytes);
        put(replacement_character);
        return false;
    }

    void put(unsigned code)
    {
        if (code < 0x10000) {
            put_byte(code >> 8);
            put_byte(code);
            return;
        }
        put(0xD800 | (code - 0x10000) >> 10);
        put(0xDC00 | (code & 0x3FF));
    }

    /// A UTF-16 code unit whose low byte comes next.
    void put_unit(unsigned high_byte)
    {
        if (!is_there(1)) return;
        put_byte(high_byte);
        put_byte(in.bits(8));
    }

    void put_byte(unsigned byte) { units.push_back(static_cast<uint8_t>(byte)); }

    bit_reader in;
    std::vector<uint8_t> units; // UTF-16, high byte first
    unsigned offsets[8];
    unsigned active = 0;
    bool in_unicode_mode = false;
};

} // namespace

std::string scsu_text(const uint8_t *start, const uint8_t *fence)
{
    return decoder(start, fence).text();
}
