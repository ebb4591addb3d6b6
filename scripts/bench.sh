#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds and runs one bench, or all; figures go to build/bench/NAME.json.
#
#   ./bench                lists the benches
#   ./bench NAME [ARG...]  runs one; arguments are the bench's own (--benchmark_filter=... and the like)
#   ./bench all            runs every one
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/setup/common.sh"
cd "$ORVANEL_ROOT"

if [ "${1:-}" = -h ] || [ "${1:-}" = --help ]; then
    sed -n '/^#   \.\/bench/s/^#   //p' "${BASH_SOURCE[0]}"
    exit 0
fi

scripts/setup/packages.sh build host bench
scripts/setup/python27.sh
mkdir -p build/bench
CONFIGURE_OPTIONS=(-DORVANEL_BENCH=ON)
cmake --preset release "${CONFIGURE_OPTIONS[@]}" >build/release.log 2>&1 || {
    tail -n 30 build/release.log >&2
    exit 1
}
mapfile -t names < <(cmake --build --preset release --target help | sed -n 's/^bench_\([a-z0-9_]*\): phony$/\1/p' | sort)

if [ $# -eq 0 ]; then
    printf 'benches: %s\n' "${names[*]:-none}"
    exit 0
fi
wanted=("$1")
[ "$1" = all ] && wanted=("${names[@]}")
shift
for name in "${wanted[@]}"; do
    case " ${names[*]} " in *" $name "*) ;; *) die "unknown bench '$name': there are ${names[*]:-none}" ;; esac
    say "bench $name: building"
    build_preset release --target "bench_$name" || exit 1
    say "bench $name: running (figures: build/bench/$name.json)"
    "build/release/bench/bench_$name" --benchmark_out="build/bench/$name.json" --benchmark_out_format=json "$@"
done
