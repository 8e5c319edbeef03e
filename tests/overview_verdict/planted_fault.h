// One fault in a broadcast that has none else, and the checks that it fails.
#pragma once

#include "mpeg_ts_overview/driver/overview_request.h"
#include "tests/overview_verdict/broadcasts.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

struct planted_fault {
    const char *name;
    std::function<bytes()> stream;
    std::vector<std::string> fails;       ///< checks, in their order; none where a limit is just kept
    std::optional<uint64_t> first_packet; ///< of the first of them
    uint64_t count;                       ///< of the first of them
    overview_request request;
    std::optional<uint64_t> last_packet; ///< of the first of them, where it fails more than once
};

/// The stream fails these checks, the first of them once, in that packet where it is told.
inline planted_fault raises(const char *name, std::vector<std::string> fails,
                            std::optional<uint64_t> first_packet, std::function<bytes()> stream)
{
    return {name, std::move(stream), std::move(fails), first_packet, 1, {}, {}};
}

/// The stream just keeps the limits.
inline planted_fault keeps(const char *name, std::function<bytes()> stream)
{
    return {name, std::move(stream), {}, std::nullopt, 0, {}, {}};
}

/// The first of the checks fails so often, the last time in that packet.
inline planted_fault times(uint64_t count, uint64_t last_packet, planted_fault fault)
{
    fault.count = count;
    fault.last_packet = last_packet;
    return fault;
}

inline planted_fault read_as(const overview_request &request, planted_fault fault)
{
    fault.request = request;
    return fault;
}

/// The name, where a test prints its parameter.
inline void PrintTo(const planted_fault &fault, std::ostream *out)
{
    *out << fault.name;
}

// By the priority of the checks; those of ATSC and of no standard are the others.
std::vector<planted_fault> faults_of_first_priority();
std::vector<planted_fault> faults_of_second_priority();
std::vector<planted_fault> faults_of_third_priority();
std::vector<planted_fault> other_faults();

/// The recording is a complete multiplex.
inline overview_request of_whole_multiplex()
{
    overview_request request;
    request.whole_multiplex = true;
    return request;
}

/// The broadcast with one more section, in a slot that is always free.
inline bytes dvb_with(unsigned pid, const bytes &section, unsigned ms = 10000 + free_slot)
{
    return dvb_broadcast().section(ms, pid, section).packets();
}
