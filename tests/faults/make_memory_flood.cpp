// Writes a stream to standard output that makes the analyser keep as much as a stream can: every program
// there is, a guide table's announcement of every PID that is still free, and the longest section on every
// PID.
#include "tests/support/stream_builder.h"

#include <cstdio>

namespace {

constexpr unsigned pmt_pid = 0x0020;
constexpr unsigned atsc_base_pid = 0x1FFB;
constexpr unsigned first_event_table = 0x0100; // the table_type of EIT-0

bool is_taken(unsigned pid)
{
    return pid == 0x0000 || (pid >= 0x0010 && pid <= 0x0012) || pid == pmt_pid || pid == atsc_base_pid;
}

bytes mgt_entry(unsigned pid)
{
    return join({big_endian(first_event_table, 2), big_endian(0xE000 | pid, 2), hex("E0 00000000 F000")});
}

} // namespace

int main()
{
    constexpr unsigned programs_a_section = 1000;
    constexpr unsigned last_program = 0xFFFF;
    constexpr unsigned pid_count = 0x2000;
    constexpr unsigned entries_a_section = 128;
    stream_builder stream;

    for (unsigned first = 1; first <= last_program; first += programs_a_section) {
        std::vector<std::pair<unsigned, unsigned>> programs;
        for (unsigned i = first; i < first + programs_a_section && i <= last_program; ++i)
            programs.emplace_back(i, pmt_pid);
        stream.section(0x0000, pat_section(0x0001, programs));
    }
    for (unsigned first = 0; first < pid_count; first += entries_a_section) {
        bytes entries;
        unsigned count = 0;
        for (unsigned pid = first; pid < first + entries_a_section; ++pid) {
            if (is_taken(pid)) continue;
            entries = join({entries, mgt_entry(pid)});
            ++count;
        }
        const bytes body = join({hex("00"), big_endian(count, 2), entries, hex("F000")});
        stream.section(atsc_base_pid, long_section(0xC7, 0x0000, body));
    }
    const bytes longest = join({hex("00 CB FFFF"), repeated(0x55, 4095)});
    for (unsigned pid = 0; pid < pid_count; ++pid) stream.unit(pid, longest);

    const bytes &content = stream.data();
    return std::fwrite(content.data(), 1, content.size(), stdout) == content.size() ? 0 : 1;
}
