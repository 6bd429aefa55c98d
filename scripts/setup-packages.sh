#!/usr/bin/env bash
# Installs the Debian packages that the project needs, and those named as arguments, as far as they are missing; as root
# or by sudo.
set -euo pipefail

packages=(
    build-essential cmake ninja-build ccache
    clang-format clang-tidy
    qtbase5-dev qtbase5-dev-tools qttranslations5-l10n
    libarchive-dev nettle-dev zlib1g-dev
    p7zip-full tar gzip procps
    openssl libssl-dev locales
    python3 python3-jsonschema groff-base
    at-spi2-core python3-pyatspi dbus
    xvfb xauth xdotool imagemagick x11-utils
    dpkg-dev file librsvg2-bin lintian appstream desktop-file-utils man-db adduser
    fonts-dejavu-core fonts-noto-cjk
    "$@"
)

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing+=("$package")
done
[ "${#missing[@]}" -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
        echo "These packages are missing; install them as root: ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -q
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
