#include "mpeg12_ts/service_description.h"

#include "mpeg12_ts/bit_reader.h"

int mpeg_ts_decode_service_description_section(mpeg_ts_service_description_section *section, const uint8_t *p,
                                               const uint8_t *f)
{
    bit_reader in(p, f);

    *section = mpeg_ts_service_description_section{};
    if (!in.has(3)) return 0;
    section->original_network_id = static_cast<uint16_t>(in.bits(16));
    in.bits(8);
    section->next = in.position();
    section->loop_fence = f;
    return 1;
}

int mpeg_ts_decode_service_description_section_entry(mpeg_ts_service_description_section *section)
{
    bit_reader in(section->next, section->loop_fence);

    if (!in.has(5)) return 0;
    section->service_id = static_cast<uint16_t>(in.bits(16));
    in.bits(6);
    section->EIT_schedule_flag = static_cast<uint8_t>(in.bits(1));
    section->EIT_present_following_flag = static_cast<uint8_t>(in.bits(1));
    section->running_status = static_cast<uint8_t>(in.bits(3));
    section->free_CA_mode = static_cast<uint8_t>(in.bits(1));
    const unsigned descriptors_loop_length = in.bits(12);
    if (!in.has(descriptors_loop_length)) return 0;
    section->descriptors = in.position();
    in.skip(descriptors_loop_length);
    section->descriptors_fence = in.position();
    section->next = in.position();
    return 1;
}
