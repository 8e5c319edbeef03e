#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/report/invariant.h"
#include "mpeg_ts_analysis/tables/table_dispatch.h"

#include <algorithm>
#include <csetjmp>
#include <functional>
#include <memory>
#include <random>

/// Every table_id with every body length from 0 to 255 on a PID of each kind, under all dump modes. A broken
/// invariant is a required stop and no finding here.
struct table_dispatch_sweep : report_test, testing::WithParamInterface<uint16_t> {
    table_dispatch_sweep() { invariant_handler = jump_back; }
    ~table_dispatch_sweep() override { invariant_handler = nullptr; }

    void start_fresh()
    {
        const analysis_settings kept_settings = settings;
        process_state_reset();
        settings = kept_settings;
        mpeg_ts_pid_tracking_init_tracking();
        if (pid_of_kind() == swept_pid) track(swept_pid, GetParam(), 1);
    }

    static unsigned pid_of_kind()
    {
        switch (GetParam()) {
        case TRACK_PAT:
            return 0x0000;
        case TRACK_NIT:
            return 0x0010;
        case TRACK_SDT:
            return 0x0011;
        case TRACK_EIT:
            return 0x0012;
        case TRACK_ATSC_PSIP:
            return 0x1FFB;
        default:
            return swept_pid;
        }
    }

    /// Tables that are decoded past the fence of their section, up to that of the storage.
    static bool reads_on_in_storage(unsigned table_id)
    {
        return GetParam() == TRACK_SCTE35 || (GetParam() == TRACK_ATSC_PSIP && table_id == 0xC8);
    }

    /// Bodies are what stands at any place of these bytes.
    void sweep(const bytes &source)
    {
        const bytes packet_bytes =
            stream_builder().section(pid_of_kind(), long_section(0x00, 1, repeated(0, 300))).data();
        ASSERT_TRUE(mpeg_ts_decode(&packet, packet_bytes.data(), 188));

        std::mt19937 random(GetParam());
        std::uniform_int_distribution<size_t> place(0, source.size() - 0xFF);
        for (unsigned table_id = 0; table_id <= 0xFF; ++table_id) {
            // A fresh start walks over all programs and takes as long as some hundred sections.
            if (table_id % 8 == 0) start_fresh();
            for (unsigned length = 0; length <= 0xFF; ++length)
                handle(table_id, source.data() + place(random), length);
            report();
        }
    }

    static constexpr unsigned swept_pid = 0x0100;

private:
    [[noreturn]] static void jump_back() { std::longjmp(before_section, 1); }

    /// Hands out the body from a block of exactly its size, or from the storage of the PID.
    void handle(unsigned table_id, const uint8_t *body, size_t length)
    {
        mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(static_cast<uint16_t>(pid_of_kind()));
        ASSERT_NE(t, nullptr);
        mpeg_ts_pat_main_header h;
        h.table_id = static_cast<uint8_t>(table_id);
        h.section_syntax_indicator = GetParam() != TRACK_SCTE35;
        h.section_length = static_cast<uint16_t>(length + 9);
        h.table_id_extension = 1;
        h.current_next_indicator = length % 4 != 3;

        const unsigned header_size = h.section_syntax_indicator ? 8 : 3;
        const std::unique_ptr<uint8_t[]> block(new uint8_t[length]);
        uint8_t *const base = reads_on_in_storage(table_id) ? t->tbl_asm.buffer + header_size : block.get();
        std::copy_n(body, length, base);
        dispatch(t, h, base, base + length);
    }

    /// Calls setjmp where nothing has to be destroyed.
    void dispatch(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header &h, const uint8_t *base,
                  const uint8_t *fence)
    {
        if (setjmp(before_section) == 0) on_ts_table_section(t, &h, &packet, base, fence);
    }

    static jmp_buf before_section;
    mpeg_ts_packet packet = {};
};

jmp_buf table_dispatch_sweep::before_section;

namespace {

std::string name_of_kind(const testing::TestParamInfo<uint16_t> &kind)
{
    switch (kind.param) {
    case TRACK_PAT:
        return "pat";
    case TRACK_PMT:
        return "pmt";
    case TRACK_NIT:
        return "nit";
    case TRACK_SDT:
        return "sdt";
    case TRACK_EIT:
        return "dvb_eit";
    case TRACK_ATSC_PSIP:
        return "atsc_base";
    case TRACK_ATSC_EIT:
        return "atsc_eit";
    case TRACK_ATSC_ETT:
        return "atsc_ett";
    default:
        return "scte_35";
    }
}

struct dump_modes {
    uint8_t descriptors;
    uint8_t ts;
    bool tables;
};

constexpr dump_modes all_dump_modes[] = {
    {dump_descriptors_none,     dump_ts_off,      false},
    {dump_descriptors_none,     dump_ts_header,   true },
    {dump_descriptors_contents, dump_ts_off,      false},
    {dump_descriptors_contents, dump_ts_contents, true },
    {dump_descriptors_raw,      dump_ts_off,      false},
    {dump_descriptors_raw,      dump_ts_contents, true },
};

void set(const dump_modes &modes)
{
    settings.atsc_mode = 1;
    settings.dump_descriptors_mode = modes.descriptors;
    settings.dump_ts_mode = modes.ts;
    settings.dump_tables = modes.tables;
}

bytes generated(const std::function<std::mt19937::result_type()> &next)
{
    bytes source(100'000);
    std::generate(source.begin(), source.end(), [&] { return static_cast<uint8_t>(next()); });
    return source;
}

} // namespace

TEST_P(table_dispatch_sweep, bodies_of_ones_do_no_harm)
{
    for (const dump_modes &modes : all_dump_modes) {
        set(modes);
        sweep(repeated(0xFF, 0xFF));
    }
}

TEST_P(table_dispatch_sweep, random_bodies_do_no_harm)
{
    std::mt19937 random(GetParam());
    for (const dump_modes &modes : all_dump_modes) {
        set(modes);
        sweep(generated([&] { return random(); }));
    }
}

/// Few bits set make lengths that fit, so that the loops go on.
TEST_P(table_dispatch_sweep, random_bodies_of_small_numbers_do_no_harm)
{
    std::mt19937 random(GetParam());
    for (const dump_modes &modes : all_dump_modes) {
        set(modes);
        sweep(generated([&] { return random() & random() & random(); }));
    }
}

INSTANTIATE_TEST_SUITE_P(every_kind, table_dispatch_sweep,
                         testing::Values(TRACK_PAT, TRACK_PMT, TRACK_NIT, TRACK_SDT, TRACK_EIT,
                                         TRACK_ATSC_PSIP, TRACK_ATSC_EIT, TRACK_ATSC_ETT, TRACK_SCTE35),
                         name_of_kind);
