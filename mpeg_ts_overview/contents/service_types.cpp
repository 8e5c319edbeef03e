#include "mpeg_ts_overview/contents/service_types.h"

const char *dvb_service_type_name(uint8_t service_type)
{
    switch (service_type) {
    case 0x01:
        return "digital television";
    case 0x02:
        return "digital radio";
    case 0x03:
        return "teletext";
    case 0x04:
        return "NVOD reference";
    case 0x05:
        return "NVOD time-shifted";
    case 0x06:
        return "mosaic";
    case 0x07:
        return "FM radio";
    case 0x08:
        return "SRM";
    case 0x0A:
        return "advanced codec digital radio";
    case 0x0B:
        return "H.264 mosaic";
    case 0x0C:
        return "data broadcast";
    case 0x0E:
        return "RCS map";
    case 0x0F:
        return "RCS forward link signalling";
    case 0x10:
        return "MHP";
    case 0x11:
        return "MPEG-2 HD television";
    case 0x16:
        return "H.264 SD television";
    case 0x17:
        return "H.264 SD NVOD time-shifted";
    case 0x18:
        return "H.264 SD NVOD reference";
    case 0x19:
        return "H.264 HD television";
    case 0x1A:
        return "H.264 HD NVOD time-shifted";
    case 0x1B:
        return "H.264 HD NVOD reference";
    case 0x1C:
        return "H.264 3D HD television";
    case 0x1D:
        return "H.264 3D HD NVOD time-shifted";
    case 0x1E:
        return "H.264 3D HD NVOD reference";
    case 0x1F:
        return "HEVC television";
    case 0x20:
        return "HEVC UHD television";
    default:
        return service_type >= 0x80 && service_type <= 0xFE ? "user defined" : "reserved";
    }
}

const char *atsc_service_type_name(uint8_t service_type)
{
    switch (service_type) {
    case 0x01:
        return "analog television";
    case 0x02:
        return "digital television";
    case 0x03:
        return "audio";
    case 0x04:
        return "data";
    case 0x05:
        return "software download";
    case 0x06:
        return "small screen";
    case 0x07:
        return "parameterized";
    case 0x08:
        return "non-real-time";
    case 0x09:
        return "extended parameterized";
    default:
        return "reserved";
    }
}
