#!/usr/bin/env bash
# Builds the fuzzers with clang under AddressSanitizer and UndefinedBehaviorSanitizer and runs
# each for SECONDS (default 60) from its seed corpus (fuzz/corpus/<name>); new inputs go to a
# scratch folder. Exit status 1 when a fuzzer finds a crash, a leak or a hang; the input that
# caused it is left in build/fuzz/findings.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
if ! command -v clang++ >/dev/null; then
  echo "fuzz: clang++ is needed" >&2
  exit 1
fi
CXX=clang++ cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DKOLVANE_BUILD_FUZZ=ON -DKOLVANE_BUILD_TESTS=OFF -DKOLVANE_BUILD_CLI=OFF \
  -DKOLVANE_BUILD_STUDIO=OFF -DKOLVANE_INSTALL=OFF \
  "-DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all" \
  >/dev/null
cmake --build build/fuzz
mkdir -p build/fuzz/findings
# Seeds kept elsewhere in the tree: the real device interface files of the tests.
declare -A extra_seeds=([xif]="tests/data/xif tests/data/devices")
status=0
passed=0
failed=0
for fuzzer in catalogue profile catalogue_profile value reentry xif; do
  scratch=$(mktemp -d)
  echo "== ${fuzzer}_fuzz: ${seconds} s"
  if ! ./build/fuzz/fuzz/${fuzzer}_fuzz -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 \
      -print_final_stats=1 -artifact_prefix=build/fuzz/findings/${fuzzer}- \
      "$scratch" "fuzz/corpus/$fuzzer" ${extra_seeds[$fuzzer]:-} 2>build/fuzz/${fuzzer}.log; then
    echo "fuzz: ${fuzzer}_fuzz failed; see build/fuzz/${fuzzer}.log" >&2
    tail -n 40 build/fuzz/${fuzzer}.log >&2
    status=1
    failed=$((failed + 1))
  else
    passed=$((passed + 1))
  fi
  grep -E "^stat::(number_of_executed_units|new_units_added)|cov: " build/fuzz/${fuzzer}.log |
    tail -n 3 || true
  rm -rf "$scratch"
done
echo "fuzzers: ${passed} passed, ${failed} failed"
exit $status
