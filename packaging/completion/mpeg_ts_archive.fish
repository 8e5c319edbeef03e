# fish completion for mpeg_ts_archive: commands, their options, and folders.

set -l commands plan run status catalogue

complete -c mpeg_ts_archive -f
complete -c mpeg_ts_archive -n "not __fish_seen_subcommand_from $commands" -l version -d 'Print the version'
complete -c mpeg_ts_archive -s h -l help -d 'Print the options'
complete -c mpeg_ts_archive -n "not __fish_seen_subcommand_from $commands" -a plan -d 'Make lists of recordings'
complete -c mpeg_ts_archive -n "not __fish_seen_subcommand_from $commands" -a run -d 'Do every list that has no result'
complete -c mpeg_ts_archive -n "not __fish_seen_subcommand_from $commands" -a status -d 'Tell how far it is'
complete -c mpeg_ts_archive -n "not __fish_seen_subcommand_from $commands" -a catalogue -d 'Bring the catalogue up to date'
complete -c mpeg_ts_archive -n "__fish_seen_subcommand_from $commands" -l folder -x -a '(__fish_complete_directories)' -d 'Where lists, results and catalogue are'

complete -c mpeg_ts_archive -n '__fish_seen_subcommand_from plan' -a '(__fish_complete_directories)'
complete -c mpeg_ts_archive -n '__fish_seen_subcommand_from plan' -l files -x -d 'Recordings in a list, at most'
complete -c mpeg_ts_archive -n '__fish_seen_subcommand_from plan' -l bytes -x -d 'Bytes in a list, at most'
complete -c mpeg_ts_archive -n '__fish_seen_subcommand_from plan' -l suffix -x -d 'What names of recordings end with'

complete -c mpeg_ts_archive -n '__fish_seen_subcommand_from run' -l slots -x -d 'Lists at a time'
complete -c mpeg_ts_archive -n '__fish_seen_subcommand_from run' -l hosts -x -d 'Run on these hosts, by ssh'
complete -c mpeg_ts_archive -n '__fish_seen_subcommand_from run' -l keep -x -a 'json html report json,html json,report html,report json,html,report' -d 'What results keep of each recording'
complete -c mpeg_ts_archive -n '__fish_seen_subcommand_from run' -l slurm -d 'Submit to Slurm'

complete -c mpeg_ts_archive -n '__fish_seen_subcommand_from catalogue' -l html -d 'Write a page with a table of all recordings'
