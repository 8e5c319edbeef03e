// Descriptors of ISO/IEC 13818-1 2.6, with the AVC video descriptor of SCTE 187-2 that belongs with them.
// Each decoder prints the length bytes at body.
#pragma once

#include <cstdint>

/// video_stream_descriptor, 2.6.2. At least 1 byte.
void desc_isoiec13818_1_2_6_2_video_stream_descriptor(const uint8_t *body, unsigned length);

/// audio_stream_descriptor, 2.6.4. At least 1 byte.
void desc_isoiec13818_1_2_6_4_audio_stream_descriptor(const uint8_t *body, unsigned length);

/// registration_descriptor, 2.6.8. At least 4 bytes.
void desc_isoiec13818_1_2_6_8_registration_descriptor(const uint8_t *body, unsigned length);

/// data_stream_alignment_descriptor, 2.6.10. At least 1 byte.
void desc_isoiec13818_1_2_6_10_data_stream_alignment_descriptor(const uint8_t *body, unsigned length);

/// CA_descriptor, 2.6.16. At least 4 bytes.
void desc_isoiec13818_1_2_6_16_CA_descriptor(const uint8_t *body, unsigned length);

/// ISO_639_language_descriptor, 2.6.18. Any length; entries of 4 bytes.
void desc_isoiec13818_1_2_6_18_ISO_639_language_descriptor(const uint8_t *body, unsigned length);

/// system_clock_descriptor, 2.6.20. At least 2 bytes.
void desc_isoiec13818_1_2_6_20_system_clock_descriptor(const uint8_t *body, unsigned length);

/// multiplex_buffer_utilization_descriptor, 2.6.22. At least 4 bytes.
void desc_isoiec13818_1_2_6_22_multiplex_buffer_utilization_descriptor(const uint8_t *body, unsigned length);

/// maximum_bitrate_descriptor, 2.6.26. At least 3 bytes.
void desc_isoiec13818_1_2_6_26_maximum_bitrate_descriptor(const uint8_t *body, unsigned length);

/// private_data_indicator_descriptor, 2.6.28. At least 4 bytes.
void desc_isoiec13818_1_2_6_28_private_data_indicator_descriptor(const uint8_t *body, unsigned length);

/// smoothing_buffer_descriptor, 2.6.30. At least 6 bytes.
void desc_isoiec13818_1_2_6_30_smoothing_buffer_descriptor(const uint8_t *body, unsigned length);

/// STD_descriptor, 2.6.32. At least 1 byte.
void desc_isoiec13818_1_2_6_32_STD_descriptor(const uint8_t *body, unsigned length);

/// AVC_video_descriptor, SCTE 187-2 8.2. Any length; printed in every dump mode.
void desc_scte_187_2_2012_8_2_AVC_video_descriptor(const uint8_t *body, unsigned length);

/// AVC_timing_and_HRD_descriptor, Amendment 3 2.6.66. Any length; printed in every dump mode.
void desc_isoiec13818_1_2000_amd_3_2_6_66_AVC_timing_and_HRD_descriptor(const uint8_t *body, unsigned length);
