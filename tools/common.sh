# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
#
# Functions shared by the tools. Source this after `set -euo pipefail`.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '%s\n' "$*" >&2; }

fail() {
    say "${0##*/}: $*"
    exit 1
}

# Compilers, Qt and the tests speak UTF-8; a bare machine has no locale set. LC_CTYPE says nothing about the language.
if [[ "$(locale charmap 2>/dev/null)" != UTF-8 ]]; then
    unset LC_ALL
    export LC_CTYPE=C.UTF-8
fi

# The version, which is defined in CMakeLists.txt only.
lapsa_version() {
    local version
    version=$(sed -nE 's/^project\(lapsa VERSION ([0-9.]+) .*/\1/p' "$root/CMakeLists.txt")
    [[ -n $version ]] || fail "CMakeLists.txt contains no version"
    printf '%s\n' "$version"
}

# Whether this is a git checkout, and not an unpacked archive, possibly inside another checkout.
is_checkout() {
    [[ "$(git -C "$root" rev-parse --show-toplevel 2>/dev/null)" -ef "$root" ]]
}

# The commit that this work builds upon, or nothing where there is none.
upon() {
    local head base
    head=$(git -C "$root" rev-parse HEAD)
    base=$(git -C "$root" merge-base HEAD origin/main 2>/dev/null || true)
    if [[ -z $base || $base == "$head" ]]; then
        base=$(git -C "$root" rev-list -1 --before="$(($(git -C "$root" log -1 --format=%ct HEAD) - 4 * 60 * 60))" HEAD)
    fi
    printf '%s\n' "$base"
}

as_root() {
    if [[ $EUID -eq 0 ]]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        say "This needs root, and sudo is not installed: $*"
        return 1
    fi
}

# The packages for the given purposes, one per line.
packages_for() {
    local purpose
    for purpose in "$@"; do
        sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$root/tools/packages/$purpose.txt"
    done | sort -u
}

# Filters the packages on standard input: those that are not installed. A question mark after a name means that not every
# release of Debian has the package.
not_installed() {
    local package
    while read -r package; do
        if [[ "$(dpkg-query -W -f='${db:Status-Status}' "${package%\?}" 2>/dev/null)" != installed ]]; then
            printf '%s\n' "$package"
        fi
    done
}

# Filters the packages on standard input: those that this release has.
known_here() {
    local package
    while read -r package; do
        if [[ $package != *\? ]]; then
            printf '%s\n' "$package"
        elif apt-cache show --no-all-versions "${package%\?}" >/dev/null 2>&1; then
            printf '%s\n' "${package%\?}"
        fi
    done
}

# Installs the missing packages for the given purposes; silent if there are none.
install_missing() {
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        if ! command -v cmake >/dev/null || ! command -v ninja >/dev/null; then
            say "This is not a Debian system, so nothing is installed automatically. You need these packages (Debian's names):"
            packages_for "$@" | sed 's/^/    /; s/?$//' >&2
            fail "CMake or Ninja is missing"
        fi
        return 0
    fi
    local missing log
    # Which packages this release has is checked only if something must be installed: it takes a second.
    mapfile -t missing < <(packages_for "$@" | not_installed | grep -v '?$')
    [[ ${#missing[@]} -gt 0 ]] || return 0

    say "Installing: ${missing[*]}"
    log=$(mktemp)
    # A fresh machine has no package lists, or old ones.
    if as_root apt-get -q -o DPkg::Lock::Timeout=300 update >"$log" 2>&1 </dev/null &&
        mapfile -t missing < <(packages_for "$@" | not_installed | known_here) &&
        as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 \
            -o Dpkg::Options::=--force-confold install --no-install-recommends "${missing[@]}" >"$log" 2>&1 </dev/null; then
        rm -f "$log"
        return 0
    fi
    tail -n 15 "$log" >&2
    rm -f "$log"
    fail "The packages above could not be installed. Install them by hand and try again."
}

# Uses the compiler cache if it is installed.
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
fi

# configure PRESET [CMAKE OPTION...]: only if the presets changed since the last time; the build checks everything else.
configure() {
    local preset=$1 folder="$root/build/$1" log
    shift
    if [[ -f "$folder/build.ninja" && ! "$root/CMakePresets.json" -nt "$folder/build.ninja" ]]; then
        return 0
    fi
    mkdir -p "$folder"
    log="$folder/configure.log"
    if ! (cd "$root" && cmake --preset "$preset" "$@") >"$log" 2>&1 </dev/null; then
        tail -n 25 "$log" >&2
        fail "CMake failed; its output is in $log"
    fi
}

# build PRESET [TARGET...]: shows output only if there is something to build.
build() {
    local folder="$root/build/$1"
    shift
    if [[ "$(ninja -C "$folder" -n "$@" 2>/dev/null | tail -n 1)" != *"no work to do"* ]]; then
        say "Building in $folder"
        ninja -C "$folder" "$@" >&2 </dev/null || fail "The build failed."
    fi
}
