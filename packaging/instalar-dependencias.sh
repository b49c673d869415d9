#!/bin/sh
# Installs what building, testing and running need and this Debian system lacks; with nothing missing it says nothing
# and touches nothing. Arguments are further packages.
set -eu

packages="cmake ninja-build g++ ccache clang-format git qt6-base-dev qt6-svg-dev qt6-serialport-dev qt6-translations-l10n libgl-dev
 libqcustomplot-dev libsqlitecpp-dev libsqlite3-dev libpugixml-dev poppler-utils xvfb xauth fonts-dejavu-core ca-certificates $*"

command -v dpkg-query >/dev/null && command -v apt-get >/dev/null || {
    echo "This is no Debian system; what the build needs is called on Debian:" >&2
    # shellcheck disable=SC2086
    echo "  "$packages >&2
    echo "Going on with what there is." >&2
    exit 0
}

missing=
for p in $packages; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$p" 2>/dev/null)" = installed ] || missing="$missing $p"
done
[ -n "$missing" ] || exit 0

as_root=
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        echo "Missing packages:$missing" >&2
        echo "There is no sudo here; install them as root: apt-get install$missing" >&2
        exit 1
    }
    as_root=sudo
fi
echo "Installing:$missing"

# sudo drops the environment, so it is set again behind it.
apt() { $as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq "$@"; }
# shellcheck disable=SC2086
install() { apt install -y --no-install-recommends $missing >"$log" 2>&1; }

log=$(mktemp)
trap 'rm -f "$log"' EXIT
# The package lists may be absent or out of date; they are fetched only when it does not work without.
install || {
    apt update
    install || {
        cat "$log" >&2
        echo "The packages could not be installed:$missing" >&2
        exit 1
    }
}
