// Section storage that PIDs have given back, kept for the next that need some.
#pragma once

#include "mpeg12_ts/table_assembly.h"

/// A PAT section names 253 programs at most: the storage of all their PMTs fits.
constexpr unsigned spare_storage_limit = 256;

struct spare_storage {
    mpeg_ts_table_assembly
        assemblies[spare_storage_limit]; ///< the first count have zero-filled storage, the others none
    unsigned count = 0;
};

inline void spare_storage_free(spare_storage *spares)
{
    while (spares->count > 0) mpeg_ts_table_assembly_init(&spares->assemblies[--spares->count], 0);
}
