#include "mpeg_ts_analysis/driver/usage.h"

#include <cstdio>

void print_usage()
{
    std::fputs(
        "mpeg_ts_analysis [options] <ts file>\n"
        "MPEG-2 transport stream analyser: what is in a recording, and what is wrong with it\n"
        "    -h --help                    This help\n"
        "    -avchd                       Packets are stored m2ts style (192-byte Blu-ray/AVCHD)\n"
        "    -std                         Packets are stored ts style (188-byte standard transport streams)\n"
        "    -dump-ts[=<contents|header|all>] Dump all TS packets (contents=packet header & data  head=only header, all=EVERYTHING)\n"
        "    -dump-descriptors[=<contents|raw>] Dump descriptors embedded in various tables (raw=dump hex dump as well)\n"
        "    -ts-bitrate=<N>              Specify TS bitrate. 'auto' means to try and guess.\n"
        "    -no-skip-padding             Don't skip padding packets (PID=0x1FFF)\n"
        "    -skip-padding                Skip padding packets\n"
        "    -assume-country=<N>          Private country code or name\n"
        "                                   0x3200-0x32FF or 'aus'           Australia\n"
        "    -dump-pcr-analysis           Show PCR analysis\n"
        "    -no-pcr-drift-correction     Disable PCR drift correction\n"
        "    -program=<N>                 Focus only on one specific program\n"
        "    -max-pcr-interval=<N>        Maximum PCR interval permitted in milliseconds (default=40ms)\n"
        "    -atsc                        Stream is ATSC compliant. If neither -atsc or -not-atsc, ATSC compliance is detected by PID 0x1FFB.\n"
        "    -not-atsc                    Stream is NOT ATSC compliant\n"
        "    -atsc-mh                     Stream is ATSC M/H compliant. If neither -atsc-mh or -not-atsc-mh, ATSC compliance is detected by PID 0x1FF9.\n"
        "    -not-atsc-mh                 Stream is NOT ATSC M/H compliant\n"
        "    -dump-tables                 Dump assembled table contents and header\n"
        "    -bdmv                        Stream is Blu-ray M2TS stream\n"
        "    -not-bdmv                    Stream is NOT Blu-ray M2TS stream\n",
        stderr);
}
