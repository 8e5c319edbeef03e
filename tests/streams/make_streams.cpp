// Writes every stream that the golden cases name into the folder given.
#include "tests/streams/recipes.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace {

std::string folder;

void write(const char *name, const bytes &content)
{
    std::ofstream file(folder + "/" + name, std::ios::binary);
    file.write(reinterpret_cast<const char *>(content.data()), static_cast<std::streamsize>(content.size()));
    if (!file.flush()) {
        std::fprintf(stderr, "cannot write %s/%s\n", folder.c_str(), name);
        std::exit(1);
    }
}

bytes first(const bytes &content, size_t size)
{
    return bytes(content.begin(), content.begin() + static_cast<long>(size));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_streams <folder>\n");
        return 1;
    }
    folder = argv[1];

    const bytes dvb = dvb_multiplex().data();
    write("empty.ts", {});
    write("187_bytes.ts", first(dvb, 187));
    write("cut_last_packet.ts", first(dvb, 188 * 6 + 100));
    write("dvb.ts", dvb);
    write("dvb_192.m2ts", dvb_multiplex().avchd(0x40000000, 1000));
    write("atsc.ts", atsc_multiplex().data());
    write("scte35.ts", splice_points().data());
    write("teletext.ts", teletext_pages().data());
    write("faults.ts", faults().data());
    return 0;
}
