# bash completion for mpeg_ts_archive: commands, their options, and folders.

_mpeg_ts_archive()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' words='' each
    local kinds='json html report json,html json,report html,report json,html,report'

    for each in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case $each in plan | run | status | catalogue) command=$each && break ;; esac
    done
    # A value may stand behind "=", which is a word of its own then.
    if [[ $before == '=' ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    elif [[ $word == '=' ]]; then
        word=''
    fi

    COMPREPLY=()
    case $before in
    --keep) words=$kinds ;;
    --folder)
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
        compopt -o filenames 2>/dev/null
        return
        ;;
    --files | --bytes | --suffix | --slots | --hosts) return ;;
    *)
        case $command:$word in
        plan:-*) words='-h --help --folder --files --bytes --suffix' ;;
        run:*) words='-h --help --folder --slots --hosts --keep --slurm' ;;
        status:*) words='-h --help --folder' ;;
        catalogue:*) words='-h --help --folder --html' ;;
        plan:*)
            mapfile -t COMPREPLY < <(compgen -d -- "$word")
            compopt -o filenames 2>/dev/null
            return
            ;;
        :-*) words='-h --help --version' ;;
        *) words='plan run status catalogue' ;;
        esac
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}

complete -F _mpeg_ts_archive mpeg_ts_archive
