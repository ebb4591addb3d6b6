#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds Python 2.7 for 64-bit Windows with mingw-w64: what the cross build links, and what its tests run in.
#
#   scripts/setup/python27-windows.sh [BUILD]        BUILD defaults to build/ of this repository
#
# The source is the plain upstream release that Debian 11's source package python2.7 carries, fetched through a private apt
# state. The result stays outside the source tree, in ${XDG_CACHE_HOME:-~/.cache}/orvanel/python27-windows-KEY, where KEY
# stands for everything it is made from; BUILD/python27-windows points there.
#
# Result: python.exe, python27.dll, DLLs/, lib/, include/, libs/libpython27.dll.a
#
# Upstream supports Microsoft's compiler only on Windows. The list of sources comes from its own project file; the
# differences between the two compilers that matter are the few edits below.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

BUILD=$(mkdir -p "${1:-$ORVANEL_ROOT/build}" && cd "${1:-$ORVANEL_ROOT/build}" && pwd)
SUITE=bullseye
TRIPLE=x86_64-w64-mingw32
CC=$TRIPLE-gcc-posix
command -v "$CC" >/dev/null || die "$CC is missing: run scripts/setup/packages.sh windows"

KEY=$(stamp_of "$(cat "${BASH_SOURCE[0]}")" "$("$CC" -dumpfullversion)")
CACHE=${XDG_CACHE_HOME:-$HOME/.cache}/orvanel
OUT=$CACHE/python27-windows-$KEY

point_there() { ln -sfn "$OUT" "$BUILD/python27-windows"; }
if [ -f "$OUT/libs/libpython27.dll.a" ]; then
    point_there
    exit 0
fi

mkdir -p "$CACHE"
WORK=$(mktemp -d "$CACHE/python27-windows-work.XXXXXX")
on_exit() {
    local code=$?
    rm -rf "$WORK"
    [ "$code" = 0 ] && return
    # The build's output goes to a file; when it ends early its end is what matters.
    { true >&4; } 2>/dev/null && tail -n 15 "$CACHE/python27-windows.log" >&4 &&
        printf 'error: Python 2.7 for Windows did not build (whole output: %s)\n' "$CACHE/python27-windows.log" >&4
    exit 2
}
trap on_exit EXIT
JOBS=$(nproc)

fetch_source() {
    private_apt "$SUITE" "$WORK/apt"
    mkdir -p "$WORK/fetch"
    (cd "$WORK/fetch" && apt-get "${APT_OPTIONS[@]}" source --download-only --only-source python2.7 >"$WORK/fetch.log" 2>&1) || {
        tail -n 3 "$WORK/fetch.log" >&2
        die "cannot fetch the source package python2.7 of Debian $SUITE"
    }
    mkdir -p "$WORK/source"
    tar -xf "$WORK"/fetch/python2.7_*.orig.tar.* -C "$WORK/source" --strip-components=1
}

# What stands between upstream's Windows sources and GCC.
adapt_source() {
    # "Microsoft's compiler" means "Windows" everywhere in this file except where its version is asked for.
    sed -i '/_MSC_VER >= 1400/!s/_MSC_VER/MS_WINDOWS/g' Modules/posixmodule.c
    sed -i 's/<Windows\.h>/<windows.h>/' Modules/signalmodule.c
    sed -i 's/<MSTcpIP\.h>/<mstcpip.h>/' Modules/socketmodule.h
    # The run time has a function of this name already.
    sed -i 's/\bstrcasecmp\b/import_strcasecmp/g' Python/dynload_win.c
}

DEFINES=(-DWIN32 -DMS_WIN64 -DMS_WINX64 -DHAVE_SSIZE_T=1 -DHAVE_UINTPTR_T=1 -DHAVE_INTPTR_T=1)
FLAGS=(-std=gnu89 -O2 -fwrapv -fno-strict-aliasing -mlong-double-64 -w -IInclude -IPC)
LIBRARIES=(-lversion -lws2_32 -luser32 -ladvapi32 -lshell32 -lole32 -loleaut32)

build_core() {
    local sources source
    mapfile -t sources < <(sed -n 's/.*<ClCompile Include="\.\.\\\([^"]*\)".*/\1/p' PCbuild/pythoncore.vcxproj | tr '\\' '/')
    [ "${#sources[@]}" -ge 170 ] || die "the project file of Python names only ${#sources[@]} sources"
    mkdir -p obj
    for source in "${sources[@]}"; do
        printf '%s\0%s\0' "obj/$(tr '/' '_' <<<"$source").o" "$source"
    done | xargs -0 -n 2 -P "$JOBS" "$CC" "${DEFINES[@]}" -DPy_BUILD_CORE -DPy_ENABLE_SHARED "${FLAGS[@]}" \
        -IPython -IModules -IModules/zlib -c -o
    printf 'STRINGTABLE { 1000, "2.7" }\n' >obj/version.rc
    "$TRIPLE-windres" obj/version.rc obj/version.res.o
    "$CC" -shared -static-libgcc -o python27.dll obj/*.o -Wl,--out-implib,libpython27.dll.a "${LIBRARIES[@]}"
    "$CC" "${DEFINES[@]}" "${FLAGS[@]}" -static-libgcc -o python.exe Modules/python.c libpython27.dll.a
}

# build_extension NAME LIBRARY... -- SOURCE...
build_extension() {
    local name=$1 libraries=()
    shift
    while [ "$1" != -- ]; do libraries+=("$1") && shift; done
    shift
    "$CC" "${DEFINES[@]}" "${FLAGS[@]}" -shared -static-libgcc -o "DLLs/$name.pyd" "$@" libpython27.dll.a "${libraries[@]}"
}

# _ctypes comes with a library for foreign calls whose own build knows this target, but not without these edits.
build_ctypes() {
    local foreign=$PWD/Modules/_ctypes/libffi
    # A missing operand in a branch that only another compiler takes.
    sed -i 's/^\( *\)delta =$/\1delta = 0;/' Modules/_ctypes/callproc.c
    # The address of a function of a library is not known at link time.
    sed -i 's/mov\t\$SYMBOL_NAME(ffi_closure_win64_inner), %rax/leaq\tSYMBOL_NAME(ffi_closure_win64_inner)(%rip), %rax/' \
        "$foreign/src/x86/win64.S"
    # Upstream's copy for Microsoft's compiler has these two: which structures come back in a register.
    cat >obj/structures.c <<'SOURCE'
#include <stddef.h>
int can_return_struct_as_int(size_t size) { return size == 1 || size == 2 || size == 4; }
int can_return_struct_as_sint64(size_t size) { return size == 8; }
SOURCE
    mkdir -p obj/libffi
    (cd obj/libffi && CC=$CC CFLAGS="-O2 -mlong-double-64" "$foreign/configure" --host="$TRIPLE" --disable-shared)
    FLAGS+=(-DFFI_BUILDING -Iobj/libffi -Iobj/libffi/include "-I$foreign/include" "-I$foreign/src")
    build_extension _ctypes -lole32 -loleaut32 -luuid -- \
        Modules/_ctypes/{_ctypes,callbacks,callproc,cfield,malloc_closure,stgdict}.c obj/structures.c \
        "$foreign/src/prep_cif.c" "$foreign/src/x86/ffi.c" "$foreign/src/x86/win64.S"
}

say "building Python 2.7 for Windows into $OUT (once, about a minute)"
fetch_source
cd "$WORK/source"
adapt_source
exec 3>&1 4>&2 >"$CACHE/python27-windows.log" 2>&1
build_core
mkdir -p DLLs
build_extension _socket -lws2_32 -- Modules/socketmodule.c
build_extension select -lws2_32 -- Modules/selectmodule.c
build_extension unicodedata -- Modules/unicodedata.c
build_extension _testcapi -- Modules/_testcapimodule.c
build_ctypes
exec >&3 2>&4

# Laid out aside and moved in one step: another set-up of the same key sees all of it or nothing.
mkdir -p "$WORK/out/libs"
cp python.exe python27.dll "$WORK/out/"
cp libpython27.dll.a "$WORK/out/libs/"
cp -r DLLs "$WORK/out/DLLs"
cp -r Include "$WORK/out/include"
cp PC/pyconfig.h "$WORK/out/include/"
cp -r Lib "$WORK/out/lib"
rm -rf "$WORK/out/lib/test" "$WORK/out/lib/idlelib" "$WORK/out/lib/lib2to3/tests" "$WORK/out/lib/lib-tk"
cp LICENSE "$WORK/out/"
mv -T "$WORK/out" "$OUT" 2>/dev/null || [ -f "$OUT/libs/libpython27.dll.a" ] || die "cannot lay $OUT down"
point_there
say "Python 2.7 for Windows is ready: $BUILD/python27-windows"
