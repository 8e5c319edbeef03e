// Intervals of A/65 7.1 and A/53 Part 3, and what no table of limits has.
#include "tests/overview_verdict/planted_fault.h"

namespace {

std::function<bytes()> away(bytes broadcast_sections::*section, unsigned first, unsigned last)
{
    return [=] { return atsc_broadcast().away(sections().*section, first, last).packets(); };
}

/// The unit of that slot is sent with these times before the clock instead.
std::function<bytes()> with_unit(unsigned ms, unsigned pid, int pts_ms, int dts_ms = 0)
{
    return [=] {
        const unsigned stream_id = pid == video ? 0xE0 : 0xC0;
        return dvb_broadcast().clear(ms).unit(ms, pid, stream_id, pts_ms, dts_ms).packets();
    };
}

/// One SDT says that the second service has running_status 4.
bytes with_changed_sdt(unsigned version_number)
{
    const bytes body = hex("0020 FF 0001 FD 8000 0002 FC 9000");
    return dvb_with(0x11, long_section(0x42, 1, body, {.version_number = version_number}));
}

using all = broadcast_sections;

std::vector<planted_fault> faults_of_atsc()
{
    return {
        keeps("mgt_away_for_157_ms", away(&all::mgt, 10206, 10363)),
        raises("mgt_away_for_158_ms", {"A.1"}, 10364, away(&all::mgt, 10206, 10364)),
        keeps("tvct_away_for_420_ms", away(&all::tvct, 10088, 10508)),
        raises("tvct_away_for_421_ms", {"A.1"}, 10509, away(&all::tvct, 10088, 10509)),
        keeps("stt_away_for_1050_ms", away(&all::stt, 10012, 11062)),
        raises("stt_away_for_1051_ms", {"A.1"}, 11063, away(&all::stt, 10012, 11063)),
        keeps("rrt_away_for_63000_ms", away(&all::rrt, 14, 63014)),
        raises("rrt_away_for_63001_ms", {"A.1"}, 63015, away(&all::rrt, 14, 63015)),
        keeps("atsc_eit_away_for_a_minute", away(&all::atsc_eit, 496, 60496)),
        keeps("atsc_pat_away_for_105_ms", away(&all::atsc_pat, 10002, 10107)),
        raises("atsc_pat_away_for_106_ms", {"A.2"}, 10108, away(&all::atsc_pat, 10002, 10108)),
        keeps("atsc_pmt_away_for_420_ms", away(&all::atsc_pmt, 10004, 10424)),
        raises("atsc_pmt_away_for_421_ms", {"A.2"}, 10425, away(&all::atsc_pmt, 10004, 10425)),
    };
}

} // namespace

std::vector<planted_fault> other_faults()
{
    std::vector<planted_fault> faults = {
        keeps("unit_comes_at_its_time", with_unit(20, audio, 0)),
        raises("unit_comes_behind_its_time", {"X.1"}, 20, with_unit(20, audio, -1)),
        keeps("section_changes_with_its_version", [] { return with_changed_sdt(1); }),
        times(
            2, 11008,
            raises("section_changes_under_its_version", {"X.2"}, 10039, [] { return with_changed_sdt(0); })),
        keeps("dts_is_the_pts", with_unit(10010, video, 200, 200)),
        raises("dts_is_above_the_pts", {"X.3"}, 10010, with_unit(10010, video, 199, 200)),
        keeps("dts_stays", with_unit(10050, video, 240, 160)),
        raises("dts_goes_back", {"X.3"}, 10050, with_unit(10050, video, 240, 159)),
        keeps("pts_of_video_goes_back", with_unit(10050, video, 199, 199)),
        keeps("pts_of_audio_stays", with_unit(10060, audio, 60)),
        raises("pts_of_audio_goes_back", {"X.3"}, 10060, with_unit(10060, audio, 59)),
    };
    for (planted_fault &fault : faults_of_atsc()) faults.push_back(std::move(fault));
    return faults;
}
