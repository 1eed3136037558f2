#!/usr/bin/env bash
# Runs an example twice, first with fresh memory filled and addresses at random, then with addresses in order. It must
# write the same files, to the last byte.
# usage: writes-the-same-again.sh FOLDER PROGRAM [ARGUMENT ...]
#   FOLDER      is emptied; the program is told a folder in it as its last argument
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
folder=$1
shift

need_inputs "$@"
# Not every container lets a process have its addresses in order.
setarch -R true || skip "addresses in order are refused here"
run_in "$folder/first" env MALLOC_PERTURB_=170 "$@" >/dev/null
run_in "$folder/second" setarch -R "$@" >/dev/null

cd "$folder"
ls -- first/*.journal first/*.stl # there are some
diff --brief --recursive first second
