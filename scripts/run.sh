#!/usr/bin/env bash
# Builds the kolvane tool (release preset) and runs it; with no arguments it lists the types of
# the bundled example profile.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target kolvane_cli >/dev/null
if (($# == 0)); then set -- show; fi
exec ./build/release/app/cli/kolvane "$@"
