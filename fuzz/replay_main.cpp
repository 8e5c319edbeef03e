// Runs an entry over all files of folders, without a fuzzing engine: replay_entries ENTRY FOLDER... Without
// arguments it lists the entries.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>
#include <vector>

namespace {

struct named_entry {
    std::string_view name;
    int (*run)(const uint8_t *data, size_t size);
};

} // namespace

// Each entry's LLVMFuzzerTestOneInput, built under a name of its own: "entries", written by the build.
#include "fuzz/replay_entries.h"

namespace {

void replay(const named_entry &entry, const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
    // A block of exactly this size, so that the address sanitizer sees one byte too many.
    const std::unique_ptr<uint8_t[]> block(new uint8_t[content.size()]);

    std::copy(content.begin(), content.end(), block.get());
    entry.run(block.get(), content.size());
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 1) {
        for (const named_entry &each : entries) std::printf("%s\n", each.name.data());
        return 0;
    }
    const std::string_view name = argv[1];
    const auto entry = std::find_if(std::begin(entries), std::end(entries),
                                    [&](const named_entry &each) { return each.name == name; });
    if (entry == std::end(entries)) return 1;

    size_t count = 0;
    for (int i = 2; i < argc; ++i) {
        for (const auto &file : std::filesystem::directory_iterator(argv[i])) {
            replay(*entry, file.path());
            ++count;
        }
    }
    std::printf("%zu inputs\n", count);
    return count > 0 ? 0 : 1;
}
