#include "mpeg_ts_overview/driver/outputs.h"

#include "mpeg_ts_overview/output/json.h"
#include "mpeg_ts_overview/output/page.h"
#include "mpeg_ts_overview/output/text.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr const char *standard_output = "-";

/// Says what went wrong. Returns whether nothing did.
bool succeeded(bool success, const output_file &file)
{
    if (!success) std::fprintf(stderr, "mpeg_ts_overview: %s\n", file.error().c_str());
    return success;
}

} // namespace

bool outputs::open(const overview_options &options, const struct stat &input)
{
    return (!options.json || succeeded(json.open(*options.json, input), json)) &&
           (!options.html || succeeded(html.open(*options.html, input), html)) &&
           (!options.text || succeeded(text.open(standard_output, input), text));
}

bool outputs::write(const overview_options &options, const overview &found)
{
    const auto to = [](output_file &file) {
        return [&file](std::string_view piece) { return file.write(piece); };
    };
    bool success = true;

    if (options.json) success &= succeeded(write_json(found, to(json)) && json.finish(), json);
    if (options.html) success &= succeeded(write_page(found, to(html)) && html.finish(), html);
    if (options.text) {
        const bool color = color_is_wanted(options.color, isatty(STDOUT_FILENO) != 0, std::getenv("NO_COLOR"),
                                           std::getenv("TERM"));
        success &= succeeded(text.write(summary_text(found, color)) && text.finish(), text);
    }
    return success;
}
