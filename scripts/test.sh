#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Sets up what is missing, builds, and runs every test in every configuration.
#
#   ./test                 everything below
#   ./test --quick         only the release configuration
#   ./test NAME...         only these, of: release debug asan ubsan tsan windows, and two that run only when named:
#                          wine (the Windows build's tests under Wine) and format (the tree against .clang-format)
#
# A configuration that fails does not keep the others from running. The last line counts the tests of all of them.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/setup/common.sh"
cd "$ORVANEL_ROOT"

ALL=(release debug asan ubsan tsan windows)
case ${1:-} in
-h | --help)
    sed -n '/^#   /s/^#   //p' "${BASH_SOURCE[0]}"
    exit 0
    ;;
--quick) selected=(release) ;;
"") selected=("${ALL[@]}") ;;
*) selected=("$@") ;;
esac
for name in "${selected[@]}"; do
    case " ${ALL[*]} wine format " in *" $name "*) ;; *) die "unknown configuration '$name': there are ${ALL[*]} wine format" ;; esac
done

JOBS=$(nproc)
passed=0 failed=0 skipped=0
lines=()

note() { lines+=("$(printf '%-8s %s' "$1" "$2")"); }

# count NAME JUNIT SECONDS: adds ctest's own counts.
count() {
    local tests fails skips
    tests=$(tr '\n' ' ' <"$2" | sed -n 's/.*<testsuite[^>]*[[:space:]]tests="\([0-9]*\)".*/\1/p')
    fails=$(tr '\n' ' ' <"$2" | sed -n 's/.*<testsuite[^>]*[[:space:]]failures="\([0-9]*\)".*/\1/p')
    skips=$(tr '\n' ' ' <"$2" | sed -n 's/.*<testsuite[^>]*[[:space:]]skipped="\([0-9]*\)".*/\1/p')
    passed=$((passed + tests - fails - skips)) failed=$((failed + fails)) skipped=$((skipped + skips))
    note "$1" "$((tests - fails - skips)) passed, $fails failed, $skips skipped in $3 s"
}

# build PRESET
build() {
    say "$1: building (log: build/$1.log)"
    build_preset "$1"
}

# suite NAME PRESET: one configuration from configure to ctest.
suite() {
    local name=$1 preset=$2 start=$SECONDS junit=$ORVANEL_ROOT/build/$2/ctest.xml
    if ! build "$preset"; then
        failed=$((failed + 1))
        note "$name" "did not build"
        return
    fi
    rm -f "$junit"
    say "$name: testing"
    ctest --preset "$preset" -j "$JOBS" --output-junit "$junit" || true
    if [ ! -f "$junit" ]; then
        failed=$((failed + 1))
        note "$name" "ran no test"
        return
    fi
    count "$name" "$junit" "$((SECONDS - start))"
}

# Direct3D wants a display, and Wine chooses its driver when its server starts: a server that is still there from before
# is ended, then the display comes first.
wine() {
    local pid display=$ORVANEL_ROOT/build/wine/display
    WINEPREFIX=$ORVANEL_ROOT/build/wine /usr/lib/wine/wineserver64 -k || true
    Xvfb -displayfd 3 -screen 0 1920x1080x24 -nolisten tcp 3>"$display" >/dev/null 2>&1 &
    pid=$!
    for _ in {1..50}; do
        [ -s "$display" ] && break
        sleep 0.1
    done
    DISPLAY=:$(cat "$display") suite wine windows
    WINEPREFIX=$ORVANEL_ROOT/build/wine /usr/lib/wine/wineserver64 -k || true
    kill "$pid" && wait "$pid" || true
}

windows() {
    local start=$SECONDS
    if build windows; then
        note windows "built in $((SECONDS - start)) s"
    else
        failed=$((failed + 1))
        note windows "did not build"
    fi
}

format() {
    say "format: clang-format over every C++ file"
    local file bad=0
    while read -r file; do
        clang-format --dry-run --Werror "$file" 2>/dev/null && continue
        bad=$((bad + 1))
        echo "  $file"
    done < <(git ls-files '*.cpp' '*.h')
    if [ "$bad" = 0 ]; then
        passed=$((passed + 1))
        note format "clean"
    else
        failed=$((failed + 1))
        note format "$bad files differ from .clang-format (clang-format -i FILE mends one)"
    fi
}

purposes=(build host)
for name in "${selected[@]}"; do
    case $name in windows) purposes+=(windows) ;; wine) purposes+=(windows wine) ;; format) purposes+=(checks) ;; esac
done
scripts/setup/packages.sh "${purposes[@]}"
scripts/setup/python27.sh
scripts/setup/clip.sh
for name in "${selected[@]}"; do
    case $name in
    windows)
        scripts/setup/python27-windows.sh
        windows
        ;;
    wine)
        scripts/setup/python27-windows.sh
        scripts/setup/wine.sh
        wine
        ;;
    format) format ;;
    *) suite "$name" "$name" ;;
    esac
done

echo
say "summary"
printf '%s\n' "${lines[@]}"
if [ "$skipped" -gt 0 ]; then
    echo "$passed passed, $failed failed, $skipped skipped"
else
    echo "$passed passed, $failed failed"
fi
[ "$failed" -eq 0 ]
