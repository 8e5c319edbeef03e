// ETSI TR 101 290 5.2.1.
#include "tests/overview_verdict/planted_fault.h"

#include <algorithm>

namespace {

constexpr unsigned null_packet = 10068; ///< another one follows

bytes with_bad_sync_bytes(unsigned count)
{
    bytes packets = dvb_broadcast().packets();
    for (unsigned packet = null_packet; packet < null_packet + count; ++packet)
        byte_of(packets, packet, 0) = 0x48;
    return packets;
}

/// The packet of unstamped audio comes again, so many times.
bytes with_copies(unsigned count)
{
    bytes packets = dvb_broadcast().packets();
    const unsigned packet = next_packet_of(packets, unstamped, 10000);
    const auto start = packets.begin() + static_cast<ptrdiff_t>(packet * 188);
    for (unsigned copy = 1; copy <= count; ++copy)
        std::copy_n(start, 188, start + static_cast<ptrdiff_t>((2 * copy - 1) * 188));
    return packets;
}

bytes with_a_lost_packet()
{
    bytes packets = dvb_broadcast().packets();
    lose(packets, next_packet_of(packets, unstamped, 10000));
    return packets;
}

bytes scrambled(unsigned packet)
{
    bytes packets = dvb_broadcast().packets();
    byte_of(packets, packet, 3) |= 0x80;
    return packets;
}

bytes dvb_without(unsigned pid)
{
    return dvb_broadcast().without_pid(pid).packets();
}

/// Unstamped audio stays away from millisecond 10036.
bytes unstamped_away_to(unsigned ms)
{
    return dvb_broadcast().without_data(unstamped, 10037, ms).payload(ms, unstamped).packets();
}

std::vector<planted_fault> faults_of_psi()
{
    const auto pat_away = [](unsigned to) {
        return [=] { return dvb_broadcast().away(sections().pat, 2002, to).packets(); };
    };
    const auto map_away = [](unsigned to) {
        return [=] { return dvb_broadcast().away(sections().first_pmt, 2004, to).packets(); };
    };
    const overview_request whole = of_whole_multiplex();
    return {
        keeps("pat_away_for_500_ms", pat_away(2502)),
        raises("pat_away_for_501_ms", {"1.3a"}, 2503, pat_away(2503)),
        raises("another_table_on_pid_0", {"1.3a"}, 10039, [] { return dvb_with(0, sections().bat); }),
        raises("pat_scrambled", {"1.3a"}, 2002, [] { return scrambled(2002); }),
        keeps("no_pat", [] { return dvb_without(0); }),
        read_as(whole, raises("no_pat_in_a_whole_multiplex", {"1.3a"}, {}, [] { return dvb_without(0); })),
        keeps("pmt_away_for_500_ms", map_away(2504)),
        raises("pmt_away_for_501_ms", {"1.5a"}, 2505, map_away(2505)),
        raises("pmt_scrambled", {"1.5a"}, 2004, [] { return scrambled(2004); }),
        keeps("no_pmt_of_a_program", [] { return dvb_without(second_map_pid); }),
        read_as(whole, raises("no_pmt_in_a_whole_multiplex", {"1.5a"}, {},
                              [] { return dvb_without(second_map_pid); })),
        keeps("pid_away_for_5000_ms", [] { return unstamped_away_to(15036); }),
        raises("pid_away_for_5001_ms", {"1.6"}, 15037, [] { return unstamped_away_to(15037); }),
        keeps("pid_never_there", [] { return dvb_without(unstamped); }),
        read_as(whole,
                raises("pid_never_in_a_whole_multiplex", {"1.6"}, {}, [] { return dvb_without(unstamped); })),
    };
}

} // namespace

std::vector<planted_fault> faults_of_first_priority()
{
    std::vector<planted_fault> faults = {
        raises("one_bad_sync_byte", {"1.2"}, null_packet, [] { return with_bad_sync_bytes(1); }),
        raises("two_bad_sync_bytes_in_a_row", {"1.1", "1.2"}, {}, [] { return with_bad_sync_bytes(2); }),
        raises("packet_lost", {"1.4"}, 10076, with_a_lost_packet),
        keeps("packet_sent_twice", [] { return with_copies(1); }),
        raises("packet_sent_three_times", {"1.4"}, 10039, [] { return with_copies(2); }),
    };
    for (planted_fault &fault : faults_of_psi()) faults.push_back(std::move(fault));
    return faults;
}
