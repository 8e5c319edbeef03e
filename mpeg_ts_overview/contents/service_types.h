// What service_types are called.
#pragma once

#include <cstdint>

/// EN 300 468 Table 87; "reserved" or "user defined" for those without a name.
const char *dvb_service_type_name(uint8_t service_type);

/// ATSC A/65 Table 6.7 and A/53; "reserved" for those without a name.
const char *atsc_service_type_name(uint8_t service_type);
