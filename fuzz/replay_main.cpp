// Runs an entry over all files of the folders given, without a fuzzing engine.
#include "fuzz/support.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

int main(int argc, char **argv)
{
    size_t count = 0;

    for (int i = 1; i < argc; ++i) {
        for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
            // A block of exactly this size, so that the address sanitizer sees one byte too many.
            const std::unique_ptr<uint8_t[]> block(new uint8_t[content.size()]);
            std::copy(content.begin(), content.end(), block.get());
            LLVMFuzzerTestOneInput(block.get(), content.size());
            ++count;
        }
    }
    std::printf("%zu inputs\n", count);
    return count > 0 ? 0 : 1;
}
