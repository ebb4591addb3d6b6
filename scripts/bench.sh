#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds and runs one bench, or all; figures go to build/bench/NAME.json.
#
#   ./bench                          lists the benches
#   ./bench NAME [ARG...]            runs one; arguments are the bench's own (--benchmark_filter=... and the like)
#   ./bench all                      runs every one
#   ./bench --windows NAME [ARG...]  runs one here and, cross-built, under Wine, in turns, and prints the ratios; or all
#   ./bench --document [NAME...]     runs every one both ways and writes docs/performance.md; with names, those anew
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/setup/common.sh"
cd "$ORVANEL_ROOT"

WINDOWS='' DOCUMENT=''
case ${1:-} in
-h | --help)
    sed -n '/^#   \.\/bench/s/^#   //p' "${BASH_SOURCE[0]}"
    exit 0
    ;;
--windows) WINDOWS=1 && shift ;;
--document) WINDOWS=1 DOCUMENT=1 && shift ;;
esac

CONFIGURE_OPTIONS=(-DORVANEL_BENCH=ON)
# How often the two systems take turns; the better turn counts.
TURNS=${ORVANEL_BENCH_TURNS:-2}

# configure PRESET: prints nothing unless it fails.
configure() {
    cmake --preset "$1" "${CONFIGURE_OPTIONS[@]}" >"build/$1.log" 2>&1 || {
        tail -n 30 "build/$1.log" >&2
        exit 1
    }
}

# names_of PRESET: the benches that it has.
names_of() { cmake --build --preset "$1" --target help | sed -n 's/^bench_\([a-z0-9_]*\): phony$/\1/p' | sort; }

has() { case " $2 " in *" $1 "*) return 0 ;; *) return 1 ;; esac; }

# run PRESET NAME OUT [ARG...]: the bench's own output, and its figures in OUT.
run() {
    local program=build/$1/bench/bench_$2 out=$3 runner=()
    [ -f "$program.exe" ] && program=$program.exe && runner=(scripts/wine-run)
    shift 3
    "${runner[@]}" "$program" --benchmark_out="$out" --benchmark_out_format=json "$@"
}

# is_script NAME: whether the bench is a Python program.
is_script() { [ "$(head -c 2 "build/release/bench/bench_$1" 2>/dev/null)" = '#!' ]; }

# component u|'': withdraws or offers the drawing component to the programs that run under Wine.
component() { scripts/wine-run regsvr32 /s ${1:+/u} "Z:$ORVANEL_ROOT/build/windows/canvas/OrvanelCanvas.dll"; }

# both NAME [ARG...]: in turns here and under Wine; each turn's output goes to a file.
both() {
    local name=$1 turn out preset turns=$TURNS
    shift
    has "$name" "$windows_names" || turns=1
    # What each repetition took, so that the best can be looked for.
    is_script "$name" || set -- --benchmark_report_aggregates_only=false "$@"
    rm -f build/bench/"$name".json build/bench/*/"$name".*.json
    for ((turn = 1; turn <= turns; ++turn)); do
        for preset in release windows; do
            [ "$preset" = windows ] && ! has "$name" "$windows_names" && continue
            out=build/bench/$preset/$name.$turn
            say "bench $name: running, $preset, turn $turn of $turns (output: $out.log)"
            if ! run "$preset" "$name" "$out.json" "$@" >"$out.log" 2>&1; then
                tail -n 20 "$out.log" >&2
                # A bench that misses a target of its own says so and has its figures all the same.
                [ -s "$out.json" ] || die "bench $name failed, $preset"
            fi
        done
    done
    cp "build/bench/release/$name.$turns.json" "build/bench/$name.json"
    build/python27/bin/python2.7 -B scripts/bench_page.py ratios "$name"
}

scripts/setup/packages.sh build host bench ${WINDOWS:+windows wine}
scripts/setup/python27.sh
mkdir -p build/bench/release build/bench/windows
configure release
names=$(names_of release | tr '\n' ' ')
windows_names=''
if [ $# -eq 0 ] && [ -z "$DOCUMENT" ]; then
    printf 'benches: %s\n' "${names:-none}"
    exit 0
fi
if [ -n "$WINDOWS" ]; then
    scripts/setup/python27-windows.sh
    scripts/setup/benchmark-windows.sh
    scripts/setup/wine.sh
    configure windows
    windows_names=$(names_of windows | tr '\n' ' ')
    say "left out under Wine"
    sed 's/^/  /' build/windows/bench/left-out.txt
fi

if [ -n "$DOCUMENT" ]; then
    wanted=("$@")
    set --
    [ ${#wanted[@]} -gt 0 ] || read -r -a wanted <<<"$names"
else
    wanted=("$1")
    [ "$1" = all ] && read -r -a wanted <<<"$names"
    shift
fi
for name in "${wanted[@]}"; do
    has "$name" "$names" || die "unknown bench '$name': there are $names"
    say "bench $name: building"
    build_preset release --target "bench_$name" || exit 1
    if has "$name" "$windows_names"; then
        build_preset windows --target "bench_$name" --target OrvanelCanvas || exit 1
    fi
done

if [ -n "$WINDOWS" ]; then
    component
    trap 'component u || true' EXIT
fi
for name in "${wanted[@]}"; do
    if [ -n "$WINDOWS" ]; then
        both "$name" "$@"
    else
        say "bench $name: running (figures: build/bench/$name.json)"
        run release "$name" "build/bench/$name.json" "$@"
    fi
done
if [ -n "$DOCUMENT" ]; then
    build/python27/bin/python2.7 -B scripts/bench_page.py write docs/performance.md
    say "docs/performance.md is written"
fi
