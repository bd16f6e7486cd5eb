#!/usr/bin/env bash
# Installs what the project is built with, as far as it is missing. The one list of packages.
set -euo pipefail

packages=(
    g++ cmake ninja-build ccache pkg-config
    qt6-base-dev qt6-svg-dev qt6-image-formats-plugins qt6-translations-l10n
    fonts-dejavu-core fonts-liberation2 fonts-wqy-microhei
    libsqlite3-dev libreadstat-dev libsimpleini-dev libcli11-dev libqpdf-dev
    clang-format-14
    libgtest-dev libbenchmark-dev
    xvfb openbox xdotool poppler-utils cups-daemon cups-client
)

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query --show --showformat='${db:Status-Abbrev}' "$package" 2>/dev/null || true)
    [[ $status == ii* ]] || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "Installing: ${missing[*]}" >&2
if [[ $(id -u) -ne 0 ]]; then
    echo "Please install these packages as root and start again: apt-get install ${missing[*]}" >&2
    exit 1
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { apt-get update && DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"; } \
        >"$log" 2>&1; then
    tail -n 30 "$log" >&2
    exit 1
fi
