# Configures and builds, and finds the programs that came out.
# shellcheck shell=bash

# With "--target NAME" as the last arguments only that target is built.
build() { # preset, build folder under build/ (default: the preset's name), further CMake arguments...
    local preset=$1 name=${2:-$1} target=()
    shift $(($# < 2 ? $# : 2))
    if (($# >= 2)) && [[ ${*: -2:1} == --target ]]; then
        target=("${@: -2}")
        set -- "${@:1:$#-2}"
    fi
    logged "configure-$name" "Configuring build/$name" \
        env -C "$root" cmake --preset "$preset" -B "$root/build/$name" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON "$@"
    logged "build-$name" "Building build/$name" cmake --build "$root/build/$name" --parallel "$cores" "${target[@]}"
}

built_program() { # build folder, program name
    local found
    found=$(find "$root/build/$1" -name "$2" -type f -perm -u+x -print -quit)
    [[ -n $found ]] || fail "there is no $2 in build/$1"
    printf '%s' "$found"
}
