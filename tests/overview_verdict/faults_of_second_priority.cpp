// ETSI TR 101 290 5.2.2.
#include "tests/overview_verdict/planted_fault.h"

#include <algorithm>

namespace {

constexpr int64_t second = 1000 * pcr_ticks_per_ms;

bytes with_transport_error()
{
    bytes packets = dvb_broadcast().packets();
    byte_of(packets, next_packet_of(packets, unstamped, 10000), 1) |= 0x80;
    return packets;
}

/// One byte of the section that begins in that packet is wrong.
bytes with_wrong_crc(unsigned packet)
{
    bytes packets = dvb_broadcast().packets();
    byte_of(packets, packet, 9) ^= 0x01;
    return packets;
}

bytes with_wrong_crc_of_private_data()
{
    bytes packets = dvb_with(private_data, sections().bat);
    byte_of(packets, 10000 + free_slot, 9) ^= 0x01;
    return packets;
}

/// The second program has a PCR at millisecond 10031, and the next one then.
timed_multiplex pcr_away_to(unsigned ms, bool discontinuity = false)
{
    timed_multiplex stream = dvb_broadcast();
    stream.without_pcr(second_audio, 10031, 10149);
    return stream.pcr(10031, second_audio).pcr(ms, second_audio, 0, discontinuity);
}

/// From that millisecond on the PCRs are so many ticks behind.
bytes with_pcrs_set_back(unsigned pid, unsigned from, int64_t ticks, bool discontinuity)
{
    timed_multiplex stream = dvb_broadcast();
    for (unsigned ms = from; ms < dvb_length_ms; ms += 40)
        stream.clear(ms).pcr(ms, pid, -ticks, discontinuity && ms == from);
    return stream.packets();
}

bytes with_pcr_off(unsigned ms, unsigned pid, int64_t ticks)
{
    return dvb_broadcast().clear(ms).pcr(ms, pid, ticks).packets();
}

bytes pts_away_to(unsigned ms)
{
    timed_multiplex stream = dvb_broadcast();
    stream.without_data(audio, 10027, 10741);
    return stream.unit(10027, audio, 0xC0, 100).unit(ms, audio, 0xC0, 100).packets();
}

std::vector<planted_fault> faults_of_pcrs()
{
    return {
        keeps("pcr_away_for_100_ms", [] { return pcr_away_to(10131).packets(); }),
        raises("pcr_away_for_101_ms", {"2.3a", "2.3b"}, 10132, [] { return pcr_away_to(10132).packets(); }),
        keeps("flagged_pcr_away_for_100_ms", [] { return pcr_away_to(10131, true).packets(); }),
        raises("flagged_pcr_away_for_101_ms", {"2.3a"}, 10132,
               [] { return pcr_away_to(10132, true).packets(); }),
        raises("pcr_set_back", {"2.3b"}, 20030,
               [] { return with_pcrs_set_back(second_audio, 20030, second, false); }),
        keeps("pcr_set_back_and_flagged",
              [] { return with_pcrs_set_back(second_audio, 20030, second, true); }),
        raises("pcr_of_the_clock_set_back", {"2.3b"}, 20000,
               [] { return with_pcrs_set_back(video, 20000, 3 * second, false); }),
        keeps("pcr_of_the_clock_set_back_and_flagged",
              [] { return with_pcrs_set_back(video, 20000, 3 * second, true); }),
        keeps("pcr_off_by_481_ns", [] { return with_pcr_off(10030, second_audio, 13); }),
        raises("pcr_off_by_556_ns", {"2.4"}, 10030, [] { return with_pcr_off(10030, second_audio, 15); }),
        keeps("pcr_of_the_clock_off_by_481_ns", [] { return with_pcr_off(10000, video, -13); }),
        raises("pcr_of_the_clock_off_by_556_ns", {"2.4"}, 10000,
               [] { return with_pcr_off(10000, video, -15); }),
    };
}

std::vector<planted_fault> faults_of_crcs()
{
    const auto wrong_at = [](unsigned packet) { return [=] { return with_wrong_crc(packet); }; };
    return {
        raises("wrong_crc_of_pat", {"2.2"}, 2002, wrong_at(2002)),
        raises("wrong_crc_of_pmt", {"2.2"}, 2004, wrong_at(2004)),
        raises("wrong_crc_of_cat", {"2.2"}, 5032, wrong_at(5032)),
        raises("wrong_crc_of_nit", {"2.2"}, 5012, wrong_at(5012)),
        raises("wrong_crc_of_nit_of_others", {"2.2"}, 5026, wrong_at(5026)),
        raises("wrong_crc_of_sdt", {"2.2"}, 5008, wrong_at(5008)),
        raises("wrong_crc_of_sdt_of_others", {"2.2"}, 5028, wrong_at(5028)),
        raises("wrong_crc_of_bat", {"2.2"}, 5024, wrong_at(5024)),
        raises("wrong_crc_of_eit", {"2.2"}, 5014, wrong_at(5014)),
        raises("wrong_crc_of_eit_schedule", {"2.2"}, 14016, wrong_at(14016)),
        raises("wrong_crc_of_tot", {"2.2"}, 10022, wrong_at(10022)),
        keeps("wrong_crc_of_private_data", with_wrong_crc_of_private_data),
        keeps("tdt_has_no_crc", wrong_at(10018)),
    };
}

} // namespace

std::vector<planted_fault> faults_of_second_priority()
{
    const auto dvb_without_cat = [] { return dvb_broadcast().without_pid(0x01).packets(); };
    std::vector<planted_fault> faults = {
        raises("transport_error", {"2.1"}, 10036, with_transport_error),
        keeps("pts_away_for_700_ms", [] { return pts_away_to(10727); }),
        raises("pts_away_for_701_ms", {"2.5"}, 10728, [] { return pts_away_to(10728); }),
        raises("another_table_on_pid_1", {"2.6"}, 10039, [] { return dvb_with(0x01, sections().bat); }),
        keeps("no_cat", dvb_without_cat),
        read_as(of_whole_multiplex(), raises("no_cat_in_a_whole_multiplex", {"2.6"}, {}, dvb_without_cat)),
    };
    for (planted_fault &fault : faults_of_pcrs()) faults.push_back(std::move(fault));
    for (planted_fault &fault : faults_of_crcs()) faults.push_back(std::move(fault));
    return faults;
}
