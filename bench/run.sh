#!/usr/bin/env bash
# Every benchmark of the three generated cluster sizes in one go: builds what they need,
# then prints the full-pass table and the side-by-side table.
#
#   bash bench/run.sh [--sizes small,medium,large] [--side-size SIZE] [--runs N]
#                     [--no-side-by-side] [--quick]
#
# --sizes      the sizes of the full-pass benchmark [small,medium,large]
# --side-size  the model of the side-by-side run [large]
# --runs       timed runs per side-by-side request [9]
# --quick      small and medium passes, the small model side by side, 3 runs
#              (about five minutes on a quiet machine)
# The side-by-side run includes the real OpenPegasus cimserver when
# scripts/build-openpegasus.sh has built it; the provider is then also built
# with the openpegasus preset.
set -euo pipefail

source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
sizes=small,medium,large
side_size=large
runs=9
side_by_side=yes
while [[ $# -gt 0 ]]; do
  case $1 in
  --sizes) sizes=$2 && shift ;;
  --side-size) side_size=$2 && shift ;;
  --runs) runs=$2 && shift ;;
  --no-side-by-side) side_by_side="" ;;
  --quick) sizes=small,medium side_size=small runs=3 ;;
  *)
    sed -n '2,15p' "$0" | sed 's/^# \{0,1\}//' >&2
    exit 2
    ;;
  esac
  shift
done

cd "$source_dir"
launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$(dirname "$source_dir")}
fi
echo "run.sh: building the release preset" >&2
cmake --preset release "${launcher[@]}" >/dev/null
cmake --build --preset release --target bench_full_pass qzsim_generate vexa-cimserver >&2

pegasus_args=()
pegasus_root=$(bash scripts/build-openpegasus.sh --print 2>/dev/null || true)
if [[ -n $side_by_side && -n $pegasus_root && -x $pegasus_root/bin/cimserver ]]; then
  echo "run.sh: building the provider against OpenPegasus (openpegasus preset)" >&2
  cmake --preset openpegasus "${launcher[@]}" >/dev/null
  cmake --build --preset openpegasus --target VexaProvider >&2
  pegasus_args=(--pegasus-build build/openpegasus --pegasus-root "$pegasus_root")
elif [[ -n $side_by_side ]]; then
  echo "run.sh: no OpenPegasus build (scripts/build-openpegasus.sh makes one);" \
    "vexa-cimserver is measured alone" >&2
fi

models=build/release/bench-models
echo "run.sh: $(date -u '+%Y-%m-%d %H:%M UTC'), $(nproc) cores, load $(cut -d' ' -f1-3 /proc/loadavg)," \
  "commit $(git rev-parse --short HEAD 2>/dev/null || echo unknown)"
build/release/bin/bench_full_pass --sizes "$sizes" --models "$models"
if [[ -n $side_by_side ]]; then
  bash bench/side_by_side.sh --vexa-build build/release "${pegasus_args[@]}" \
    --size "$side_size" --runs "$runs" --models "$models"
fi
