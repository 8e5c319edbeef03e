// What a recording cannot tell is not measured, and each check says why.
#include "tests/overview_verdict/broadcasts.h"

#include "mpeg_ts_overview/driver/overview_of.h"
#include "tests/overview_input/memory_source.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

namespace {

using reasons = std::map<std::string, std::string>;

/// The reason of each check that was not measured, by its id.
reasons reasons_of(const bytes &stream, const overview_request &request = {})
{
    overview found;
    reasons result;
    EXPECT_EQ(overview_of(source_of(stream), request, found), reading_outcome::done);
    for (const check_result &check : found.checks) {
        if (check.outcome != check_outcome::not_measured) continue;
        result[check.id] = check.why;
        EXPECT_FALSE(check.log.count > 0) << check.id;
    }
    return result;
}

/// All of them have one reason.
reasons all(const std::vector<std::string> &ids, const std::string &why)
{
    reasons result;
    for (const std::string &id : ids) result[id] = why;
    return result;
}

reasons joined(std::initializer_list<reasons> parts)
{
    reasons result;
    for (const reasons &part : parts) result.insert(part.begin(), part.end());
    return result;
}

const reasons decoder = all({"3.3", "3.9", "3.10"}, "needs the decoder model");
const reasons not_dvb =
    all({"3.1a", "3.2", "3.2b", "3.5a", "3.6a", "3.6c", "3.7", "3.8"}, "not a DVB stream");
const reasons not_atsc = all({"A.1", "A.2"}, "not an ATSC stream");

TEST(unmeasured, packets_without_tables_and_times)
{
    EXPECT_EQ(reasons_of(timed_multiplex(1000).packets()),
              joined({
                  decoder,
                  not_dvb,
                  not_atsc,
                  all({"1.3a", "1.5a", "1.6", "2.5", "3.4a", "X.1"},
                  "no times"),
                  all({"2.3a", "2.3b"},
                  "no PAT"),
                  {{"2.4", "variable bitrate"},      {"X.3", "no DTS"}      }
    }));
}

TEST(unmeasured, a_dvb_broadcast_without_times)
{
    overview_request request;
    request.time_base = time_base_kind::none;
    EXPECT_EQ(reasons_of(dvb_broadcast().packets(), request),
              joined({decoder, not_atsc,
                      all({"1.3a", "1.5a", "1.6", "2.5", "3.1a", "3.2", "3.2b", "3.4a", "3.5a", "3.6a",
                           "3.6c", "3.8", "X.1"},
                          "no times")}));
}

TEST(unmeasured, a_dvb_broadcast_of_a_third_of_a_second)
{
    EXPECT_EQ(reasons_of(dvb_broadcast().shorten(330).packets()),
              joined({decoder,
                      not_atsc,
                      all({"1.3a", "1.5a", "1.6", "2.5", "3.1a", "3.2", "3.2b", "3.4a", "3.5a", "3.6a",
                           "3.6c", "3.8"},
                          "recording shorter than the limit"),
                      {{"2.4", "variable bitrate"}}}));
}

TEST(unmeasured, an_atsc_broadcast_of_a_third_of_a_second)
{
    EXPECT_EQ(
        reasons_of(atsc_broadcast().shorten(330).packets()),
        joined({decoder,
                not_dvb,
                all({"1.3a", "1.5a", "1.6", "2.5", "3.4a", "A.1", "A.2"}, "recording shorter than the limit"),
                {{"2.4", "variable bitrate"}}}));
}

TEST(unmeasured, a_dvb_broadcast_without_clocks_and_stamps)
{
    timed_multiplex stream = dvb_broadcast();
    stream.without_pid(video).without_pid(audio).without_pid(second_audio);
    overview_request request;
    request.time_base = time_base_kind::bitrate;
    request.bitrate_bps = 1504000;
    EXPECT_EQ(reasons_of(stream.packets(), request), joined({
                                                         decoder,
                                                         not_atsc,
                                                         all({"2.3a",                      "2.3b"           },
                                                         "no PCR"),
                                                         all({"2.5",                       "X.1"            },
                                                         "no PTS"),
                                                         {{"2.4", "variable bitrate"}, {"X.3", "no DTS"}}
    }));
}

} // namespace
