# What the completion of mpeg_ts_analysis offers.
# Readline splits at "=": the value is a word of its own.
expect 'all|contents|header|raw' -dump-ts =
expect 'contents' -dump-ts = c
expect 'all|contents|none|raw' --dump-descriptors =
expect 'none' -dump-descriptors = n
expect 'auto' -ts-bitrate = a
expect 'aus' -assume-country =
expect '' -program =
expect '' -program = 1
# Where "=" is no separator, the switch stays in front.
expect '-dump-ts=all|-dump-ts=contents|-dump-ts=header|-dump-ts=raw' -dump-ts=
expect '--dump-ts=header' --dump-ts=h

expect '-dump-descriptors|-dump-descriptors=|-dump-pcr-analysis|-dump-tables|-dump-ts|-dump-ts=' -dump
expect '--max-pcr-interval=' --max
expect '-bdmv' -b
expect '' -x

expect 'a stream.ts|clip.M2TS|record.trp|recordings' ''
expect 'a stream.ts' a
expect 'recordings' -std recordi
expect '' notes
