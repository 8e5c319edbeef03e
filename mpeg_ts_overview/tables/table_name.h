// The names of tables.
#pragma once

#include <cstdint>
#include <string>

/// What people call the table, or "table 0xNN".
std::string table_name(uint8_t table_id);
