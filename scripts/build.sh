#!/usr/bin/env bash
# Configures and builds into a build directory.
#   scripts/build.sh [--sanitize] [build-dir]
set -euo pipefail
cd "$(dirname "$0")/.."

sanitize=OFF
if [ "${1:-}" = "--sanitize" ]; then sanitize=ON; shift; fi
dir=${1:-$([ "$sanitize" = ON ] && echo build-asan || echo build)}

# ccache, where installed, makes rebuilds in several checkouts of the tree cheap.
launcher=()
if command -v ccache >/dev/null 2>&1; then
  export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$(cd .. && pwd)}
  launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake -S . -B "$dir" -G Ninja -DTESK_SANITIZE="$sanitize" "${launcher[@]}" >/dev/null
ninja -C "$dir"
