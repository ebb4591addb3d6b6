# SPDX-License-Identifier: MIT
# Shared by the set-up scripts: messages, folders, and a private apt state that changes nothing system-wide.
# Sourced, not run. The caller has `set -euo pipefail`.

ORVANEL_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

say() { printf '== %s\n' "$*"; }
warn() { printf '== %s\n' "$*" >&2; }

# Exit code 2 is kept for "the machine lacks something that a person has to supply".
die() {
    printf 'error: %s\n' "$*" >&2
    exit 2
}

# build_preset PRESET [BUILD-OPTION...]: configures and builds; the output goes to a log, and its errors to the terminal too.
build_preset() {
    local preset=$1 log=$ORVANEL_ROOT/build/$1.log
    shift
    mkdir -p "$ORVANEL_ROOT/build"
    if (cd "$ORVANEL_ROOT" && cmake --preset "$preset" "${CONFIGURE_OPTIONS[@]}" && cmake --build --preset "$preset" "$@" -- -j "$(nproc)") >"$log" 2>&1; then
        return 0
    fi
    awk '/error|FAILED|Error/ { left = 12 } left-- > 0 && printed++ < 60' "$log" >&2
    warn "$preset did not build (whole log: build/$preset.log)"
    return 1
}
CONFIGURE_OPTIONS=()

# Hash of everything that decides a result: its stamp. Arguments are strings, file contents come through $(cat).
stamp_of() { printf '%s\n' "$@" | sha256sum | cut -c1-16; }

# The archive that this machine's own apt uses for Debian, whatever format its sources have.
archive_uri() {
    local codename
    codename=$(. /etc/os-release && printf '%s' "${VERSION_CODENAME:-}")
    apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT) $(CREATED_BY)' |
        awk -v codename="$codename" '$3 == "main" && $4 == "Packages" && ($2 == codename || $2 == "stable") && !found++ { print $1 }'
}

# private_apt SUITE DIR: lays down an apt state of its own for one suite and fills APT_OPTIONS. Needs no root.
# The status file is empty, so what the machine has installed does not decide which version is a candidate.
private_apt() {
    local suite=$1 dir=$2 uri keyring=/usr/share/keyrings/debian-archive-keyring.gpg options=""
    command -v apt-get >/dev/null || die "apt-get is missing: this set-up needs Debian 12 or PYTHON27_ROOT"
    uri=$(archive_uri)
    [ -n "$uri" ] || die "no Debian archive in this machine's apt sources"
    [ -r "$keyring" ] && options="[signed-by=$keyring] "
    mkdir -p "$dir/lists/partial" "$dir/cache/archives/partial" "$dir/etc/preferences.d"
    : >"$dir/status"
    printf 'deb %s%s %s main\ndeb-src %s%s %s main\n' "$options" "$uri" "$suite" "$options" "$uri" "$suite" >"$dir/etc/sources.list"
    APT_OPTIONS=(
        -q -o "APT::Sandbox::User=root"
        -o "Dir::State=$dir" -o "Dir::State::lists=$dir/lists" -o "Dir::State::status=$dir/status" -o "Dir::Cache=$dir/cache"
        -o "Dir::Etc::sourcelist=$dir/etc/sources.list" -o "Dir::Etc::sourceparts=-"
        -o "Dir::Etc::preferences=-" -o "Dir::Etc::preferencesparts=-"
        -o "Acquire::Languages=none" -o "Acquire::Retries=3"
    )
    # An archived suite keeps its last signature for ever; the signature itself is still checked.
    APT_OPTIONS+=(-o "Acquire::Check-Valid-Until=false")
    say "reading the package index of Debian $suite into $dir"
    apt-get "${APT_OPTIONS[@]}" update >"$dir/update.log" 2>&1 || {
        tail -n 5 "$dir/update.log" >&2
        die "cannot read the package index of Debian $suite"
    }
}

# fetch_packages SUITE DIR PACKAGE...: the .deb files of these packages in DIR/deb, nothing installed.
fetch_packages() {
    local suite=$1 dir=$2 package
    shift 2
    private_apt "$suite" "$dir"
    rm -rf "$dir/deb" && mkdir -p "$dir/deb"
    for package in "$@"; do
        (cd "$dir/deb" && apt-get "${APT_OPTIONS[@]}" download "$package" >>"$dir/download.log" 2>&1) || {
            tail -n 3 "$dir/download.log" >&2
            die "cannot fetch package $package of Debian $suite"
        }
    done
    say "fetched ${#} packages: $*"
}
