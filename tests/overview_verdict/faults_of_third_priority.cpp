// ETSI TR 101 290 5.2.3.
#include "tests/overview_verdict/planted_fault.h"

namespace {

std::function<bytes()> away(bytes broadcast_sections::*section, unsigned first, unsigned last)
{
    return [=] { return dvb_broadcast().away(sections().*section, first, last).packets(); };
}

std::function<bytes()> with_a_bat_on(unsigned pid)
{
    return [=] { return dvb_with(pid, sections().bat); };
}

/// The present event of the second service, which has no flag; the following one never.
bytes with_half_a_table(unsigned table_id, unsigned ms, unsigned end_ms)
{
    const bytes half = long_section(table_id, 2, hex("0001 0020 01 4E"), {.last_section_number = 1});
    return dvb_broadcast().section(ms, 0x12, half).shorten(end_ms).packets();
}

overview_request with_schedule_limit(int64_t ms)
{
    overview_request request;
    request.other_limits.eit_schedule_ticks = ms * pcr_ticks_per_ms;
    return request;
}

overview_request with_gap_limit(int64_t ms)
{
    overview_request request;
    request.other_limits.si_minimum_gap_ticks = ms * pcr_ticks_per_ms;
    return request;
}

/// A second TDT so many milliseconds behind that of 20018.
std::function<bytes()> second_tdt_behind(unsigned ms)
{
    return [=] { return dvb_with(0x14, sections().tdt, 20018 + ms); };
}

std::function<bytes()> unnamed_for(unsigned ms)
{
    return [=] { return dvb_broadcast().payload(10079, unnamed).payload(10079 + ms, unnamed).packets(); };
}

using all = broadcast_sections;

std::vector<planted_fault> faults_of_repetition()
{
    return {
        keeps("nit_away_for_10500_ms", away(&all::nit, 10012, 20512)),
        raises("nit_away_for_10501_ms", {"3.1a"}, 20513, away(&all::nit, 10012, 20513)),
        keeps("bat_away_for_10500_ms", away(&all::bat, 10024, 20524)),
        raises("bat_away_for_10501_ms", {"3.2"}, 20525, away(&all::bat, 10024, 20525)),
        keeps("nit_of_others_away_for_10500_ms", away(&all::other_nit, 10026, 20526)),
        raises("nit_of_others_away_for_10501_ms", {"3.2"}, 20527, away(&all::other_nit, 10026, 20527)),
        keeps("sdt_of_others_away_for_10500_ms", away(&all::other_sdt, 10028, 20528)),
        raises("sdt_of_others_away_for_10501_ms", {"3.2"}, 20529, away(&all::other_sdt, 10028, 20529)),
        keeps("present_of_others_away_for_21000_ms", away(&all::other_present, 10016, 31016)),
        raises("present_of_others_away_for_21001_ms", {"3.2"}, 31017,
               away(&all::other_present, 10016, 31017)),
        keeps("following_of_others_away_for_21000_ms", away(&all::other_following, 12016, 33016)),
        raises("following_of_others_away_for_21001_ms", {"3.2"}, 33017,
               away(&all::other_following, 12016, 33017)),
        keeps("tot_away_for_31500_ms", away(&all::tot, 62, 31562)),
        raises("tot_away_for_31501_ms", {"3.2"}, 31563, away(&all::tot, 62, 31563)),
        keeps("sdt_away_for_2100_ms", away(&all::sdt, 10008, 12108)),
        raises("sdt_away_for_2101_ms", {"3.5a"}, 12109, away(&all::sdt, 10008, 12109)),
        keeps("present_away_for_2100_ms", away(&all::present, 10023, 12123)),
        raises("present_away_for_2101_ms", {"3.6a"}, 12124, away(&all::present, 10023, 12124)),
        keeps("following_away_for_2100_ms", away(&all::following, 10503, 12603)),
        raises("following_away_for_2101_ms", {"3.6a"}, 12604, away(&all::following, 10503, 12604)),
        keeps("tdt_away_for_31500_ms", away(&all::tdt, 27, 31527)),
        raises("tdt_away_for_31501_ms", {"3.8"}, 31528, away(&all::tdt, 27, 31528)),
    };
}

std::vector<planted_fault> faults_by_other_limits()
{
    const auto dvb = [] { return dvb_broadcast().packets(); };
    return {
        read_as(with_schedule_limit(9600), keeps("schedule_each_10_s_of_9600_ms", dvb)),
        read_as(with_schedule_limit(9500),
                times(3, 34016, raises("schedule_each_10_s_of_9500_ms", {"3.2"}, 14016, dvb))),
        keeps("sections_23_ms_apart", second_tdt_behind(23)),
        read_as(with_gap_limit(25), keeps("sections_24_ms_apart_of_25_ms", second_tdt_behind(24))),
        read_as(with_gap_limit(25),
                raises("sections_23_ms_apart_of_25_ms", {"3.2b"}, 20041, second_tdt_behind(23))),
    };
}

} // namespace

std::vector<planted_fault> faults_of_third_priority()
{
    const bytes running_status = short_section(0x71, {});
    const bytes stuffing = short_section(0x72, hex("FFFF"));
    std::vector<planted_fault> faults = {
        raises("another_table_on_the_pid_of_the_nit", {"3.1a"}, 10039, with_a_bat_on(0x10)),
        raises("another_table_on_the_pid_of_the_eit", {"3.6a"}, 10039, with_a_bat_on(0x12)),
        raises("another_table_on_the_pid_of_the_rst", {"3.7"}, 10039, with_a_bat_on(0x13)),
        raises("another_table_on_the_pid_of_the_tdt", {"3.8"}, 10039, with_a_bat_on(0x14)),
        raises("another_table_on_the_pid_of_the_sdt", {"3.5a"}, 10039,
               [] { return dvb_with(0x11, sections().nit); }),
        keeps("rst_on_its_pid", [=] { return dvb_with(0x13, running_status); }),
        keeps("stuffing_on_the_pid_of_the_nit", [=] { return dvb_with(0x10, stuffing); }),
        keeps("half_a_table_1999_ms_before_the_end", [] { return with_half_a_table(0x4E, 38001, 39999); }),
        raises("half_a_table_2000_ms_before_the_end", {"3.6c"}, 37999,
               [] { return with_half_a_table(0x4E, 37999, 39999); }),
        keeps("half_a_table_of_others_19999_ms_before_the_end",
              [] { return with_half_a_table(0x4F, 1001, 20999); }),
        raises("half_a_table_of_others_20000_ms_before_the_end", {"3.6c"}, 999,
               [] { return with_half_a_table(0x4F, 999, 20999); }),
        keeps("unnamed_pid_for_525_ms", unnamed_for(525)),
        raises("unnamed_pid_for_526_ms", {"3.4a"}, 10079, unnamed_for(526)),
    };
    for (planted_fault &fault : faults_of_repetition()) faults.push_back(std::move(fault));
    for (planted_fault &fault : faults_by_other_limits()) faults.push_back(std::move(fault));
    return faults;
}
