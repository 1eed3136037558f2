#!/usr/bin/env bash
# Runs an example, which must succeed, and has ADMesh go through the STL files that it writes: they need no mending, and
# their volume is the model's.
# usage: writes-sound-solids.sh TOLERANCE FOLDER PROGRAM [ARGUMENT ...]
#   TOLERANCE   of the volume, relative
#   FOLDER      is emptied and told to the program as its last argument
set -euo pipefail
export LC_ALL=C
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
tolerance=$1 folder=$2
shift 2

need_inputs "$@"
mkdir -p "$(dirname "$folder")"
run_in "$folder" "$@" | tee "$folder.log"
command -v admesh >/dev/null || skip "ADMesh is not installed; the example itself ran well"

cd "$folder"
for file in *.stl; do
    model=$(sed -n "s/^$file: .*, volume .*, the model's \(.*\)$/\1/p" "$folder.log")
    admesh "$file" >"$file.report"
    awk -F: -v file="$file" -v model="$model" -v tolerance="$tolerance" '
        /^(Facets with [123] disconnected|Total disconnected|Degenerate|Edges fixed|Facets (removed|added|reversed)|Backwards|Normals fixed)/ {
            ++counts
            if ($2 + 0 != 0) { print file ": " $0; wrong = 1 }
        }
        /Volume/ { volume = $3 + 0 }
        END {
            off = model > 0 ? (volume - model) / model : 1
            printf "%s: volume %.6f by ADMesh, off by %.2g of the model'\''s\n", file, volume, off
            exit wrong || counts != 11 || off < -tolerance || off > tolerance
        }' "$file.report"
done
