#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Sets up what is missing, builds, and runs every test in every configuration.
#
#   ./test                 everything below
#   ./test --quick         only the release configuration
#   ./test NAME...         only these, of: release debug asan tsan windows, and two that run only when named:
#                          ubsan (a part of asan, by itself), format (the tree against .clang-format)
#
# windows is the cross build; its tests run under Wine on a display of their own, the Python tests under Python for Windows.
# What does not run there is listed with its reason.
#
# A configuration that fails does not keep the others from running. The last line counts the tests of all of them.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/setup/common.sh"
cd "$ORVANEL_ROOT"

ALL=(release debug asan tsan windows)
NAMED=(ubsan format)
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
    case " ${ALL[*]} ${NAMED[*]} " in *" $name "*) ;; *) die "unknown configuration '$name': there are ${ALL[*]} ${NAMED[*]}" ;; esac
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
    ctest --preset "$preset" -j "$JOBS" --output-junit "$junit" --test-output-size-passed 1000000 || true
    if [ ! -f "$junit" ]; then
        failed=$((failed + 1))
        note "$name" "ran no test"
        return
    fi
    count "$name" "$junit" "$((SECONDS - start))"
}

# Direct3D wants a display, and Wine chooses its driver when its server starts: a server that is still there from before
# is ended, then the display comes first.
windows() {
    local pid display=$ORVANEL_ROOT/build/wine/display
    export WINEPREFIX=$ORVANEL_ROOT/build/wine
    /usr/lib/wine/wineserver64 -k || true
    rm -f "$display"
    Xvfb -displayfd 3 -screen 0 1920x1080x24 -nolisten tcp 3>"$display" >/dev/null 2>&1 &
    pid=$!
    # shellcheck disable=SC2064 # this one, whatever is called so later
    trap "kill $pid 2>/dev/null" EXIT
    for _ in {1..100}; do
        [ -s "$display" ] && break
        sleep 0.1
    done
    DISPLAY=:$(cat "$display") suite windows windows
    /usr/lib/wine/wineserver64 -k || true
    kill "$pid" && wait "$pid" || true
    trap - EXIT
    unset WINEPREFIX
    windows_cases
    windows_gaps
}

# How GoogleTest and unittest say that they left a case out.
SKIPPED='\[  SKIPPED \] .*\(|\.\.\. skipped '

# There an entry of ctest is a whole program: how many cases they have, and the ones that were skipped.
windows_cases() {
    local junit=$ORVANEL_ROOT/build/windows/ctest.xml cases
    [ -f "$junit" ] || return 0
    cases=$(grep -oE '\] [0-9]+ tests? from .* ran\.|^Ran [0-9]+ tests? in' "$junit" | grep -oE '[0-9]+ test' | awk '{ sum += $1 } END { print sum + 0 }')
    note "" "these are programs and Python files with $cases cases"
    if grep -qE "$SKIPPED" "$junit"; then
        say "windows: skipped cases"
        # GoogleTest names the reason on the line before.
        grep -E -B1 "$SKIPPED" "$junit" | sed -nE "s/&apos;/'/g; s/&quot;/\"/g; s/.*<system-out>//; /skipped '|SKIPPED|^[A-Za-z]/p" |
            grep -vE '\.\.\. (ok|FAIL|ERROR)$' | sort -u | sed 's/^/  /'
    fi
}

# What runs natively and not on Windows, and why. A test without a reason fails the run.
windows_gaps() {
    local list=$ORVANEL_ROOT/build/windows/not-on-windows.txt missing
    [ -f "$list" ] || return 0
    say "windows: tests that do not run there"
    awk -F': ' '{ reason = substr($0, length($1) + 3); if (!(reason in names)) order[++count] = reason; names[reason] = names[reason] " " $1 }
        END { for (i = 1; i <= count; i++) printf "  %s:\n     %s\n", order[i], names[order[i]] }' "$list"
    [ -d "$ORVANEL_ROOT/build/release" ] || return 0
    missing=$(comm -23 <(test_programs release) <({ test_programs windows && cut -d: -f1 "$list"; } | sort -u))
    if [ -n "$missing" ]; then
        failed=$((failed + 1))
        note windows "no reason is given for: $(tr '\n' ' ' <<<"$missing")"
    fi
}

# test_programs PRESET: one line a program or Python file, whether ctest knows its cases or not.
test_programs() {
    ctest --test-dir "$ORVANEL_ROOT/build/$1" -N | sed -n 's/^ *Test *#[0-9]*: //p' | sed 's/^\([a-z0-9_]*_test\)\..*/\1/' | sort -u
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
    case $name in windows) purposes+=(windows wine) ;; format) purposes+=(checks) ;; esac
done
scripts/setup/packages.sh "${purposes[@]}"
scripts/setup/python27.sh
scripts/setup/clip.sh
for name in "${selected[@]}"; do
    case $name in
    windows)
        scripts/setup/python27-windows.sh
        scripts/setup/wine.sh
        windows
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
