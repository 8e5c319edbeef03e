// Codec headers whole, cut, broken: what every reader of one is asked.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>

#include "mpeg_ts_overview/contents/codec_details_text.h"
#include "mpeg_ts_overview/model/codec_details.h"
#include "tests/support/hex.h"

using codec_reader = std::optional<codec_details> (*)(const uint8_t *start, const uint8_t *fence);

/// Name, details, profile and level of what the reader finds, in one text; "nothing" when it finds nothing.
/// The data stand in a block of exactly their size.
inline std::string found_by(codec_reader reader, const bytes &data)
{
    const bytes block(data.begin(), data.end());
    const auto details = reader(block.data(), block.data() + block.size());
    if (!details) return "nothing";
    return details->name + " | " + codec_details_text(*details) + " | " + details->profile + " | " +
           details->level;
}

/// Cut anywhere, the data give nothing or what the whole gives, and nothing below this length.
inline void expect_nothing_wrong_when_cut(codec_reader reader, const bytes &whole, size_t needed)
{
    const std::string expected = found_by(reader, whole);
    for (size_t length = 0; length <= whole.size(); ++length) {
        const bytes cut(whole.begin(), whole.begin() + static_cast<long>(length));
        ASSERT_EQ(found_by(reader, cut), length < needed ? "nothing" : expected) << "cut at " << length;
    }
}

/// Bytes with some of them changed are read to an end, whatever it is.
inline void expect_no_harm_from_changes(codec_reader reader, const bytes &whole)
{
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        bytes data = whole;
        for (unsigned i = 0; i <= random() % 3; ++i)
            data[random() % data.size()] = static_cast<uint8_t>(random() % 2 == 0 ? random() : 0);
        const auto details = reader(data.data(), data.data() + data.size());
        if (details && details->width) {
            ASSERT_GT(*details->width, 0u);
            ASSERT_GT(*details->height, 0u);
        }
        if (details && details->rate) {
            ASSERT_GE(details->rate->num, details->rate->den);
        }
    }
}
