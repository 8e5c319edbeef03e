// Writes an overview that was built by hand as JSON: write_sample_json sample|empty|hostile
#include "mpeg_ts_overview/output/json.h"
#include "sample_overview.h"

#include <cstdio>
#include <string_view>

int main(int argc, char **argv)
{
    const std::string_view which = argc > 1 ? argv[1] : "";
    overview found;
    if (which == "sample")
        found = sample_overview();
    else if (which == "hostile")
        found = hostile_overview();
    else if (which == "empty")
        found.recording.packet_size = 188;
    else
        return 1;
    const bool written = write_json(found, [](std::string_view text) {
        return std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    });
    return written && std::fflush(stdout) == 0 ? 0 : 1;
}
