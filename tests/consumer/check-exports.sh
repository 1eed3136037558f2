#!/usr/bin/env bash
# Fails on every symbol of the library whose class or function no installed header marks for export.
# usage: check-exports.sh LIBRARY HEADER_FOLDER
set -euo pipefail
library=$1 headers=$2

# "class QRV_API Plane" and "QRV_API Result APIUndoHistory(" both name what they mark.
marked=$(cat "$headers"/*.h | grep -oP '(class|struct) QRV_API \K\w+|^QRV_API .*?\K[\w=*]+(?=\()' | sort -u)

nm -DC --defined-only "$library" | sed -E 's/^[0-9a-f]* *[A-Za-z] //' | awk '
    FILENAME == ARGV[1] { marked[$0]; next }
    {
        name = $0
        sub(/^(typeinfo for|typeinfo name for|vtable for) /, "", name)
        ours = sub(/^QRV::/, "", name)
        match(name, /^(operator[^(]+|[A-Za-z_0-9]+)/)
        ++symbols
        if (ours && substr(name, 1, RLENGTH) in marked)
            next
        print "not meant to be seen: " $0
        ++strays
    }
    END {
        print symbols + 0 " symbols, " strays + 0 " of them not meant"
        exit !symbols || strays
    }' <(echo "$marked") -
