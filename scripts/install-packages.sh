#!/usr/bin/env bash
# Installs the Debian packages that building and testing need, those that are missing only, and the ones named:
# install-packages.sh [PACKAGE ...]
set -euo pipefail

packages=(
  cmake ninja-build g++ python3 git
  g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64   # the Windows build
  googletest libbenchmark-dev nlohmann-json3-dev libcli11-dev librapidxml-dev
  gettext translate-toolkit libxml2-utils groff          # checks of exported translations and man pages
  php-symfony-translation                                # holds the schema of XLIFF 1.2
  wixl msitools osslsigncode openssl                     # the installer, and signing it
  clang libclang-rt-14-dev llvm                          # the second compiler, fuzzing
  clang-format-14 clang-tidy-14                          # format and names: version 14 decides them
  wine64 fonts-wine fonts-liberation xvfb                # running it, and the pictures of menus
)
packages+=("$@")

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "install-packages: run as root, or install: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
echo "installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
