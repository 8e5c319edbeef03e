// DVB descriptors of networks, transport streams, services and stream identity: DVB A38 (EN 300 468) 6.2,
// with the carousel identifier of ETSI TR 101 202 and the Australian logical channels of Free TV OP 41. Each
// decoder prints the length bytes at body. Texts are printed as raw bytes up to the first zero.
#pragma once

#include <cstdint>

/// network_name_descriptor, DVB A38 6.2.27. Any length.
void desc_dvb_A38_6_2_27_network_name_descriptor(const uint8_t *body, unsigned length);

/// service_list_descriptor, DVB A38 6.2.35. Any length; entries of 3 bytes.
void desc_dvb_A38_6_2_35_service_list_descriptor(const uint8_t *body, unsigned length);

/// satellite_delivery_system_descriptor, DVB A38 6.2.13.2. Reads 11 bytes.
void desc_dvb_A38_6_2_13_2_satellite_delivery_system_descriptor(const uint8_t *body);

/// service_descriptor, DVB A38 6.2.33. At least 2 bytes.
void desc_dvb_A38_6_2_33_service_descriptor(const uint8_t *body, unsigned length);

/// linkage_descriptor, DVB A38 6.2.19. Reads 7 bytes.
void desc_dvb_A38_6_2_19_linkage_descriptor(const uint8_t *body);

/// stream_identifier_descriptor, DVB A38 6.2.39. At least 1 byte.
void desc_dvb_A38_6_2_39_stream_identifier_descriptor(const uint8_t *body, unsigned length);

/// CA_identifier_descriptor, DVB A38 6.2.5. Any length; entries of 2 bytes.
void desc_dvb_A38_6_2_5_CA_identifier_descriptor(const uint8_t *body, unsigned length);

/// teletext_descriptor, DVB A38 6.2.43. Any length; entries of 5 bytes.
void desc_dvb_A38_6_2_43_teletext_descriptor(const uint8_t *body, unsigned length);

/// terrestrial_delivery_system_descriptor, DVB A38 6.2.13.4. Reads 11 bytes.
void desc_dvb_A38_6_2_13_4_terrestrial_delivery_system_descriptor(const uint8_t *body);

/// private_data_specifier_descriptor, DVB A38 6.2.31. At least 4 bytes. The descriptor loop keeps the value.
void desc_dvb_A38_6_2_31_private_data_specifier_descriptor(const uint8_t *body, unsigned length);

/// data_broadcast_id_descriptor, DVB A38 6.2.12. At least 2 bytes; the selector bytes are printed in every
/// dump mode.
void desc_dvb_A38_6_2_12_data_broadcast_id_descriptor(const uint8_t *body, unsigned length);

/// carousel_identifier_descriptor, ETSI TR 101 202 4.7.7.1. At least 5 bytes.
void desc_etsi_tr_101_202_4_7_7_1_carousel_identifier_descriptor(const uint8_t *body, unsigned length);

/// logical_channel_descriptor, Free TV Australia OP 41. Any length; entries of 4 bytes.
void desc_freetv_op41_logical_channel_descriptor(const uint8_t *body, unsigned length);
