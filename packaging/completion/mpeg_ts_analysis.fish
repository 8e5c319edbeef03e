# fish completion for mpeg_ts_analysis: switches, their values, and files named like transport streams.

# Directories, and files named like transport streams; where there are none, any file will do.
function __mpeg_ts_analysis_streams
    set -l files (complete -C "__fish_command_without_completions "(commandline -ct))
    string match -rie '(?:/|\.(?:ts|m2ts|mts|trp))(?:\t|$)' -- $files
    or printf '%s\n' $files
end

complete -c mpeg_ts_analysis -f
complete -c mpeg_ts_analysis -n 'not string match -q -- "-*" (commandline -ct)' -a '(__mpeg_ts_analysis_streams)'

complete -c mpeg_ts_analysis -s h -l help -d 'Print the usage text'
complete -c mpeg_ts_analysis -o avchd -d 'Read 192-byte packets (Blu-ray, AVCHD)'
complete -c mpeg_ts_analysis -o std -d 'Read 188-byte packets'
complete -c mpeg_ts_analysis -o bdmv -d 'The stream is a Blu-ray M2TS stream'
complete -c mpeg_ts_analysis -o not-bdmv -d 'The stream is no Blu-ray M2TS stream'
complete -c mpeg_ts_analysis -o atsc -d 'The stream is ATSC compliant'
complete -c mpeg_ts_analysis -o not-atsc -d 'The stream is not ATSC compliant'
complete -c mpeg_ts_analysis -o atsc-mh -d 'The stream is ATSC M/H compliant'
complete -c mpeg_ts_analysis -o not-atsc-mh -d 'The stream is not ATSC M/H compliant'
complete -c mpeg_ts_analysis -o dump-tables -d 'Dump the bytes of each section'
complete -c mpeg_ts_analysis -o dump-pcr-analysis -d 'Print the error of each PCR'
complete -c mpeg_ts_analysis -o pcr-drift-correction -d 'Correct PCR drift'
complete -c mpeg_ts_analysis -o no-pcr-drift-correction -d 'Do not correct PCR drift'
complete -c mpeg_ts_analysis -o skip-padding -d 'Leave padding packets out of the dump'
complete -c mpeg_ts_analysis -o no-skip-padding -d 'Dump padding packets too'

# Values follow an "=", never a blank: to fish these are options that need no value.
complete -c mpeg_ts_analysis -o dump-ts -a 'contents header all raw' -d 'Dump every packet'
complete -c mpeg_ts_analysis -o dump-descriptors -a 'contents raw all none' -d 'Dump descriptors'
complete -c mpeg_ts_analysis -o ts-bitrate -a 'auto' -d 'Bits per second'
complete -c mpeg_ts_analysis -o max-pcr-interval -d 'Longest interval between PCRs, in milliseconds'
complete -c mpeg_ts_analysis -o program -d 'Show the PCRs of one program'
complete -c mpeg_ts_analysis -o assume-country -a 'aus' -d 'Private data specifier of the country'
