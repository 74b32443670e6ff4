# shellcheck shell=bash
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
#
# Completion of lapsactl(1) in bash.

# The texts under a key of what lapsactl lists, one a line; those with characters that JSON escapes are left out.
_lapsactl_texts() {
    lapsactl "$1" --json 2>/dev/null </dev/null | sed -n 's/^ *"'"$2"'": "\([^\\]*\)",\{0,1\}$/\1/p'
}

# Offers the lines on standard input that begin with what was typed so far.
_lapsactl_offer() {
    local line typed=$1
    # As the shell would read it: without quotes and backslashes.
    typed=${typed#[\"\']}
    typed=${typed//\\/}
    while IFS= read -r line; do
        [[ $line == "$typed"* ]] && COMPREPLY+=("$line")
    done
}

_lapsactl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command='' i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
            --for) ((i++)) ;;
            -*) ;;
            *)
                command=${COMP_WORDS[i]}
                break
                ;;
        esac
    done

    if [[ $previous == --for ]]; then
        mapfile -t COMPREPLY < <(compgen -W '10min 30min 1h 2h 12h 1d 7d 30d' -- "$current")
    elif [[ $current == -* ]]; then
        local options='--json --help --version'
        [[ -z $command || $command == add ]] && options+=' --for'
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'add list lock unlock remove recovered put-back' -- "$current")
    else
        # Names with blanks are quoted.
        compopt -o filenames 2>/dev/null
        case $command in
            add) compopt -o default 2>/dev/null ;;
            lock | unlock | remove)
                _lapsactl_offer "$current" < <(_lapsactl_texts list path; _lapsactl_texts list name)
                ;;
            put-back)
                _lapsactl_offer "$current" < <(_lapsactl_texts recovered originalPath; _lapsactl_texts recovered name)
                ;;
        esac
    fi
}

complete -F _lapsactl lapsactl
