// The command line: arguments are separated by line ends.
#include "fuzz/support.h"

#include "mpeg_ts_analysis/driver/command_line.h"

#include <algorithm>
#include <vector>

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::vector<std::string> arguments = {"mpeg_ts_analysis"};
    std::vector<const char *> argv;

    for (const uint8_t *p = data, *const fence = data + size; p < fence;) {
        const uint8_t *const end = std::find(p, fence, '\n');
        arguments.emplace_back(p, end);
        p = end == fence ? fence : end + 1;
    }
    for (const std::string &argument : arguments) argv.push_back(argument.c_str());
    argv.push_back(nullptr);

    fuzz_start_settings();
    const char *const path = parse_command_line(static_cast<int>(arguments.size()), argv.data());
    fuzz_promise(path == nullptr || *path != '-');
    fuzz_promise(settings.packet_size_mode >= -1 && settings.packet_size_mode <= 1);
    fuzz_promise(settings.dump_descriptors_mode <= dump_descriptors_raw);
    fuzz_promise(settings.dump_ts_mode <= dump_ts_contents);
    return 0;
}
