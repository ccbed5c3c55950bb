#!/bin/bash
# What bash's completion offers on vantorel-cli's command line: the words of
# each case are those bash hands the completion function, the last one being
# completed.
#   CompletionTest.sh COMPLETION-SCRIPT VANTOREL-CLI
set -uo pipefail
script=$1 cli=$2

bash_completion=/usr/share/bash-completion/bash_completion
if [[ ! -f $bash_completion ]]; then
    echo "bash-completion is not installed: skipped"
    exit 0
fi
source "$bash_completion"
source "$script"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/data" "$work/site/sub dir"
touch "$work/site/page.html"
printf 'tags\t<[^>]+>\t\r\nIPv4 address\t\\d+(\\.\\d+){3}\t\r\n' >"$work/data/RegEx.txt"
printf 'Tidy HTML\ttags\r\nTidy CSS\ttags\r\nOther\ttags\r\n' >"$work/data/BatchJobs.txt"
PATH="$(dirname "$cli"):$PATH"

failed=0
# expect OFFERED WORD...: completing the last WORD offers OFFERED, sorted and
# joined by "|".
expect() {
    local wanted=$1
    shift
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMP_LINE="$*"
    COMP_LINE=${COMP_LINE// = /=} # bash splits "--entry=x" there
    COMP_POINT=${#COMP_LINE}
    COMPREPLY=()
    _vantorel_cli vantorel-cli "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}" 2>/dev/null
    local offered
    offered=$(printf '%s\n' "${COMPREPLY[@]}" | sort -u | paste -sd '|')
    if [[ $offered != "$wanted" ]]; then
        printf 'completing "%s"\n  offered: %s\n  wanted:  %s\n' "$COMP_LINE" "$offered" "$wanted"
        failed=1
    fi
}

# Options, from --help; the command words, until one is there.
expect '--data-dir|--diff|--dir|--dry-run' vantorel-cli --d
expect 'extract|find|jobs|library|replace|undo' vantorel-cli -e -d "$work/site" ''
expect '' vantorel-cli -d "$work/site" find ''
expect '' vantorel-cli -f ''
# Folders only after -d and --data-dir.
expect "$work/site/sub dir" vantorel-cli -d "$work/site/"
expect "$work/site/sub dir" vantorel-cli --data-dir "$work/site/s"
# Saved jobs and library entries, from the --data-dir already given, also
# after "=" and inside an opening quote.
expect 'Other|Tidy CSS|Tidy HTML' vantorel-cli --data-dir "$work/data" --job ''
expect 'Tidy CSS|Tidy HTML' vantorel-cli --data-dir "$work/data" -e --job '"Tidy'
expect 'IPv4 address' vantorel-cli --data-dir = "$work/data" --entry = I
expect '' vantorel-cli --data-dir "$work/site" --job ''
exit $failed
