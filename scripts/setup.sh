#!/usr/bin/env bash
# Installs every Debian package that building, testing, benchmarking and
# serving need. Safe to run again: when everything is present it prints
# nothing and touches nothing (apt-get update only runs when something is
# missing).
set -euo pipefail

PACKAGES=(
  build-essential
  cmake
  ninja-build
  pkg-config
  clang-format
  clang
  libclang-rt-dev
  googletest
  libgtest-dev
  libgmock-dev
  libbenchmark-dev
  nlohmann-json3-dev
  libpugixml-dev
  libcpp-httplib-dev
  libssl-dev
  libmimalloc-dev
  libcrypt-dev
  sblim-wbemcli
)

missing=()
for pkg in "${PACKAGES[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null || true)
  if [[ "$status" != "install ok installed" ]]; then
    missing+=("$pkg")
  fi
done

if [[ ${#missing[@]} -eq 0 ]]; then
  exit 0
fi

SUDO=""
if [[ $(id -u) -ne 0 ]]; then
  SUDO="sudo"
fi

echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
echo "setup: done"
