// DVB descriptors of events and content: DVB A38 (EN 300 468) 6.2, with the content identifier and the
// default authority of ETSI TR 102 323. Each decoder prints the length bytes at body. Texts are printed as
// raw bytes up to the first zero.
#pragma once

#include <cstdint>

/// content_descriptor, DVB A38 6.2.9. Any length; entries of 2 bytes.
void desc_dvb_A38_6_2_9_content_descriptor(const uint8_t *body, unsigned length);

/// parental_rating_descriptor, DVB A38 6.2.28. Any length; entries of 4 bytes.
void desc_dvb_A38_6_2_28_parental_rating_descriptor(const uint8_t *body, unsigned length);

/// short_event_descriptor, DVB A38 6.2.37. Any length.
void desc_dvb_A38_6_2_37_short_event_descriptor(const uint8_t *body, unsigned length);

/// extended_event_descriptor, EN 300 468 (2010-04) 6.2.15. Any length.
void desc_etsi_en_300_468_2010_04_6_2_15_extended_event_descriptor(const uint8_t *body, unsigned length);

/// component_descriptor, EN 300 468 (2010-04) 6.2.8. Any length.
void desc_etsi_en_300_468_2010_04_6_2_8_component_descriptor(const uint8_t *body, unsigned length);

/// content_identifier_descriptor, ETSI TR 102 323 12.1.4. Any length.
void desc_etsi_tr_102_323_12_1_4_content_identifier_descriptor(const uint8_t *body, unsigned length);

/// default_authority_descriptor, ETSI TR 102 323 6.3.3. Any length.
void desc_etsi_tr_102_323_6_3_3_default_authority_descriptor(const uint8_t *body, unsigned length);
