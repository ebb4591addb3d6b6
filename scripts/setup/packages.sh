#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The one list of Debian packages that this project needs, by purpose. Installs those that are missing.
#
#   scripts/setup/packages.sh PURPOSE...        e.g. build host
#   scripts/setup/packages.sh --list            what belongs to which purpose
#
# Without root and with something missing: one line that names the packages, exit code 2.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

declare -A PACKAGES=(
    # The module and its unit tests.
    [build]="g++ cmake ninja-build ccache googletest pkg-config libpng-dev swig"
    # The reference host: real video in and out; its tests ask ffprobe for a second opinion.
    [host]="libavformat-dev libavcodec-dev libavutil-dev libswscale-dev ffmpeg"
    # What the benches measure against.
    [bench]="libbenchmark-dev libcairo2-dev libagg-dev libfreetype-dev libopencv-core-dev libopencv-imgproc-dev"
    # The checks that need a program of their own.
    [checks]="clang-format"
    [fuzz]="clang libclang-rt-14-dev"
    [memory]="valgrind"
    # The cross build; dpkg-dev unpacks Python's source package.
    [windows]="g++-mingw-w64-x86-64-posix dpkg-dev patch"
    # Packages, and a look into them.
    [dist]="dpkg-dev unzip"
    # Running what the cross build made.
    [wine]="wine64 xvfb libgl1 libgl1-mesa-dri"
)

if [ "${1:-}" = --list ]; then
    for purpose in "${!PACKAGES[@]}"; do printf '%-8s %s\n' "$purpose" "${PACKAGES[$purpose]}"; done | sort
    exit 0
fi

installed() { [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

missing=()
for purpose in "$@"; do
    [ -n "${PACKAGES[$purpose]:-}" ] || die "unknown purpose '$purpose' (see --list)"
    for package in ${PACKAGES[$purpose]}; do
        installed "$package" || missing+=("$package")
    done
done
[ "${#missing[@]}" -gt 0 ] || exit 0

[ "$(id -u)" = 0 ] || die "these Debian packages are missing, install them as root: ${missing[*]}"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
say "installing ${#missing[@]} Debian packages for $*: ${missing[*]}"
apt-get -q update >"$log" 2>&1 || warn "apt-get update failed: $(tail -n 1 "$log")"
for package in "${missing[@]}"; do
    [[ "$(apt-cache policy "$package")" =~ Candidate:\ [^\(] ]] || die "Debian package $package cannot be installed: apt knows no candidate"
done
DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends "${missing[@]}" >"$log" 2>&1 || true
for package in "${missing[@]}"; do
    installed "$package" || {
        tail -n 5 "$log" >&2
        die "Debian package $package cannot be installed"
    }
done
say "installed"
