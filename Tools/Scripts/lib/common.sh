# Shared by the commands beside this folder: where the tree is, progress lines, logged steps, failures, and the parts
# that are files of their own. It sets `root` and `logs`, and leaves the working directory alone.
# shellcheck shell=bash

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../../.." && pwd -P)
logs=$root/build/logs
cores=$(nproc 2>/dev/null || echo 2)
cleanups=()

# The comment at the head of a command is its manual: everything from its second line to the first line of code.
print_manual() {
    awk 'NR > 1 && !/^#/ { exit } NR > 1 { sub(/^# ?/, ""); print }' "$0"
}

# Of a command that takes none.
refuse_arguments() { # arguments...
    case ${1:-} in
        '') ;;
        -h | --help) print_manual; exit 0 ;;
        *) refuse "unknown argument: $1" ;;
    esac
}

refuse() { # message
    printf '%s: %s\n' "$(basename -- "$0")" "$1" >&2
    printf "Try '%s --help'.\n" "$0" >&2
    exit 2
}

stage() { # text
    printf '[%3ds] %s\n' "$SECONDS" "$*"
}

fail() { # message
    printf '[%3ds] FAILED: %s\n' "$SECONDS" "$*" >&2
    exit 1
}

# Cleanups run last in, first out, however the command ends.
at_exit() { # command line
    cleanups+=("$1")
}

run_cleanups() {
    local status=$? i
    for ((i = ${#cleanups[@]} - 1; i >= 0; i--)); do eval "${cleanups[i]}" || true; done
    exit "$status"
}
trap run_cleanups EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# A step that is quiet when all is well: its output goes to build/logs/<name>.log, and only a failure shows it.
logged() { # log name, text, command...
    local log=$logs/$1.log text=$2 status=0
    shift 2
    mkdir -p -- "$logs"
    stage "$text"
    "$@" >"$log" 2>&1 </dev/null || status=$?
    if ((status == 0)); then return 0; fi
    show_failure "$text (exit code $status)" "$log"
    exit 1
}

show_failure() { # text, log file
    {
        printf '[%3ds] FAILED: %s\n' "$SECONDS" "$1"
        printf '         The last lines of %s:\n' "$2"
        tail -n 40 -- "$2" | sed 's/^/         | /'
    } >&2
}

# What a build server may leave out. npm, ccache and WebKit all want a home to write to.
if [[ -z ${HOME:-} || ! -w $HOME ]]; then
    export HOME=$root/build/home
    mkdir -p -- "$HOME"
fi

source "$root/Tools/Scripts/lib/setup.sh"
source "$root/Tools/Scripts/lib/build.sh"
source "$root/Tools/Scripts/lib/display.sh"
