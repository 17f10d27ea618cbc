#!/usr/bin/env bash
# Installs every Debian 12 package that Mirel needs to build, test and run.
# Safe to run twice: only packages not yet installed are asked of apt-get,
# so a set-up machine needs neither root nor the network. Root or sudo
# installs them.
set -euo pipefail
packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev
  qt6-translations-l10n
  libgl-dev libxkbcommon-dev
  fonts-liberation2
  libgtest-dev libgmock-dev libbenchmark-dev
  xvfb xauth
  poppler-utils
  cups printer-driver-cups-pdf
  desktop-file-utils appstream
  ccache
)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""
  [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
