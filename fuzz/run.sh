#!/usr/bin/env bash
# Fuzzes: ./fuzz/run.sh TARGET SECONDS, where TARGET is json, journal or calls. Starts from the inputs in
# fuzz/corpus/TARGET and from what earlier runs found worth keeping, which goes to build/fuzz/corpus/TARGET. An input
# that breaks something is left in build/fuzz/findings/TARGET, and the exit code tells of it; the program of the target
# runs it again: build/fuzz/fuzz/fuzz_TARGET FILE
set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/.."
source scripts/steps.sh

target=${1-} seconds=${2-}
[[ $target && -d fuzz/corpus/$target && $seconds =~ ^[0-9]+$ ]] || { sed -n '2,/^set/{s/^# //p}' fuzz/run.sh >&2; exit 2; }

install_packages build clang fuzz
build fuzz "fuzz_$target"
made=build/fuzz
mkdir -p $made/{corpus,findings}/"$target"
# The names that inputs speak of: of calls, records and their fields.
{ grep -oh '"name": "[^"]*"' $made/tools/interface/interface.json | cut -d' ' -f2; grep -oh '"[A-Za-z_]\+"' src/journal/JSON*.cpp; } |
    sort -u >$made/words

say "fuzzing $target for $seconds seconds"
export UBSAN_OPTIONS=print_stacktrace=1
$made/fuzz/fuzz_"$target" -max_total_time="$seconds" -timeout=20 -max_len=8192 -dict=$made/words -print_final_stats=1 \
    -artifact_prefix=$made/findings/"$target"/ $made/corpus/"$target" fuzz/corpus/"$target"
