#include "text/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

/// What the code points put into a buffer of this size, in a block of exactly that size. The buffer's last
/// byte has to stay as it was.
std::string text_of(const std::vector<unsigned> &codes, size_t size = 64)
{
    std::vector<char> buffer(size, '\x55');
    char *w = buffer.data();
    const char *const fence = buffer.data() + size - 1;

    for (const unsigned code : codes) {
        const char *const before = w;
        utf8_encode(&w, fence, code);
        EXPECT_GE(w, before);
        EXPECT_LE(w, fence);
    }
    for (const char *p = w; p <= fence; ++p) EXPECT_EQ(*p, '\x55') << "written past the cursor";
    return std::string(buffer.data(), w);
}

/// The code point of one well-formed sequence.
unsigned decoded(const std::string &text)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    for (size_t i = 1; i < text.size(); ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0xFFFFFFFF;
    switch (text.size()) {
    case 1:
        return byte(0) < 0x80 ? byte(0) : 0xFFFFFFFF;
    case 2:
        return (byte(0) & 0xE0) == 0xC0 ? (byte(0) & 0x1Fu) << 6 | (byte(1) & 0x3Fu) : 0xFFFFFFFF;
    case 3:
        return (byte(0) & 0xF0) == 0xE0 ? (byte(0) & 0x0Fu) << 12 | (byte(1) & 0x3Fu) << 6 | (byte(2) & 0x3Fu)
                                        : 0xFFFFFFFF;
    case 4:
        return (byte(0) & 0xF8) == 0xF0 ? (byte(0) & 0x07u) << 18 | (byte(1) & 0x3Fu) << 12 |
                                              (byte(2) & 0x3Fu) << 6 | (byte(3) & 0x3Fu)
                                        : 0xFFFFFFFF;
    default:
        return 0xFFFFFFFF;
    }
}

size_t length_of(unsigned code)
{
    return code <= 0x7F ? 1 : code <= 0x7FF ? 2 : code <= 0xFFFF ? 3 : 4;
}

bool is_surrogate(unsigned code)
{
    return code >= 0xD800 && code <= 0xDFFF;
}

} // namespace

TEST(utf8, code_points_become_one_to_four_bytes)
{
    EXPECT_EQ(text_of({0x41}), "A");
    EXPECT_EQ(text_of({0x00E9}), "\xC3\xA9");
    EXPECT_EQ(text_of({0x3042}), "\xE3\x81\x82");
    EXPECT_EQ(text_of({0x1F600}), "\xF0\x9F\x98\x80");
}

TEST(utf8, the_bounds_of_every_length_are_encoded)
{
    EXPECT_EQ(text_of({0x7F}), "\x7F");
    EXPECT_EQ(text_of({0x80}), "\xC2\x80");
    EXPECT_EQ(text_of({0x7FF}), "\xDF\xBF");
    EXPECT_EQ(text_of({0x800}), "\xE0\xA0\x80");
    EXPECT_EQ(text_of({0xD7FF}), "\xED\x9F\xBF");
    EXPECT_EQ(text_of({0xE000}), "\xEE\x80\x80");
    EXPECT_EQ(text_of({0xFFFF}), "\xEF\xBF\xBF");
    EXPECT_EQ(text_of({0x10000}), "\xF0\x90\x80\x80");
    EXPECT_EQ(text_of({0x10FFFF}), "\xF4\x8F\xBF\xBF");
}

TEST(utf8, every_code_point_has_its_own_shortest_sequence)
{
    for (unsigned code = 0; code <= 0x10FFFF; ++code) {
        if (is_surrogate(code)) continue;
        const std::string text = text_of({code}, 5);
        ASSERT_EQ(text.size(), length_of(code)) << code;
        ASSERT_EQ(decoded(text), code);
    }
}

TEST(utf8, code_0_is_one_zero_byte)
{
    EXPECT_EQ(text_of({0x41, 0x00, 0x42}), std::string("A\0B", 3));
}

TEST(utf8, surrogates_become_the_replacement_character)
{
    for (unsigned code = 0xD800; code <= 0xDFFF; ++code) ASSERT_EQ(text_of({code}), "\xEF\xBF\xBD") << code;
    EXPECT_EQ(text_of({0xD83D, 0xDE00}), "\xEF\xBF\xBD\xEF\xBF\xBD") << "units are not paired";
}

TEST(utf8, values_above_the_last_code_point_become_the_replacement_character)
{
    for (const unsigned code : {0x110000u, 0x1FFFFFu, 0x200000u, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(text_of({code}), "\xEF\xBF\xBD") << code;
}

TEST(utf8, code_points_follow_one_another)
{
    EXPECT_EQ(text_of({0x41, 0xE9, 0x3042, 0x1F600, 0x42}), "A\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80"
                                                            "B");
}

TEST(utf8, at_the_fence_nothing_is_written)
{
    for (const unsigned code : {0x00u, 0x41u, 0xE9u, 0x3042u, 0x1F600u, 0xD800u})
        EXPECT_EQ(text_of({code}, 1), "");
}

TEST(utf8, a_code_point_that_does_not_fit_whole_is_dropped)
{
    for (const unsigned code : {0x41u, 0xE9u, 0x3042u, 0x1F600u})
        for (size_t room = 0; room <= 5; ++room)
            EXPECT_EQ(text_of({code}, room + 1).size(), room >= length_of(code) ? length_of(code) : 0)
                << code << " " << room;
    EXPECT_EQ(text_of({0xD800}, 3), "");
    EXPECT_EQ(text_of({0xD800}, 4), "\xEF\xBF\xBD");
}

TEST(utf8, a_shorter_code_point_may_follow_one_that_was_dropped)
{
    EXPECT_EQ(text_of({0x3042, 0x41}, 2), "A");
}

TEST(utf8, long_text_is_cut_at_the_end_of_the_buffer)
{
    EXPECT_EQ(text_of(std::vector<unsigned>(2000, 'x'), 1024), std::string(1023, 'x'));
    EXPECT_EQ(text_of(std::vector<unsigned>(2000, 0xE9), 1024).size(), 1022u);
    EXPECT_EQ(text_of(std::vector<unsigned>(2000, 0x3042), 1024).size(), 1023u);
}
