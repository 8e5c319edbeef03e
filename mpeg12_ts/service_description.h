// The body of a service_description_section, EN 300 468 5.2.3: its header and an iterator over its services.
#pragma once

#include <cstdint>

/// Its pointers point into the section.
struct mpeg_ts_service_description_section {
    uint16_t original_network_id = 0;
    const uint8_t *next = nullptr; ///< where the following service begins
    const uint8_t *loop_fence = nullptr;

    // The service in hand.
    uint16_t service_id = 0;
    uint8_t EIT_schedule_flag = 0;          ///< 0 or 1
    uint8_t EIT_present_following_flag = 0; ///< 0 or 1
    uint8_t running_status = 0;             ///< 0 to 7
    uint8_t free_CA_mode = 0;               ///< 0 or 1
    const uint8_t *descriptors = nullptr;
    const uint8_t *descriptors_fence = nullptr;
};

/// Reads original_network_id from the body [p, f) and sets the iterator before the first service. Returns 0
/// when fewer than 3 bytes are given.
int mpeg_ts_decode_service_description_section(mpeg_ts_service_description_section *section, const uint8_t *p,
                                               const uint8_t *f);

/// Decodes the next service in place. Returns 0 at the loop's end or when the next service does not fit.
int mpeg_ts_decode_service_description_section_entry(mpeg_ts_service_description_section *section);
