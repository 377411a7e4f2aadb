#!/usr/bin/env bash
# Installs the Debian packages that the build needs, and those named as arguments, as far as they are missing.
set -euo pipefail

packages=(
  ca-certificates g++ cmake ninja-build pkg-config git python3
  libgtest-dev libbenchmark-dev               # tests, benches
  libepoxy-dev libegl-dev libegl1 libegl-mesa0 libgl1-mesa-dri # OpenGL off screen
  libglfw3-dev libimgui-dev fonts-dejavu-core   # window
  xvfb xdotool                                # tests of the window
  libpng-dev libtiff-dev libopenexr-dev libxxhash-dev # pictures, scene checksums
  nlohmann-json3-dev libcli11-dev             # command line
  libembree-dev                               # surfaces in rendered pictures
  libcurl4-openssl-dev                        # requests of the module
  libcpp-httplib-dev libssl-dev               # servers that the tests ask
  r-base-core                                 # brings the LASlib sources from CRAN
)
[ $# -eq 0 ] || packages+=("$@")

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

if ! command -v apt-get >/dev/null; then
  echo "install_dependencies: these Debian packages are missing, and there is no apt-get to install them: ${missing[*]}" >&2
  exit 1
fi
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "install_dependencies: not root and no sudo; install: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq || echo "install_dependencies: the package lists could not be updated; continuing with the old ones" >&2
if ! "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null; then
  echo "install_dependencies: apt-get could not install: ${missing[*]}" >&2
  exit 1
fi
