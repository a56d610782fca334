#!/usr/bin/env bash
# Installs the Debian 12 packages the build, the tests and the sample run need.
# Idempotent: when everything is present it only asks dpkg and returns.
set -euo pipefail

packages=(
  cmake g++ make pkg-config git ccache
  juce-modules-source juce-tools
  libfreetype-dev libfontconfig1-dev libx11-dev libxrandr-dev libxinerama-dev libxcursor-dev libxext-dev
  libegl-dev libgles-dev libegl-mesa0 libgl1-mesa-dri
  libtiff-dev libjpeg62-turbo-dev libpng-dev liblodepng-dev liblcms2-dev zlib1g-dev libsqlite3-dev
  libgtest-dev googletest
  xvfb xauth xdotool x11-utils xclip imagemagick libtiff-tools
  gimp libgimp2.0-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "install-deps: installing ${missing[*]}" >&2
  SUDO=""
  [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
