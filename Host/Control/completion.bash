# Completion of hbbtv-control for bash: what may come is asked of the running television.
_hbbtv_control() {
    local current=${COMP_WORDS[COMP_CWORD]} at=1 words
    COMPREPLY=()
    while [[ ${COMP_WORDS[at]} == --* ]] && ((at < COMP_CWORD)); do at=$((at + 2)); done
    if ((COMP_CWORD == at)); then
        words=$("$1" --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
        words+=" --bus --wait --help --version"
    elif ((COMP_CWORD == at + 1)) || [[ ${COMP_WORDS[at]} == press ]]; then
        if [[ ${COMP_WORDS[at]} == calls ]]; then words="--follow --clear"
        else words=$("$1" complete "${COMP_WORDS[at]}" 2>/dev/null); fi
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _hbbtv_control hbbtv-control
