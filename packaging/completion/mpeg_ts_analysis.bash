# bash completion for mpeg_ts_analysis: switches, their values, and files named like transport streams.

_mpeg_ts_analysis()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local option='' value='' kept='' dashes words file

    # A value is a word of its own where "=" separates words, and a part of its switch where it does not.
    if [[ $word == -*=* ]]; then
        option=${word%%=*} value=${word#*=} kept=${word%%=*}=
    elif [[ $word == '=' ]]; then
        option=$before
    elif [[ $before == '=' ]] && ((COMP_CWORD > 1)); then
        option=${COMP_WORDS[COMP_CWORD - 2]} value=$word
    fi

    # One, two or three dashes are the same to the program; those that were typed are kept.
    COMPREPLY=()
    if [[ $option == -* ]]; then
        dashes=${option%%[!-]*}
        case ${option#"$dashes"} in
        dump-ts) words='contents header all raw' ;;
        dump-descriptors) words='contents raw all none' ;;
        ts-bitrate) words='auto' ;;
        assume-country) words='aus' ;;
        *) return ;;
        esac
        mapfile -t COMPREPLY < <(compgen -P "$kept" -W "$words" -- "$value")
    elif [[ $word == -* ]]; then
        dashes=${word%%[!-]*}
        words='h help avchd std bdmv not-bdmv atsc not-atsc atsc-mh not-atsc-mh dump-ts dump-ts= dump-descriptors
            dump-descriptors= dump-tables dump-pcr-analysis ts-bitrate= max-pcr-interval= pcr-drift-correction
            no-pcr-drift-correction program= skip-padding no-skip-padding assume-country='
        mapfile -t COMPREPLY < <(compgen -P "$dashes" -W "$words" -- "${word#"$dashes"}")
        if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]]; then compopt -o nospace 2>/dev/null; fi
    else
        while IFS= read -r file; do
            if [[ -d $file || ${file,,} == *.@(ts|m2ts|mts|trp) ]]; then COMPREPLY+=("$file"); fi
        done < <(compgen -f -- "$word")
        # Where no file is named like that, any file will do.
        compopt -o filenames -o default 2>/dev/null
    fi
}

complete -F _mpeg_ts_analysis mpeg_ts_analysis
