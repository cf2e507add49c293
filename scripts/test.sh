#!/usr/bin/env bash
# Builds and runs every test: the dev preset, then the asan preset (AddressSanitizer and
# UndefinedBehaviorSanitizer). Set KOLVANE_TEST_PRESETS to choose others, e.g. "dev".
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
for preset in ${KOLVANE_TEST_PRESETS:-dev asan}; do
  echo "== $preset"
  start=$(date +%s)
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  echo "== $preset: built in $(($(date +%s) - start)) s"
  ctest --preset "$preset" --parallel "$(nproc)"
done
