# Completes the verbs, options, formats and files of qor in bash.

# The values that the help of a verb lists for an option: PROGRAM VERB OPTION.
_qor_values() {
    local program=${1/#\~\//$HOME/}
    "$program" "$2" --help 2>/dev/null | sed -n "s/^ *$3 [A-Z]*:{\([^}]*\)}.*/\1/p" | tr , ' '
}

_qor() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local verb='' i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        if [[ ${COMP_WORDS[i]} != -* ]]; then
            verb=${COMP_WORDS[i]}
            break
        fi
    done

    local options='--help' words=''
    case $verb in
    '')
        words='import show export diff recode'
        options+=' --version'
        ;;
    import) options+=' --output --stats --quiet' ;;
    show) options+=' --tree --stats --path --quiet' ;;
    export) options+=' --format --dialect --output --quiet' ;;
    diff) options+=' --format --rename --renames --origin --quiet' ;;
    recode) options+=' --from --to --output --force --quiet' ;;
    *) return ;;
    esac

    # What the option before this word takes.
    case $verb:$previous in
    *:--format | export:--dialect) words=$(_qor_values "${COMP_WORDS[0]}" "$verb" "$previous") ;;
    recode:--from | recode:--to) words=$(iconv -l 2>/dev/null | sed 's|//||') ;;
    show:--path | diff:--rename) return ;; # names of the graph's own
    *:--output | *:-o | diff:--renames) ;;
    *)
        if [[ -z $verb || $current == -* ]]; then
            words+=" $options"
        fi
        ;;
    esac

    if [[ -n $words ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}

complete -F _qor qor
