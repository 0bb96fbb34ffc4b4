#!/usr/bin/env bash
# vexa-cimserver and the real OpenPegasus cimserver serving the same provider
# and the same generated cluster model, side by side: the same CIM-XML
# requests posted to each with curl, several runs each. Builds nothing.
#
#   bench/side_by_side.sh --vexa-build DIR [--pegasus-build DIR] [--pegasus-root DIR]
#                         [--size small|medium|large] [--runs N] [--models DIR] [--work DIR]
#
# --vexa-build     a release build of this project (bin/vexa-cimserver, bin/qzsim_generate)
# --pegasus-build  a build of the provider against the real OpenPegasus (lib/libVexaProvider.so);
#                  without it only vexa-cimserver is measured
# --pegasus-root   the OpenPegasus that scripts/build-openpegasus.sh built
#                  [~/.cache/vexa/openpegasus-2.14.4]
# --size           the generated model [medium]; --runs timed runs per request [5]
# --models         where generated models are kept and reused [$TMPDIR/vexa-bench-models]
# --work           scratch folder for homes, logs and responses [a new one under $TMPDIR]
set -uo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source_dir=$(cd "$here/.." && pwd)
source "$source_dir/scripts/real-cimserver.sh"

vexa_build=""
pegasus_build=""
pegasus_root=$HOME/.cache/vexa/openpegasus-2.14.4
size=medium
runs=5
models=${TMPDIR:-/tmp}/vexa-bench-models
work=""
while [[ $# -gt 0 ]]; do
  case $1 in
  --vexa-build) vexa_build=$2 ;;
  --pegasus-build) pegasus_build=$2 ;;
  --pegasus-root) pegasus_root=$2 ;;
  --size) size=$2 ;;
  --runs) runs=$2 ;;
  --models) models=$2 ;;
  --work) work=$2 ;;
  *)
    sed -n '2,17p' "$0" | sed 's/^# \{0,1\}//' >&2
    exit 2
    ;;
  esac
  shift 2
done
if [[ -z $vexa_build || ! -x $vexa_build/bin/vexa-cimserver ]]; then
  echo "side_by_side: --vexa-build must name a build with bin/vexa-cimserver" >&2
  exit 2
fi
vexa_build=$(cd "$vexa_build" && pwd)
if [[ -n $pegasus_build ]]; then
  if [[ ! -e $pegasus_build/lib/libVexaProvider.so || ! -x $pegasus_root/bin/cimserver ]]; then
    echo "side_by_side: no lib/libVexaProvider.so in $pegasus_build or no cimserver in" \
      "$pegasus_root/bin" >&2
    exit 2
  fi
  pegasus_build=$(cd "$pegasus_build" && pwd)
  export PATH=$pegasus_root/bin:$PATH
fi
command -v curl >/dev/null || {
  echo "side_by_side: curl is needed" >&2
  exit 2
}
[[ -n $work ]] || work=$(mktemp -d "${TMPDIR:-/tmp}/vexa-side-by-side.XXXXXX")
mkdir -p "$work" "$models"
work=$(cd "$work" && pwd)
home=$work/pegasus-home

trap 'stop_vexa; stop_pegasus' EXIT
trap 'exit 130' INT TERM
if [[ -n $pegasus_build ]]; then
  no_other_cimserver "$home" || exit 1
fi

model=$models/$size.json
if [[ ! -e $model ]]; then
  "$vexa_build/bin/qzsim_generate" --size "$size" -o "$model" || exit 1
fi
export QZSIM_CLUSTER_MODEL=$model
export QZSIM_LOG_FILE=$work/provider.log
export QZSIM_EVENT_SOCKET=$work/events.sock

echo "side_by_side: starting vexa-cimserver on $model" >&2
start_vexa "$vexa_build" "$model" "$work" || {
  echo "side_by_side: vexa-cimserver did not start:" >&2
  cat "$work/vexa.err" >&2
  exit 1
}
urls=("http://127.0.0.1:$vexa_port/cimom")
names=(vexa)
if [[ -n $pegasus_build ]]; then
  echo "side_by_side: starting cimserver with a private home in $home" >&2
  make_pegasus_home "$pegasus_root" "$home" "$pegasus_build/lib"
  pegasus_port=$(free_port)
  export PEGASUS_HOME=$home
  start_pegasus "$home" "$pegasus_port" "$work/cimserver.out" || exit 1
  load_vexa_schema "$source_dir" >"$work/cimmof.out" || {
    echo "side_by_side: cimmof failed:" >&2
    cat "$work/cimmof.out" >&2
    exit 1
  }
  urls+=("http://127.0.0.1:$pegasus_port/cimom")
  names+=(pegasus)
fi

# The same request for both servers: every property, no qualifiers.
request() {
  local method=$1 class=$2 params=""
  if [[ $method == EnumerateInstances ]]; then
    params='<IPARAMVALUE NAME="LocalOnly"><VALUE>FALSE</VALUE></IPARAMVALUE>'
    params+='<IPARAMVALUE NAME="DeepInheritance"><VALUE>TRUE</VALUE></IPARAMVALUE>'
    params+='<IPARAMVALUE NAME="IncludeQualifiers"><VALUE>FALSE</VALUE></IPARAMVALUE>'
    params+='<IPARAMVALUE NAME="IncludeClassOrigin"><VALUE>FALSE</VALUE></IPARAMVALUE>'
  fi
  cat <<EOF
<?xml version="1.0" encoding="utf-8"?>
<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="$method"><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="cimv2"/></LOCALNAMESPACEPATH><IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="$class"/></IPARAMVALUE>$params</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>
EOF
}

# post URL METHOD BODY_FILE OUTPUT: prints "seconds bytes"; the answer goes
# to OUTPUT (/dev/null for the timed runs, so the client costs little).
post() {
  curl -s --max-time 3600 -o "$4" -w '%{time_total} %{size_download}\n' \
    -H 'Content-Type: application/xml; charset="utf-8"' -H 'CIMOperation: MethodCall' \
    -H "CIMMethod: $2" -H 'CIMObject: root%2Fcimv2' --data-binary "@$3" "$1"
}

# Instances per class in an answer, one "count class" line each.
class_counts() {
  local method=$1 file=$2
  if [[ $method == EnumerateInstances ]]; then
    grep -o '<INSTANCE CLASSNAME="[^"]*"' "$file"
  else
    # Names inside reference key bindings are not instances of their own.
    grep -o '<INSTANCENAME CLASSNAME="[^"]*"\|<VALUE.REFERENCE>' "$file" |
      awk '/VALUE.REFERENCE/ {skip++; next} skip > 0 {skip--; next} {print}'
  fi | sed 's/.*CLASSNAME="//; s/"$//' | sort | uniq -c
}

# The classes the provider serves; OpenPegasus adds instances of its own
# classes to CIM_ManagedElement, which are left out of the comparison.
served=$(awk '/ClassName = /{c=$3; gsub(/[";]/,"",c); print c}' \
  "$source_dir/mof/VexaProviderRegistration.mof" | sort -u)
served_count() {
  awk -v served="$served" 'BEGIN {n = split(served, s, "\n"); for (i = 1; i <= n; i++) ok[s[i]] = 1}
    ok[$2] {sum += $1} END {print sum + 0}' "$1"
}

# Warm-up: the first request makes the provider's forced full pass.
for i in "${!urls[@]}"; do
  echo "side_by_side: warming ${names[$i]} (the first request makes the full pass)" >&2
  request EnumerateInstanceNames KOR_VEXA_Cluster >"$work/warm.xml"
  warm=$(post "${urls[$i]}" EnumerateInstanceNames "$work/warm.xml" /dev/null)
  echo "side_by_side: ${names[$i]} answered its first request in ${warm% *} s" >&2
done

median_min_max() { sort -g | awk '{v[NR] = $1} END {printf "%s %s %s", v[int((NR + 1) / 2)], v[1], v[NR]}'; }

rows=""
problems=""
for method in EnumerateInstances EnumerateInstanceNames; do
  for class in KOR_VEXA_Node KOR_VEXA_NSD KOR_VEXA_Fileset CIM_ManagedElement; do
    request "$method" "$class" >"$work/request.xml"
    row="| $method | $class"
    declare -A median=() bytes=() count=() ours=()
    for i in "${!urls[@]}"; do
      name=${names[$i]}
      counted=$work/answer-$name.xml
      first=$(post "${urls[$i]}" "$method" "$work/request.xml" "$counted")
      counts=$work/counts-$method-$class-$name.txt
      class_counts "$method" "$counted" >"$counts"
      count[$name]=$(awk '{s += $1} END {print s + 0}' "$counts")
      ours[$name]=$(served_count "$counts")
      bytes[$name]=${first#* }
      times=""
      for _ in $(seq "$runs"); do
        t=$(post "${urls[$i]}" "$method" "$work/request.xml" /dev/null)
        times+="${t% *}"$'\n'
      done
      read -r med min max < <(printf '%s' "$times" | median_min_max)
      median[$name]=$med
      row+=$(awk -v n="${count[$name]}" -v b="${bytes[$name]}" -v med="$med" -v min="$min" \
        -v max="$max" 'BEGIN {printf " | %d | %.2f | %.3f (%.3f-%.3f) | %.0f | %.1f", n,
          b / 1e6, med, min, max, n / med, b / 1e6 / med}')
    done
    if [[ -n $pegasus_build ]]; then
      row+=$(awk -v v="${median[vexa]}" -v p="${median[pegasus]}" 'BEGIN {printf " | %.2f", p / v}')
      if [[ ${ours[vexa]} != "${ours[pegasus]}" ]]; then
        problems+="$method $class: vexa-cimserver answered ${ours[vexa]} instances of the"
        problems+=" provider's classes, cimserver ${ours[pegasus]}; per class (vexa, cimserver):"$'\n'
        problems+=$(join -1 2 -2 2 -a 1 -a 2 -e 0 -o 0,1.1,2.1 \
          <(sort -k2 "$work/counts-$method-$class-vexa.txt") \
          <(sort -k2 "$work/counts-$method-$class-pegasus.txt") |
          awk -v served="$served" 'BEGIN {n = split(served, s, "\n"); for (i = 1; i <= n; i++) ok[s[i]] = 1}
            ok[$1] && $2 != $3 {printf "  %s %s %s\n", $1, $2, $3}')$'\n'
      fi
      if awk -v a="${bytes[vexa]}" -v b="${bytes[pegasus]}" 'BEGIN {exit !(a > 3 * b || b > 3 * a)}'; then
        problems+="$method $class: answer sizes differ by more than three times"
        problems+=" (${bytes[vexa]} against ${bytes[pegasus]} bytes)"$'\n'
      fi
    fi
    rows+="$row |"$'\n'
  done
done

hwm() { awk '/^VmHWM:/ {print $2}' "/proc/$1/status" 2>/dev/null || echo 0; }
echo
echo "Side by side on the $size model ($model), $runs timed runs per request after one counted run"
echo
if [[ -n $pegasus_build ]]; then
  echo "| Operation | Class | vexa instances | vexa MB | vexa median s (min-max) | vexa inst/s | vexa MB/s" \
    "| OpenPegasus instances | OpenPegasus MB | OpenPegasus median s (min-max) | OpenPegasus inst/s" \
    "| OpenPegasus MB/s | speed ratio vexa/OpenPegasus |"
  echo "|---|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|"
else
  echo "| Operation | Class | vexa instances | vexa MB | vexa median s (min-max) | vexa inst/s | vexa MB/s |"
  echo "|---|---|---:|---:|---:|---:|---:|"
fi
printf '%s' "$rows"
echo
vexa_kb=$(hwm "$vexa_pid")
echo "Peak memory (VmHWM): vexa-cimserver $((vexa_kb / 1024)) MB"
if [[ -n $pegasus_build ]]; then
  server_kb=0
  for pid in $(pgrep -x cimserver); do server_kb=$((server_kb + $(hwm "$pid"))); done
  agent_kb=0
  for pid in $(agents); do agent_kb=$((agent_kb + $(hwm "$pid"))); done
  echo "Peak memory (VmHWM): cimserver $((server_kb / 1024)) MB + cimprovagt $((agent_kb / 1024)) MB" \
    "= $(((server_kb + agent_kb) / 1024)) MB; vexa-cimserver uses" \
    "$(awk -v v="$vexa_kb" -v p="$((server_kb + agent_kb))" 'BEGIN {printf "%.2f", v / p}') of it"
  echo "(OpenPegasus's CIM_ManagedElement answers also hold instances of its own classes.)"
fi
if [[ -n $problems ]]; then
  echo
  echo "WRONG ANSWERS (a wrong answer is not a fast answer):"
  printf '%s' "$problems"
  exit 1
fi
