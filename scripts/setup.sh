#!/usr/bin/env bash
# Installs the Debian packages that building and testing vexload_c need.
# Idempotent: when everything is there it only checks and says so.
# As root it installs what is missing; otherwise it prints the command to run.
set -euo pipefail

PACKAGES=(
  g++            # C++20 compiler (g++ 12 on Debian 12)
  cmake          # 3.25 or later, for the presets
  ninja-build
  libgtest-dev
  libgmock-dev
  libbenchmark-dev
  clang-format   # scripts/check-format.sh
  clang          # libFuzzer targets (scripts/fuzz.sh)
  libclang-rt-14-dev
  binutils       # nm, for the library's export check
  git
)

missing=()
for pkg in "${PACKAGES[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null || true)
  if [[ "$status" != "install ok installed" ]]; then
    missing+=("$pkg")
  fi
done

if ((${#missing[@]} == 0)); then
  echo "setup: all build and test packages are installed."
  exit 0
fi

if [[ $(id -u) -eq 0 ]]; then
  echo "setup: installing ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq "${missing[@]}"
  echo "setup: done."
else
  echo "setup: missing packages: ${missing[*]}" >&2
  echo "setup: run as root:  apt-get update && apt-get install -y ${missing[*]}" >&2
  exit 1
fi
