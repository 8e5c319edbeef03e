// Writes a stream to standard output that fills every store of the overview at once.
#include "tests/overview_contents/splice_sections.h"
#include "tests/support/stream_builder.h"

#include <cstdio>

namespace {

constexpr unsigned pmt_pid = 0x0020;
constexpr unsigned splice_pid = 0x0021;
constexpr unsigned atsc_base_pid = 0x1FFB;
constexpr unsigned null_pid = 0x1FFF;
constexpr unsigned version_count = 32;
constexpr unsigned any_extension = 0x10000;
constexpr unsigned sections_a_batch = 64;

class hostile_stream {
public:
    void add_clock_start();
    void add_programs();
    void add_announcements();
    void add_versions(unsigned pid, unsigned table_id);
    void add_tables(unsigned pid, unsigned table_id, const bytes &body, unsigned tables);
    void add_guide();
    void add_streams();
    void add_cues();
    void add_clocks();
    void add_long_sections();
    bool write() const;

private:
    void take(unsigned pid, bytes section);
    void flush(unsigned pid);

    stream_builder stream;
    std::vector<bytes> batch;
    unsigned long long ticks = 0;
};

void hostile_stream::take(unsigned pid, bytes section)
{
    batch.push_back(std::move(section));
    if (batch.size() == sections_a_batch) flush(pid);
}

void hostile_stream::flush(unsigned pid)
{
    if (!batch.empty()) stream.sections(pid, batch);
    batch.clear();
}

/// Enough for times from the first packet on.
void hostile_stream::add_clock_start()
{
    for (unsigned i = 0; i < 25; ++i, ticks += 270000) stream.pcr(0x1000, ticks);
}

/// Every program that 256 sections have room for.
void hostile_stream::add_programs()
{
    constexpr unsigned programs_a_section = 253;
    unsigned program = 1;
    for (unsigned number = 0; number < 256; ++number) {
        std::vector<std::pair<unsigned, unsigned>> programs;
        for (unsigned i = 0; i < programs_a_section; ++i) programs.emplace_back(program++, pmt_pid);
        take(0, pat_section(1, programs, {.section_number = number, .last_section_number = 255}));
    }
    flush(0);
}

/// A table that makes the sections of every PID that is still free be collected.
void hostile_stream::add_announcements()
{
    constexpr unsigned first_EIT = 0x0100;
    constexpr unsigned pids_a_section = 128;

    for (unsigned first = 0x20; first < null_pid; first += pids_a_section) {
        bytes entries;
        unsigned count = 0;
        for (unsigned pid = first; pid < first + pids_a_section && pid < null_pid; ++pid) {
            if (pid == pmt_pid || pid == atsc_base_pid) continue;
            entries = join(
                {entries, big_endian(first_EIT, 2), big_endian(0xE000 | pid, 2), hex("E0 00000000 F000")});
            ++count;
        }
        take(atsc_base_pid,
             long_section(0xC7, 0x0000, join({hex("00"), big_endian(count, 2), entries, hex("F000")}),
                          {.section_number = first / pids_a_section, .last_section_number = 63}));
    }
    flush(atsc_base_pid);
}

/// As many tables as there are rows, in 32 versions each.
void hostile_stream::add_versions(unsigned pid, unsigned table_id)
{
    for (unsigned version = 0; version < version_count; ++version)
        for (unsigned extension = 0; extension < any_extension; ++extension)
            take(pid, long_section(table_id, extension, {}, {.version_number = version}));
    flush(pid);
}

/// So many tables that differ in their last bytes too.
void hostile_stream::add_tables(unsigned pid, unsigned table_id, const bytes &body, unsigned tables)
{
    for (unsigned i = 0; i < tables; ++i)
        take(pid, long_section(table_id, i % any_extension, join({big_endian(i / any_extension, 2), body})));
    flush(pid);
}

/// Events with as much text as they have room for.
void hostile_stream::add_guide()
{
    const bytes text =
        descriptor(0x4D, join({hex("656E67 78"), repeated('T', 120), hex("7E"), repeated('x', 126)}));
    for (unsigned event = 0; event < 21000; ++event) {
        const bytes entry = join(
            {big_endian(event, 2), hex("C079124500 013000"), big_endian(2 * text.size(), 2), text, text});
        take(0x12, long_section(0x50 + event % 16, event / 256, join({hex("0001 0002 00 50"), entry}),
                                {.section_number = event % 256, .last_section_number = 255}));
    }
    flush(0x12);
}

/// Each PID is a video stream, then teletext; of each one packet comes.
void hostile_stream::add_streams()
{
    constexpr unsigned streams_a_map = 128;
    const bytes teletext_descriptor = descriptor(0x56, hex("656E67 09 00"));
    const bytes begun = join({hex("000001 E0 0000 8080 05 2100010001"), repeated(0x55, 160)});
    unsigned version = 0;
    for (const unsigned stream_type : {0x02u, 0x06u})
        for (unsigned first = pmt_pid + 1; first < null_pid; first += streams_a_map) {
            std::vector<pmt_stream> streams;
            for (unsigned pid = first; pid < first + streams_a_map && pid < null_pid; ++pid)
                streams.push_back({stream_type, pid, stream_type == 0x06 ? teletext_descriptor : bytes()});
            stream.section(pmt_pid, pmt_section(1, first, {}, streams, {.version_number = version++ % 32}));
            for (const pmt_stream &one : streams) stream.payload(one.elementary_PID, begun, true);
        }
}

/// Splice information, each with as many descriptors as it has room for.
void hostile_stream::add_cues()
{
    stream.section(pmt_pid, pmt_section(2, null_pid,
                                        {
    },
                                        {{0x86, splice_pid, {}}}));
    bytes descriptors;
    for (unsigned i = 0; i < 12; ++i)
        descriptors =
            join({descriptors, segmentation_descriptor(join({hex("00000001 7F FF 0000000000 0E C8"),
                                                             repeated('u', 200), hex("30 00 00")}))});
    for (unsigned i = 0; i < 5100; ++i)
        stream.section(splice_pid, splice_section(0x06, splice_time(i), descriptors));
}

/// Of every PID a section as long as can be, then one that never ends.
void hostile_stream::add_long_sections()
{
    const bytes whole = long_section(0xCB, 0, repeated(0x55, 4000));
    const bytes endless = join({hex("00 CB FFFF"), repeated(0x55, 4050)});
    for (unsigned pid = 0; pid < null_pid; ++pid) stream.section(pid, whole).unit(pid, endless);
}

/// 256 PIDs with PCRs beside each other, as many as wait for the end of their window.
void hostile_stream::add_clocks()
{
    constexpr unsigned clocks = 256;
    constexpr unsigned pcrs_each = 2060; // a vector of 4096
    for (unsigned i = 0; i < pcrs_each; ++i)
        for (unsigned clock = 0; clock < clocks; ++clock, ticks += 400) stream.pcr(0x1000 + clock, ticks);
}

bool hostile_stream::write() const
{
    const bytes &content = stream.data();
    return std::fwrite(content.data(), 1, content.size(), stdout) == content.size();
}

} // namespace

int main()
{
    hostile_stream stream;
    stream.add_clock_start();
    stream.add_programs();
    stream.add_announcements();
    stream.add_versions(0x10, 0x40);
    stream.add_tables(0x10, 0x41, {}, any_extension);
    stream.add_tables(0x11, 0x46, {}, any_extension);
    stream.add_tables(0x11, 0x4A, {}, any_extension);
    stream.add_tables(0x12, 0x4E, hex("0001 00 50"), any_extension);
    stream.add_tables(0x12, 0x4F, hex("0001 00 50"), any_extension);
    stream.add_tables(0x12, 0x60, hex("0001 00 50"), 4 * any_extension);
    stream.add_guide();
    stream.add_streams();
    stream.add_cues();
    stream.add_clocks();
    stream.add_long_sections();
    return stream.write() ? 0 : 1;
}
