#include "mpeg_ts_overview/driver/overview_outputs.h"

#include "mpeg_ts_overview/output/json.h"
#include "mpeg_ts_overview/output/page.h"
#include "mpeg_ts_overview/output/text.h"

#include <cstdlib>
#include <unistd.h>

namespace {

output_sink sink_of(output_file *output)
{
    return [output](std::string_view text) { return output->write(text); };
}

} // namespace

bool overview_outputs::open(const overview_options &options, const struct stat &input)
{
    const bool terminal = isatty(STDOUT_FILENO) != 0;
    color_ = color_is_wanted(options.color, terminal, std::getenv("NO_COLOR"), std::getenv("TERM"));
    if (options.json && !open_one(&json_, *options.json, input)) return false;
    if (options.html && !open_one(&html_, *options.html, input)) return false;
    return !options.text || open_one(&text_, "-", input);
}

bool overview_outputs::write(const overview &found)
{
    if (json_) {
        write_json(found, sink_of(&*json_));
        finish(&*json_);
    }
    if (html_) {
        write_page(found, sink_of(&*html_));
        finish(&*html_);
    }
    if (text_) {
        text_->write(summary_text(found, color_));
        finish(&*text_);
    }
    return error_.empty();
}

bool overview_outputs::open_one(std::optional<output_file> *output, const std::string &path,
                                const struct stat &input)
{
    if (!output->emplace().open(path, input)) error_ = (*output)->error();
    return error_.empty();
}

void overview_outputs::finish(output_file *output)
{
    if (!output->finish() && error_.empty()) error_ = output->error();
}
