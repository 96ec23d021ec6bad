#!/usr/bin/env bash
# Configures and builds into a build directory.
#   scripts/build.sh [--sanitize] [build-dir]
set -euo pipefail
cd "$(dirname "$0")/.."

sanitize=OFF
if [ "${1:-}" = "--sanitize" ]; then sanitize=ON; shift; fi
dir=${1:-$([ "$sanitize" = ON ] && echo build-asan || echo build)}

cmake -S . -B "$dir" -G Ninja -DTESK_SANITIZE="$sanitize" >/dev/null
ninja -C "$dir"
