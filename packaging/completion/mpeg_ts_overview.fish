# fish completion for mpeg_ts_overview: options, their values, and files named like transport streams.

# Directories, and files named like transport streams; where there are none, any file will do.
function __mpeg_ts_overview_streams
    set -l files (complete -C "__fish_command_without_completions "(commandline -ct))
    string match -rie '(?:/|\.(?:ts|m2ts|mts|trp))(?:\t|$)' -- $files
    or printf '%s\n' $files
end

complete -c mpeg_ts_overview -f
complete -c mpeg_ts_overview -n 'not string match -q -- "-*" (commandline -ct)' -a '(__mpeg_ts_overview_streams)'

complete -c mpeg_ts_overview -s h -l help -d 'Print the options'
complete -c mpeg_ts_overview -l version -d 'Print the version'
complete -c mpeg_ts_overview -l text -d 'Print the summary too'
complete -c mpeg_ts_overview -l check -d 'Exit with status 2 when a check fails'
complete -c mpeg_ts_overview -l whole-multiplex -d 'What is absent is a fault'
complete -c mpeg_ts_overview -l atsc -d 'The stream is ATSC compliant'
complete -c mpeg_ts_overview -l not-atsc -d 'The stream is not ATSC compliant'

complete -c mpeg_ts_overview -l json -r -F -d 'Write JSON'
complete -c mpeg_ts_overview -l html -r -F -d 'Write a page with plots'
complete -c mpeg_ts_overview -l color -x -a 'auto always never' -d 'Colour the summary'
complete -c mpeg_ts_overview -l packet-size -x -a '188 192 204' -d 'Bytes of a packet'
complete -c mpeg_ts_overview -l clock -x -a 'pcr arrival none' -d 'What times are computed by'
complete -c mpeg_ts_overview -l bitrate -x -d 'Compute times by this rate'
complete -c mpeg_ts_overview -l assume-country -x -a 'aus' -d 'Private data specifier of the country'
complete -c mpeg_ts_overview -l limit -x -d 'Another limit' -a 'pcr_interval= pcr_accuracy= pts_interval= pat_interval=
    pmt_interval= pid_absence= sdt_interval= nit_interval= eit_schedule= si_minimum_gap='
