#!/bin/sh
# Installs what building and testing need and this Debian system lacks. With nothing missing it touches nothing.
set -eu

packages="cmake ninja-build g++ ccache clang-format git qt6-base-dev qt6-svg-dev libgl-dev libqcustomplot-dev
 libsqlitecpp-dev libsqlite3-dev libpugixml-dev xvfb xauth fonts-dejavu-core ca-certificates"

missing=
for p in $packages; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$p" 2>/dev/null)" = installed ] || missing="$missing $p"
done
[ -n "$missing" ] || exit 0

as_root=
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        echo "Missing packages:$missing" >&2
        echo "Install them as root: apt-get install$missing" >&2
        exit 1
    }
    as_root=sudo
fi
echo "Installing:$missing"
export DEBIAN_FRONTEND=noninteractive
# shellcheck disable=SC2086
$as_root apt-get install -y --no-install-recommends $missing || {
    $as_root apt-get update
    $as_root apt-get install -y --no-install-recommends $missing
}
