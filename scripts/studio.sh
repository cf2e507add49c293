#!/usr/bin/env bash
# Builds kolvane-studio (release preset) and opens it, by default on the bundled example:
# ./scripts/studio.sh [PROFILE] [--catalogue SNVTS.xml] [--nvo NVOTABLE.xml]. Needs a display.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target kolvane_studio >/dev/null
exec ./build/release/app/studio/kolvane-studio "$@"
