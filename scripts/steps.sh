# shellcheck shell=bash
# Steps that the commands of this project share. Sourced by them from the top folder.

# What the command does now, set apart from what the tools print.
say() {
    printf '\n== %s\n' "$*"
}

# Names the packages of a group of packages.txt.
packages_of() {
    awk -v group="[$1]" '/^\[/ { inside = ($1 == group); next } inside && NF && !/^#/ { print $1 }' packages.txt
}

# Installs what is missing of the groups given, and says so. Needs root, or sudo, only when something is missing.
install_packages() {
    local package group missing=() as_root=()
    for group in "$@"; do
        for package in $(packages_of "$group"); do
            [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
        done
    done
    [[ ${#missing[@]} -gt 0 ]] || return 0

    say "installing Debian packages: ${missing[*]}"
    if [[ $EUID -ne 0 ]]; then
        command -v sudo >/dev/null || { echo "this needs root: apt-get install ${missing[*]}" >&2; return 1; }
        as_root=(sudo)
    fi
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Configures a preset with Ninja and builds the targets given, or everything. Objects come from ccache where it has
# them, from other checkouts too.
build() {
    local preset=$1
    shift
    export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$PWD} CCACHE_NOHASHDIR=1
    say "building $preset in build/$preset"
    cmake --preset "$preset"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
