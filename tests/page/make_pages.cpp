// Writes a page of each made-up recording into the folder that is given, which need not be there yet.
#include "mpeg_ts_overview/output/page.h"
#include "page/recordings.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

int main(int count, char *words[])
{
    if (count != 2) {
        std::fputs("usage: make_pages FOLDER\n", stderr);
        return 1;
    }
    std::filesystem::create_directories(words[1]);
    for (const made_recording &recording : all_recordings()) {
        std::ofstream file(std::string(words[1]) + "/" + recording.name + ".html", std::ios::binary);
        const bool written = write_page(recording.found, [&](std::string_view piece) {
            return static_cast<bool>(file.write(piece.data(), static_cast<std::streamsize>(piece.size())));
        });
        if (!written || !file.flush()) {
            std::fprintf(stderr, "%s cannot be written\n", recording.name.c_str());
            return 1;
        }
    }
    return 0;
}
