#include "mpeg_ts_overview/driver/overview_usage.h"

const char overview_usage[] =
    R"(Usage: mpeg_ts_overview [OPTION]... FILE
Tells what is in an MPEG-2 transport stream recording, how it is built, and
whether and where it is not healthy. FILE "-" is standard input.

Outputs:
  --json=FILE             write JSON ("-": to standard output)
  --html=FILE             write a page with plots ("-": to standard output)
  --text                  print the summary too; with neither of the two above
                          it is printed anyway
  --color=WHEN            colour the summary: auto, always, never

Checks:
  --check[=PRIORITIES]    exit with status 2 when a check of these priorities
                          fails (1,2 unless named, such as 1,2,3)
  --whole-multiplex       the recording is a complete multiplex: what is absent
                          is a fault
  --limit NAME=VALUE      another limit, such as pcr_interval=40ms; the names:
                          pcr_interval, pcr_accuracy, pts_interval,
                          pat_interval, pmt_interval, pid_absence,
                          sdt_interval, nit_interval, eit_schedule,
                          si_minimum_gap

Input:
  --packet-size=SIZE      188, 192 or 204 bytes; found unless named
  --clock=CLOCK           time by pcr, arrival (192-byte packets) or none; found
                          unless named
  --bitrate=N             time by N bits per second
  --assume-country=aus    the private data is Australian, or a private data
                          specifier
  --atsc, --not-atsc      the stream is ATSC, or is not; found unless named

  -h, --help              this text
  --version               the version

Exit status: 0 done; 1 wrong usage, an input that cannot be read or has no
packets, an output that cannot be written; 2 a check failed (--check).
)";
