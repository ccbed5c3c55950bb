# bash completion for vantorel-cli                         -*- shell-script -*-

# The names of the saved batch jobs (`jobs`) or library entries (`library`),
# as the vantorel-cli being completed lists them, from the --data-dir given
# on the line when there is one.
_vantorel_cli_saved_names()
{
    local i folder=()
    for ((i = 1; i < cword; i++)); do
        case ${words[i]} in
            --data-dir) ((i + 1 < cword)) && folder=(--data-dir "$(dequote "${words[i + 1]}")") ;;
            --data-dir=?*) folder=(--data-dir "$(dequote "${words[i]#--data-dir=}")") ;;
        esac
    done
    "$(dequote "${words[0]}")" "${folder[@]}" "$1" 2>/dev/null | cut -f1
}

_vantorel_cli()
{
    local cur prev words cword split
    _init_completion -s || return

    case $prev in
        -d | --dir | --data-dir)
            _filedir -d
            return
            ;;
        -m | --marked | --csv)
            _filedir
            return
            ;;
        --job | --entry)
            local name names typed
            [[ $prev == --job ]] && names=jobs || names=library
            case $cur in
                [\"\']*) typed=${cur:1} ;; # in quotes not yet closed
                *) typed=$(dequote "$cur") ;;
            esac
            local IFS=$'\n'
            for name in $(_vantorel_cli_saved_names $names); do
                [[ $name == "$typed"* ]] && COMPREPLY+=("$name")
            done
            # Names are quoted as file names are: "Tidy HTML" becomes Tidy\ HTML.
            ((${#COMPREPLY[@]})) && compopt -o filenames 2>/dev/null
            return
            ;;
        -f | --filter | -j | --threads)
            return
            ;;
    esac
    $split && return

    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W '$(_parse_help "$1")' -- "$cur"))
        [[ ${COMPREPLY-} == *= ]] && compopt -o nospace
        return
    fi

    # The command word, once, after the options and their values.
    local i
    for ((i = 1; i < cword; i++)); do
        case ${words[i]} in
            -d | --dir | -f | --filter | -m | --marked | -j | --threads | --csv | --job | --entry | --data-dir)
                ((i++))
                ;;
            --) break ;;
            -*) ;;
            *) return ;;
        esac
    done
    COMPREPLY=($(compgen -W 'find replace extract undo library jobs' -- "$cur"))
} &&
    complete -F _vantorel_cli vantorel-cli

# ex: filetype=sh
