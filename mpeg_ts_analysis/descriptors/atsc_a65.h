// Descriptors of ATSC A/65:2009 6.9, with the conditional access descriptor of ATSC A/70. Each decoder prints
// the length bytes at body. Headings obey the dump mode; fields are printed in every mode.
#pragma once

#include <cstdint>

/// caption_service_descriptor, A/65 6.9.2. Any length; services of 6 bytes.
void desc_atsc_A65_2009_6_9_2_caption_service_descriptor(const uint8_t *body, unsigned length);

/// content_advisory_descriptor, A/65 6.9.3. Any length.
void desc_atsc_A65_2009_6_9_3_content_advisory_descriptor(const uint8_t *body, unsigned length);

/// ATSC_CA_descriptor, A/70:2010 Part 1 4.1.3.5. Any length.
void desc_atsc_A70_2010_ATSC_CA_descriptor(const uint8_t *body, unsigned length);

/// extended_channel_name_descriptor, A/65 6.9.4. Any length.
void desc_atsc_A65_2009_6_9_4_extended_channel_name_descriptor(const uint8_t *body, unsigned length);

/// service_location_descriptor, A/65 6.9.5. Any length; elements of 6 bytes.
void desc_atsc_A65_2009_6_9_5_service_location_descriptor(const uint8_t *body, unsigned length);

/// component_name_descriptor, A/65 6.9.7. Any length.
void desc_atsc_A65_2009_6_9_7_component_name_descriptor(const uint8_t *body, unsigned length);

/// rc_descriptor, printed under the clause 6.9.7. Any length.
void desc_atsc_A65_2009_rc_descriptor(const uint8_t *body, unsigned length);
