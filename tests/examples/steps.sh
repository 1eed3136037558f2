# shellcheck shell=bash
# Steps that the tests of the examples share. Sourced by them.

# Ends a test that lacks something, which counts as neither passed nor failed.
skip() {
    echo "skipped: $*"
    exit 77
}

# Skips the test unless all models named among a program's arguments are there.
need_inputs() {
    local argument
    for argument in "$@"; do
        [[ $argument != *.json || -f $argument ]] || skip "no $argument"
    done
}

# Runs a program in a folder of its own, which it is told last as the place to write to.
run_in() {
    local folder=$1
    shift
    rm -rf "$folder"
    mkdir -p "$folder"
    (cd "$folder" && "$@" .)
}
