#!/usr/bin/env bash
# Builds the fuzz preset and runs every libFuzzer target briefly over its
# seed corpus in fuzz/corpus/<name>/ (which it never changes): a crash, a
# sanitizer report or a hang fails the run, and the input that did it is
# left in build/fuzz/crashes/. FUZZ_SECONDS sets each target's time
# (default 10).
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${FUZZ_SECONDS:-10}
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
mkdir -p build/fuzz/crashes
status=0
for corpus in fuzz/corpus/*/; do
  name=$(basename "$corpus")
  scratch=$(mktemp -d)
  at=$SECONDS
  if build/fuzz/bin/"${name}"_fuzzer -max_total_time="$seconds" -timeout=10 \
      -rss_limit_mb=4096 -print_final_stats=0 -artifact_prefix=build/fuzz/crashes/"$name"- \
      "$scratch" "$corpus" >build/fuzz/"$name".log 2>&1; then
    echo "fuzz: $name ok ($((SECONDS - at)) s, $(grep -o '#[0-9]*[[:space:]]*DONE' build/fuzz/"$name".log | tr -dc 0-9) runs)"
  else
    echo "fuzz: $name FAILED; the last lines of build/fuzz/$name.log:"
    tail -n 40 build/fuzz/"$name".log
    status=1
  fi
  rm -rf "$scratch"
done
exit $status
