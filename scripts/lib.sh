# shellcheck shell=bash
# Shared by the scripts, to be sourced: moves to the root of the checkout, ends the script where a command
# fails, and says then which step that was.

set -euo pipefail
script=$(realpath "$0")
cd -P "$(dirname "${BASH_SOURCE[0]}")/.."
script=${script#"$PWD/"}
current=starting

# step TEXT...: says what is done next, with the seconds since the script's start.
step() {
    current=$*
    printf '[%s, %d s] %s\n' "$script" "$SECONDS" "$current"
}

# finish TEXT...: the last line of a script that has done its work.
finish() {
    printf '[%s, %d s] Done: %s\n' "$script" "$SECONDS" "$*"
}

# fail TEXT...: ends the script with a reason.
fail() {
    printf '%s: %s\n' "$script" "$*" >&2
    exit 1
}

report_failure() {
    local code=$?
    [ "$code" = 0 ] || printf '[%s, %d s] FAILED (code %d) while: %s\n' \
        "$script" "$SECONDS" "$code" "$current" >&2
}
trap report_failure EXIT

# build PRESET: configures and builds in build/PRESET.
build() {
    step "configuring preset $1"
    cmake --preset "$1" >/dev/null
    step "building preset $1 in build/$1"
    cmake --build --preset "$1"
}

# Our C++ files in the named folders, those that exist, separated by null characters.
cpp_files() {
    local folder
    for folder; do
        [ -d "$folder" ] || continue
        find "$folder" -type f \( -name '*.cpp' -o -name '*.h' \) -print0
    done | sort -z
}
