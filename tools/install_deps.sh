#!/bin/sh
# Installs the Debian packages that building, running and testing need; does nothing when all are present.
# Works as root or through sudo.
set -eu

PACKAGES="
g++ make cmake pkg-config
libgtest-dev libgmock-dev libbenchmark-dev
libassimp-dev libfreetype-dev libfontconfig-dev fonts-dejavu-core
libpci-dev pci.ids libdrm-dev
libegl-dev libgl-dev libglew-dev libegl-mesa0 libgl1-mesa-dri
libx11-dev libxtst-dev libfreeimage-dev xvfb xauth xdotool
ocl-icd-libopencl1 ocl-icd-opencl-dev opencl-headers pocl-opencl-icd
libvulkan-dev mesa-vulkan-drivers vulkan-tools
nlohmann-json3-dev
libxml2-utils
libcurl4-openssl-dev python3
libmicrohttpd-dev libgnutls28-dev libcrypt-dev prometheus prometheus-node-exporter dpkg-dev systemd openssl curl
clang-15 libfuzzer-15-dev valgrind
desktop-file-utils appstream groff-base
qt6-base-dev qt6-qpa-plugins libxcb1-dev fonts-dejavu-core
"

missing=""
for package in $PACKAGES; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing="$missing $package"
    fi
done
[ -z "$missing" ] && exit 0

echo "Installing:$missing"
if [ "$(id -u)" -eq 0 ]; then SUDO=""; else SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
# shellcheck disable=SC2086
$SUDO apt-get install -y -q --no-install-recommends $missing
