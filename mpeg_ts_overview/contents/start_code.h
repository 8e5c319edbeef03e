// Start codes of video elementary streams: the bytes 00 00 01.
#pragma once

#include <cstdint>

/// The byte behind the next start code prefix that lies whole in [p, fence), which may be fence; null when
/// there is none.
inline const uint8_t *behind_start_code(const uint8_t *p, const uint8_t *fence)
{
    for (; fence - p > 2; ++p)
        if (p[0] == 0 && p[1] == 0 && p[2] == 1) return p + 3;
    return nullptr;
}
