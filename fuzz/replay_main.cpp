// Runs an entry over all files of folders, without a fuzzing engine: replay_entries ENTRY FOLDER...
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>
#include <vector>

// Each entry's LLVMFuzzerTestOneInput is built under a name of its own.
extern "C" {
int replay_packet(const uint8_t *data, size_t size);
int replay_table_assembly(const uint8_t *data, size_t size);
int replay_sections(const uint8_t *data, size_t size);
int replay_descriptor_loop(const uint8_t *data, size_t size);
int replay_multiple_string(const uint8_t *data, size_t size);
int replay_pes(const uint8_t *data, size_t size);
int replay_teletext_unit(const uint8_t *data, size_t size);
int replay_fixed_point(const uint8_t *data, size_t size);
int replay_command_line(const uint8_t *data, size_t size);
int replay_whole_stream(const uint8_t *data, size_t size);
}

namespace {

struct named_entry {
    std::string_view name;
    int (*run)(const uint8_t *data, size_t size);
};

constexpr named_entry entries[] = {
    {"packet",          replay_packet         },
    {"table_assembly",  replay_table_assembly },
    {"sections",        replay_sections       },
    {"descriptor_loop", replay_descriptor_loop},
    {"multiple_string", replay_multiple_string},
    {"pes",             replay_pes            },
    {"teletext_unit",   replay_teletext_unit  },
    {"fixed_point",     replay_fixed_point    },
    {"command_line",    replay_command_line   },
    {"whole_stream",    replay_whole_stream   },
};

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
    const std::string_view name = argc > 1 ? argv[1] : "";
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
