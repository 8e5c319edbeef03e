# What the completion of mpeg_ts_archive offers.

expect 'catalogue|plan|run|status' ''
expect 'catalogue' c
expect '--help|--version' --
expect '--bytes|--files|--folder|--help|--suffix' plan --
expect 'recordings' plan rec
expect 'recordings' plan --files 5 ''
expect '' plan --files ''
expect '--folder|--help|--hosts|--keep|--slots|--slurm' run --
expect '--slots|--slurm' run --sl
expect 'html|html,report' run --keep h
expect 'json|json,html|json,html,report|json,report' run --keep = j
expect '--html' catalogue --ht
expect 'recordings' status --folder r
