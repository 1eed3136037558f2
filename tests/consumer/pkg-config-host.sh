#!/usr/bin/env bash
# Builds the host with what pkg-config says of the library installed under PREFIX, and runs it.
# usage: pkg-config-host.sh PREFIX LIBDIR SOURCE PROGRAM COMPILER [FLAG ...]
set -euo pipefail
prefix=$1 libdir=$2 source=$3 program=$4
shift 4

export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
pkg-config --exact-version=0.23 qrv
read -ra flags <<<"$(pkg-config --cflags --libs qrv)"
"$@" -std=c++20 "$source" "${flags[@]}" -Wl,-rpath,"$prefix/$libdir" -o "$program"
"$program"
