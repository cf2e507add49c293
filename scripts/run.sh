#!/usr/bin/env bash
# Builds the kolvane tool (release preset) and runs it with the given arguments. Without any,
# it does its main job on the bundled example profile: show every item, check the profile, and
# save its values with one changed (build/release/values.xml).
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target kolvane_cli >/dev/null
kolvane=./build/release/app/cli/kolvane
if (($# > 0)); then exec "$kolvane" "$@"; fi
"$kolvane" show --quiet
echo
"$kolvane" check || true
"$kolvane" save --quiet -o build/release/values.xml --set nciSetpoint=22.5
echo "values written to build/release/values.xml"
