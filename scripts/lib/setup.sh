# What every script needs first; sourced, not run. Leaves the shell in the
# project's root folder.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

build_packages=(g++ cmake ninja-build ccache libsqlite3-dev qt6-base-dev pkg-config libcairo2-dev libfontconfig-dev
  fonts-liberation libcurl4-openssl-dev libcsv-dev zlib1g-dev
  libssl-dev libxml2-dev libqrencode-dev)
test_packages=(libgtest-dev nlohmann-json3-dev poppler-utils python3-aiosmtpd openssl dpkg-dev zbar-tools
  libxml2-utils)
build_packages+=(unixodbc-dev)
test_packages+=(libsqliteodbc tdsodbc)

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# require_packages PACKAGE… installs those that the machine does not have.
require_packages() {
  local missing=() package
  for package in "$@"; do
    if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
      missing+=("$package")
    fi
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  echo "Installing: ${missing[*]}" >&2
  as_root apt-get update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >&2
}

# build_preset PRESET TARGET… configures, again when the presets have changed, and builds.
build_preset() {
  local preset=$1
  shift
  # Paths relative to the folder, so that another checkout finds the same objects.
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
  # What a source takes from a precompiled header is known by its contents.
  export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
  if ! cmp -s CMakePresets.json "build/$preset/presets"; then
    echo "Configuring build/$preset" >&2
    cmake --preset "$preset" >/dev/null
    cp CMakePresets.json "build/$preset/presets"
  fi
  cmake --build --preset "$preset" --target "$@" >&2
}
