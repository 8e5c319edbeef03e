#include "mpeg_ts_overview/output/text.h"

#include "mpeg_ts_overview/output/text_parts.h"

#include <fmt/format.h>

std::string colored(std::string text, size_t position, size_t length, const char *parameters)
{
    text.insert(position + length, "\033[0m");
    return text.insert(position, fmt::format("\033[{}m", parameters));
}

std::string summary_text(const overview &found, bool color)
{
    std::string text = text_of_recording(found, color);
    for (const std::string &part :
         {text_of_checks(found, color), text_of_programs(found, color) + text_of_contents(found)})
        if (!part.empty()) text.append("\n").append(part);
    return text;
}
