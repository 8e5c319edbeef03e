// The tables of ATSC A/65 (Table 4.1) and where they stand; the master guide table, the virtual channel table
// and the system time table have files of their own.
#pragma once

#include <cstdint>

constexpr uint16_t psip_base_pid = 0x1FFB;

constexpr uint8_t mgt_table_id = 0xC7;
constexpr uint8_t tvct_table_id = 0xC8;
constexpr uint8_t cvct_table_id = 0xC9;
constexpr uint8_t rrt_table_id = 0xCA;
constexpr uint8_t atsc_eit_table_id = 0xCB;
constexpr uint8_t ett_table_id = 0xCC;
constexpr uint8_t stt_table_id = 0xCD;
constexpr uint8_t dcct_table_id = 0xD3;
constexpr uint8_t dccsct_table_id = 0xD4;

constexpr bool is_psip(uint8_t table_id)
{
    return (table_id >= mgt_table_id && table_id <= stt_table_id) || table_id == dcct_table_id ||
           table_id == dccsct_table_id;
}
