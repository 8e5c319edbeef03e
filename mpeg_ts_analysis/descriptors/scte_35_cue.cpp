#include "mpeg_ts_analysis/descriptors/scte_35_cue.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"

namespace {

constexpr const char *cue_stream_type_names[] = {"splice_insert, splice_null, splice_schedule",
                                                 "All Commands", "Segmentation", "Tiered Splicing",
                                                 "Tiered Segmentation"};

} // namespace

void desc_scte35_2020_8_2_cue_identifier_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        cue_identifier_descriptor() [SCTE-35 (2020) 8.2]\n");
    show_named("            cue_stream_type=0x%02x %s\n", in.bits(8), cue_stream_type_names, "?");
}
