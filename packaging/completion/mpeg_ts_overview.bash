# bash completion for mpeg_ts_overview: options, their values, and files named like transport streams.

_mpeg_ts_overview()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local option='' value='' kept='' words='' file limits

    # A value is a word of its own where "=" separates words, and a part of its option where it does not.
    if [[ $word == -*=* ]]; then
        option=${word%%=*} value=${word#*=} kept=${word%%=*}=
    elif [[ $word == '=' ]]; then
        option=$before
    elif [[ $before == '=' ]] && ((COMP_CWORD > 1)); then
        option=${COMP_WORDS[COMP_CWORD - 2]} value=$word
    elif [[ $before == --limit ]]; then
        option=$before value=$word
    fi

    limits='pcr_interval= pcr_accuracy= pts_interval= pat_interval= pmt_interval= pid_absence= sdt_interval=
        nit_interval= eit_schedule= si_minimum_gap='
    COMPREPLY=()
    if [[ $option == -* ]]; then
        case $option in
        --check) words='1 1,2 1,2,3' ;;
        --packet-size) words='188 192 204' ;;
        --clock) words='pcr arrival none' ;;
        --assume-country) words='aus' ;;
        --color) words='auto always never' ;;
        --limit) words=$limits ;;
        --json | --html)
            mapfile -t COMPREPLY < <(compgen -P "$kept" -f -- "$value")
            compopt -o filenames 2>/dev/null
            return
            ;;
        *) return ;;
        esac
        mapfile -t COMPREPLY < <(compgen -P "$kept" -W "$words" -- "$value")
    elif [[ $word == -* ]]; then
        words='-h --help --version --json= --html= --text --color= --check --check= --whole-multiplex --limit
            --packet-size= --clock= --bitrate= --assume-country= --atsc --not-atsc'
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    else
        while IFS= read -r file; do
            if [[ -d $file || ${file,,} == *.@(ts|m2ts|mts|trp) ]]; then COMPREPLY+=("$file"); fi
        done < <(compgen -f -- "$word")
        # Where no file is named like that, any file will do.
        compopt -o filenames -o default 2>/dev/null
        return
    fi
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]]; then compopt -o nospace 2>/dev/null; fi
}

complete -F _mpeg_ts_overview mpeg_ts_overview
