#!/usr/bin/env bash
# Builds and runs every test: the dev preset, then the asan preset (AddressSanitizer and
# UndefinedBehaviorSanitizer), then a short run of each fuzzer from its seeds when clang is
# there. Set KOLVANE_TEST_PRESETS to choose other presets, e.g. "dev", and KOLVANE_FUZZ_SECONDS
# for the fuzzers' time (0 skips them).
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
seconds=${KOLVANE_FUZZ_SECONDS:-3}
if [[ $seconds != 0 ]] && command -v clang++ >/dev/null; then
  echo "== fuzzers, ${seconds} s each"
  ./scripts/fuzz.sh "$seconds"
fi
