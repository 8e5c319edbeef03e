#include "mpeg_ts_analysis/tables/scte_35.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/report/invariant.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/tables/splice_insert.h"

#include <cstddef>

namespace {

constexpr uint8_t splice_info_table_id = 0xFC;
constexpr unsigned splice_command_offset = 14;
constexpr unsigned splice_insert_type = 0x05;
constexpr unsigned unstated_length = 0xFFF;
constexpr unsigned avail_descriptor_tag = 0x00;

struct splice_command {
    unsigned length; ///< bytes, or unstated_length
    unsigned type;
};

/// The fixed fields, which are read past the section's end too.
splice_command print_fixed_fields(bit_reader in)
{
    splice_command command;

    in.bits(24);
    report_printf("    protocol_version:           0x%02x\n", in.bits(8));
    report_printf("    encrypted packet:           %u\n", in.bits(1));
    report_printf("    encryption algorithm:       0x%02x\n", in.bits(6));
    report_printf("    pts_adjustment:             %llu\n", in.bits64(33));
    report_printf("    cw_index:                   0x%02x\n", in.bits(8));
    report_printf("    tier:                       0x%03x\n", in.bits(12));
    command.length = in.bits(12);
    report_printf("    splice_command_length:      %u\n", command.length);
    command.type = in.bits(8);
    report_printf("    splice_command_type:        0x%02x\n", command.type);
    return command;
}

/// Prints the command at p and returns where the descriptors are looked for, or null when nothing can be
/// found behind it.
const uint8_t *print_command(const splice_command &command, const uint8_t *p, const uint8_t *fence,
                             const uint8_t *storage_fence)
{
    const uint8_t *const declared_end = p + command.length;

    if (command.type != splice_insert_type) {
        report_line("    !! Unknown splice command type");
        return command.length == unstated_length ? nullptr : declared_end;
    }

    const uint8_t *end = scte35_splice_insert(p, storage_fence);
    if (command.length != unstated_length) {
        if (end > declared_end)
            report_printf("    !! splice_insert() exceeds length by %u bytes\n",
                          static_cast<unsigned>(end - declared_end));
        if (end < declared_end)
            report_printf("    !! splice_insert() end differs by %d bytes\n",
                          static_cast<int>(end - declared_end));
        end = declared_end;
    }
    if (end > fence) {
        report_printf("    !! splice_insert() exceeds fence by %u bytes\n",
                      static_cast<unsigned>(end - fence));
        return nullptr;
    }
    return end;
}

void print_descriptors(bit_reader in)
{
    if (!in.has(2)) return;
    // kept: the loop runs to the section's fence, whatever its length says.
    report_printf("    descriptor_loop_length:     %u bytes\n", in.bits(16));
    while (in.has(2)) {
        const unsigned splice_descriptor_tag = in.bits(8);
        const unsigned descriptor_length = in.bits(8);
        if (!in.has(descriptor_length)) return;
        report_printf("        tag=0x%02x len=%u\n", splice_descriptor_tag, descriptor_length);
        const uint8_t *const body = in.position();
        if (splice_descriptor_tag == avail_descriptor_tag)
            scte35_avail_descriptor(body, body + descriptor_length);
        in.skip(descriptor_length);
    }
}

} // namespace

void on_ts_scte_35(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h, const uint8_t *base,
                   const uint8_t *fence)
{
    report_printf("* SCTE-35 message [ANSI/SCTE-35] for program 0x%04x\n", t->program_number);
    report_printf("    Table ID:                   0x%02x\n", h->table_id);
    if (h->table_id != splice_info_table_id) {
        report_line("    !!! Unknown table ID");
        return;
    }
    report_line("    splice_info_section() [ANSI/SCTE-35 2016 Table 5 Section 9.2]");

    invariant(t->tbl_asm.buffer != NULL);
    invariant(base >= t->tbl_asm.buffer && base <= (t->tbl_asm.fence));
    invariant(fence >= t->tbl_asm.buffer && (fence+128) <= (t->tbl_asm.fence));

    const uint8_t *const section = t->tbl_asm.buffer;
    const splice_command command = print_fixed_fields(bit_reader(section, t->tbl_asm.fence));
    const uint8_t *const p = print_command(command, section + splice_command_offset, fence, t->tbl_asm.fence);
    if (p != nullptr) print_descriptors(bit_reader(p, fence));
}
