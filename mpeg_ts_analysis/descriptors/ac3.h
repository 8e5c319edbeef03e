// AC-3 audio, in the form of ATSC A/52:2012 and in the form of DVB. Each decoder prints the length bytes at
// body.
#pragma once

#include <cstdint>

/// AC-3_audio_stream_descriptor, ATSC A/52:2012 A4.3. Any length; the fields are printed in every dump mode.
void desc_atsc_A52_2012_A4_3_AC3_audio_stream_descriptor(const uint8_t *body, unsigned length);

/// AC-3_descriptor, DVB A38 D.3. At least 1 byte; nothing is printed in dump mode none.
void desc_dvb_A38_D_3_AC3_descriptor(const uint8_t *body, unsigned length);
