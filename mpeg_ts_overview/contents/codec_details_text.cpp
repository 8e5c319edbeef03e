#include "mpeg_ts_overview/contents/codec_details_text.h"

namespace {

/// num / den with at most three decimals: "25", "29.97", "23.976".
std::string decimal_text(unsigned long long num, unsigned long long den)
{
    const unsigned long long thousandths = (num * 1000 + den / 2) / den;
    std::string text = std::to_string(thousandths / 1000);
    std::string decimals = std::to_string(1000 + thousandths % 1000);
    decimals[0] = '.';
    while (decimals.back() == '0') decimals.pop_back();
    if (decimals.back() == '.') decimals.pop_back();
    return text + decimals;
}

std::string scan_text(const codec_details &details)
{
    const char *const letter = !details.interlaced ? "" : *details.interlaced ? "i" : "p";
    if (!details.rate) return letter;
    return decimal_text(details.rate->num, details.rate->den) + (*letter == '\0' ? " fps" : letter);
}

std::string picture_text(const codec_details &details)
{
    if (!details.width || !details.height) return details.rate ? scan_text(details) : "";
    const std::string size = std::to_string(*details.width) + "x" + std::to_string(*details.height);
    const std::string scan = scan_text(details);
    return size + (details.rate ? " " : "") + scan;
}

std::string profile_text(const codec_details &details)
{
    if (details.profile.empty() || details.level.empty()) return details.profile;
    return details.profile + "@" + details.level;
}

std::string channels_text(const codec_details &details)
{
    if (!details.channels) return {};
    const bool has_low_frequency_channel = details.low_frequency_channel.value_or(false);
    return std::to_string(*details.channels) + (has_low_frequency_channel ? ".1 ch" : " ch");
}

void append_word(std::string &line, const std::string &word)
{
    if (!line.empty() && !word.empty()) line += ' ';
    line += word;
}

} // namespace

std::string codec_details_text(const codec_details &details)
{
    std::string line = picture_text(details);
    append_word(line, profile_text(details));
    if (details.sample_rate_hz) append_word(line, decimal_text(*details.sample_rate_hz, 1000) + " kHz");
    append_word(line, channels_text(details));
    if (details.bit_rate_bps) append_word(line, decimal_text(*details.bit_rate_bps, 1000) + " kbit/s");
    return line;
}
