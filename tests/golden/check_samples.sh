#!/bin/sh
# The samples that make_streams makes are what it writes: check_samples.sh STREAMS SAMPLES
set -eu
for sample in dvb.ts atsc.ts scte35.ts teletext.ts; do
    cmp "$1/$sample" "$2/$sample" || { echo "copy $sample from a build's generated/streams to samples/"; exit 1; }
done
