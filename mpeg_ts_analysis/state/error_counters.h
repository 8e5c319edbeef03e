// What the closing summary counts, by the priorities of ETSI TR 101 290.
#pragma once

struct error_counters {
    unsigned long long priority1_errors = 0;
    unsigned long long continuity_errors = 0; ///< of the first priority
    unsigned long long priority2_errors = 0;
    unsigned long long illegal_afc_errors = 0; ///< of the second priority; raised only by the packet dump
};
