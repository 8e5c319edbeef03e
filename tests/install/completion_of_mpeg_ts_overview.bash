# What the completion of mpeg_ts_overview offers.

# Readline splits at "=": the value is a word of its own.
expect '1|1,2|1,2,3' --check =
expect '188|192|204' --packet-size =
expect 'arrival' --clock = a
expect 'aus' --assume-country =
expect 'always|auto' --color = a
expect 'notes.txt' --json = n
expect '' --bitrate = 1
expect 'pcr_accuracy=|pcr_interval=' --limit pcr
expect 'pat_interval=' --limit = pa
# Where "=" is no separator, the option stays in front.
expect '--clock=arrival|--clock=none|--clock=pcr' --clock=
expect '--html=notes.txt' --html=n

expect '--check|--check=' --ch
expect '--color=' --co
expect '--html=' --ht
expect '--not-atsc' --n
expect '-h' -h
expect '' --x

expect 'a stream.ts|clip.M2TS|record.trp|recordings' ''
expect 'recordings' --text recordi
expect '' notes
