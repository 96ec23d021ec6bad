#!/usr/bin/env bash
# Installs what is needed, builds, and starts the console on a fresh simulated
# host in this terminal. Extra arguments go to `tesk-sim run` (--profile NAME).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh build
exec build/tesk-sim run "$@"
