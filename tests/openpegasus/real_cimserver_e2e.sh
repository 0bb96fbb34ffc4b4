#!/usr/bin/env bash
# The provider inside the real OpenPegasus cimserver, driven with cimcli and
# wbemcli, and compared with vexa-cimserver serving the same cluster model.
#
#   real_cimserver_e2e.sh PEGASUS_ROOT BUILD_DIR SOURCE_DIR
#
# PEGASUS_ROOT is an OpenPegasus built by scripts/build-openpegasus.sh,
# BUILD_DIR a build of this project against it. The server gets a home of its
# own under BUILD_DIR (repository, configuration, provider directory); only
# the start lock and local socket that OpenPegasus compiles in
# (/var/tmp/cimserver_start.*, /var/tmp/cimxml.socket) are shared, so one such
# server runs at a time. Both servers are stopped on every way out.
set -uo pipefail

pegasus=$(cd "$1" && pwd)
build=$(cd "$2" && pwd)
source=$(cd "$3" && pwd)
work=$build/tests/openpegasus/run
home=$work/home
model=$source/examples/clusters/demo.json
export PATH=$pegasus/bin:$PATH
source "$source/scripts/real-cimserver.sh"

failures=0
checks=0
pass() {
  checks=$((checks + 1))
  echo "ok   $1"
}
fail() {
  checks=$((checks + 1))
  failures=$((failures + 1))
  echo "FAIL $1"
  [[ -n ${2:-} ]] && sed 's/^/     /' <<<"$2" | head -n 40
}

# The given processes that have not ended within 10 s.
still_running() {
  local pid
  for pid in "$@"; do
    for _ in $(seq 100); do
      kill -0 "$pid" 2>/dev/null || break
      sleep 0.1
    done
    kill -0 "$pid" 2>/dev/null && echo -n "$pid "
  done
}

segfault_lines() {
  # The kernel log is not readable everywhere; then this check is skipped.
  dmesg 2>/dev/null | grep -c "cimprovagt.*segfault" || true
}

listener_pid=""
stop_all() {
  [[ -n $listener_pid ]] && kill "$listener_pid" 2>/dev/null
  stop_vexa
  stop_pegasus
}
trap stop_all EXIT

no_other_cimserver "$home" || exit 1

# --- a private OpenPegasus home ------------------------------------------------
rm -rf "$work"
make_pegasus_home "$pegasus" "$home" "$build/lib"

pegasus_port=$(free_port)
export PEGASUS_HOME=$home
export QZSIM_CLUSTER_MODEL=$model
export QZSIM_LOG_FILE=$work/provider.log
export QZSIM_EVENT_SOCKET=$work/events.sock
segfaults_before=$(segfault_lines)

start_pegasus "$home" "$pegasus_port" "$work/cimserver.out" || exit 1
pegasus_url=http://127.0.0.1:$pegasus_port/root/cimv2

out=$(cimmof -n root/cimv2 -I "$source/mof" "$source/mof/VexaProvider.mof" 2>&1) &&
  pass "cimmof loads the schema into root/cimv2" || fail "cimmof of the schema" "$out"
out=$(cimmof -n root/PG_InterOp -I "$source/mof" "$source/mof/VexaProviderRegistration.mof" 2>&1) &&
  pass "cimmof loads the registration into root/PG_InterOp" || fail "cimmof of the registration" "$out"
out=$(cimprovider -l -s 2>&1 | grep VexaProviderModule)
[[ $out == *OK* ]] && pass "the module is registered and enabled" || fail "module status" "$out"

# --- vexa-cimserver on the same model ------------------------------------------
start_vexa "$build" "$model" "$work"
vexa_url=http://127.0.0.1:$vexa_port/root/cimv2

# First of all, while no performance rebuild has run: cimserver asks the
# provider for every class under CIM_ManagedElement at once, in no set order.
count_disk_perfs() { wbemcli ei "$1:CIM_ManagedElement" 2>&1 | grep -c ':KOR_VEXA_DiskPerf\.'; }
ours=$(count_disk_perfs "$vexa_url")
theirs=$(count_disk_perfs "$pegasus_url")
[[ $ours -gt 0 && $ours == "$theirs" ]] &&
  pass "wbemcli ei CIM_ManagedElement on fresh servers: $theirs KOR_VEXA_DiskPerf as in vexa-cimserver" ||
  fail "KOR_VEXA_DiskPerf in ei CIM_ManagedElement: $theirs, vexa-cimserver $ours"

# Instances as text that does not depend on the server: the host:port prefix
# goes, lines are sorted, and values that change by themselves (sampling
# times, the time between samples and every counter of the performance
# classes) are blanked. Each rebuild of the counter lists takes a new sample,
# and OpenPegasus asks for the classes of CIM_ManagedElement at once on
# several threads, so the two servers may have sampled a different number of
# times.
normalise() {
  sed -E -e 's#^[^ ]*/root/cimv2:##' -e 's#^root/cimv2:##' \
    -e 's/(StatisticTime|SampleTime|vexa[A-Za-z]*(Bytes|Ops|Reads|Writes|Time|Rate)[A-Za-z]*)=[^,]*/\1=*/g' \
    -e 's/(duration|vexaFileSystem(Caches|[A-Za-z]*Calls|Inodes[A-Za-z]*|StatCache[A-Za-z]*))=[^,]*/\1=*/g' |
    sort
}

served_classes=$(awk '/ClassName = /{c=$3; gsub(/[";]/,"",c)} /ProviderType = \{ 2/{print c}' \
  "$source/mof/VexaProviderRegistration.mof")

# --- every served class, both servers, both clients -----------------------------
for class in $served_classes; do
  ours=$(wbemcli ei "$vexa_url:$class" 2>&1 | normalise)
  theirs=$(wbemcli ei "$pegasus_url:$class" 2>&1 | normalise)
  if [[ $ours == "$theirs" ]]; then
    pass "wbemcli ei $class: $(grep -c . <<<"$ours") instances as in vexa-cimserver"
  else
    fail "wbemcli ei $class differs from vexa-cimserver" "$(diff <(echo "$ours") <(echo "$theirs"))"
  fi
  ours=$(cimcli ni -n root/cimv2 "$class" -l "127.0.0.1:$(cat "$work/vexa.port")" 2>&1 | sort)
  theirs=$(cimcli ni -n root/cimv2 "$class" -l "127.0.0.1:$pegasus_port" 2>&1 | sort)
  [[ $ours == "$theirs" ]] && pass "cimcli ni $class as in vexa-cimserver" ||
    fail "cimcli ni $class differs" "$(diff <(echo "$ours") <(echo "$theirs"))"
done

# --- getInstance round trips ---------------------------------------------------
for class in KOR_VEXA_Cluster KOR_VEXA_Node KOR_VEXA_FileSystem KOR_VEXA_NSD KOR_VEXA_Fileset; do
  all=$(wbemcli ei "$pegasus_url:$class" 2>&1)
  bad=""
  while read -r name; do
    [[ -z $name ]] && continue
    got=$(wbemcli gi "http://$name" 2>&1)
    grep -qxF -- "$got" <<<"$all" || bad+="$name -> $got"$'\n'
  done < <(wbemcli ein "$pegasus_url:$class" 2>&1)
  [[ -z $bad ]] && pass "wbemcli gi of every $class equals its ei" || fail "gi of $class" "$bad"
done
out=$(cimcli gi -n root/cimv2 \
  'KOR_VEXA_Node.CreationClassName="KOR_VEXA_Node",Name="demo.qzcluster+node1"' \
  -l "127.0.0.1:$pegasus_port" 2>&1)
[[ $out == *'vexaNodeName = "node1"'* ]] && pass "cimcli gi of a node" || fail "cimcli gi of a node" "$out"

# --- association traversal -----------------------------------------------------
# From every element, all associations at once: cimserver finds the
# association classes in its repository and asks the provider for each.
for class in KOR_VEXA_Cluster KOR_VEXA_Node KOR_VEXA_FileSystem KOR_VEXA_StoragePool \
  KOR_VEXA_NSD KOR_VEXA_Fileset; do
  bad=""
  walked=0
  while read -r name; do
    [[ -z $name ]] && continue
    path=${name#*/root/cimv2:}
    ours=$(wbemcli ain "$vexa_url:$path" 2>&1 | normalise)
    theirs=$(wbemcli ain "$pegasus_url:$path" 2>&1 | normalise)
    walked=$((walked + $(grep -c . <<<"$ours")))
    [[ $ours == "$theirs" ]] || bad+="$path"$'\n'"$(diff <(echo "$ours") <(echo "$theirs"))"$'\n'
  done < <(wbemcli ein "$vexa_url:$class" 2>&1)
  [[ -z $bad ]] && pass "wbemcli ain from every $class: $walked far ends as in vexa-cimserver" ||
    fail "ain from $class differs" "$bad"
done
fileset=$(wbemcli ein "$vexa_url:KOR_VEXA_Fileset" 2>&1 | head -n 1)
fileset=${fileset#*/root/cimv2:}
ours=$(wbemcli ai -ac KOR_VEXA_AssociatedFilesetQuota "$vexa_url:$fileset" 2>&1 | normalise)
theirs=$(wbemcli ai -ac KOR_VEXA_AssociatedFilesetQuota "$pegasus_url:$fileset" 2>&1 | normalise)
[[ $ours == *KOR_VEXA_Fileset_Quota* && $ours == "$theirs" ]] &&
  pass "wbemcli ai from a fileset to its quota as in vexa-cimserver" ||
  fail "fileset quota differs" "$(diff <(echo "$ours") <(echo "$theirs"))"

# --- methods ------------------------------------------------------------------------
# The same calls in the same order on both servers; each server's simulated
# cluster changes alike, so the answers must be the same.
# OpenPegasus writes a line break inside a value as "&#10;", which wbemcli
# prints as it stands; vexa-cimserver writes it as it is (wbemcli decodes only
# the five named entities). Both are the same text.
call() {
  wbemcli cm "$1:KOR_VEXA_ClusterConfigurationService" "$2" 2>&1 | tr -d '\n' |
    sed -E -e 's#^[^ ]*/root/cimv2:##' -e 's/&#10;//g' -e 's/InstanceID=\\?"[0-9]+\\?"/InstanceID=*/'
}
fs1='vexaFileSystem=KOR_VEXA_FileSystem.Name="fs1"'
fileset='vexaFileset=KOR_VEXA_Fileset.FSName="fs1",Name="e2e"'
for method in "CreateFileset.vexaFilesetName=e2e,$fs1" \
  "CreateFileset.vexaFilesetName=e2e,$fs1" \
  "DeleteFileset.$fileset" \
  "DeleteFileset.$fileset" \
  "ModifyNode.pagepool=4G"; do
  ours=$(call "$vexa_url" "$method")
  theirs=$(call "$pegasus_url" "$method")
  if [[ -n $ours && $ours == "$theirs" ]]; then
    pass "wbemcli cm ${method%%.*} answers as in vexa-cimserver: ${ours#* }"
  else
    fail "wbemcli cm $method differs" "ours:   $ours"$'\n'"theirs: $theirs"
  fi
done
job=$(wbemcli cm "$pegasus_url:KOR_VEXA_ClusterConfigurationService" ModifyNode.pagepool=2G 2>&1 |
  sed -nE 's/.*Job \(reference\): *root\/cimv2:(KOR_VEXA_ConcreteJob[^ ]*).*/\1/p')
state=""
for _ in $(seq 50); do
  state=$(wbemcli gi "$pegasus_url:$job" 2>&1)
  [[ $state == *JobState=7* ]] && break
  sleep 0.1
done
[[ $state == *JobState=7* ]] && pass "a ModifyNode job read back through cimserver completes" ||
  fail "ModifyNode job" "job: $job"$'\n'"$state"

# --- indications through an OpenPegasus subscription ----------------------------
"$build/bin/vexa-tool" listen --port 0 >"$work/listener.out" 2>"$work/listener.err" &
listener_pid=$!
for _ in $(seq 100); do
  grep -q "^listening on" "$work/listener.out" 2>/dev/null && break
  sleep 0.1
done
listener=$(sed -n 's/^listening on //p' "$work/listener.out" | head -n 1)
interop=(-n root/PG_InterOp -l "127.0.0.1:$pegasus_port")
cimcli ci CIM_ListenerDestinationCIMXML Name=vexa-e2e-listener "Destination=$listener" \
  "${interop[@]}" >"$work/subscribe.out" 2>&1
cimcli ci CIM_IndicationFilter Name=vexa-e2e-filter \
  "Query=SELECT * FROM KOR_VEXA_MountIndication" QueryLanguage=WQL SourceNamespace=root/cimv2 \
  "${interop[@]}" >>"$work/subscribe.out" 2>&1
filter=$(cimcli ni CIM_IndicationFilter "${interop[@]}" 2>/dev/null | grep vexa-e2e-filter)
handler=$(cimcli ni CIM_ListenerDestinationCIMXML "${interop[@]}" 2>/dev/null | grep vexa-e2e-listener)
cimcli ci CIM_IndicationSubscription "Filter=$filter" "Handler=$handler" \
  "${interop[@]}" >>"$work/subscribe.out" 2>&1
out=$(cimcli ni CIM_IndicationSubscription "${interop[@]}" 2>&1)
[[ $out == *vexa-e2e-filter* ]] && pass "a subscription is made in root/PG_InterOp" ||
  fail "subscription" "$(cat "$work/subscribe.out")"$'\n'"$out"
"$build/bin/vexa-tool" event --socket "$QZSIM_EVENT_SOCKET" \
  '{"type": "mount", "node": "node1", "fs": "fs1"}' >"$work/event.out" 2>&1
for _ in $(seq 100); do
  grep -q KOR_VEXA_MountIndication "$work/listener.out" && break
  sleep 0.1
done
grep -q KOR_VEXA_MountIndication "$work/listener.out" &&
  pass "a mount event reaches vexa-tool listen through cimserver" ||
  fail "no indication reached the listener" "$(cat "$work/event.out" "$work/listener.out")"

# --- the module lifecycle: disable and enable while clients read ----------------
before=$(agents)
(for _ in $(seq 40); do wbemcli ein "$pegasus_url:KOR_VEXA_Node" >/dev/null 2>&1; done) &
reader=$!
out=$(cimprovider -d -m VexaProviderModule 2>&1) || fail "cimprovider -d" "$out"
sleep 1
out=$(cimprovider -e -m VexaProviderModule 2>&1) || fail "cimprovider -e" "$out"
wait "$reader"
lingering=$(still_running $before)
[[ -z $lingering ]] && pass "the disabled module's agent ($before) ended" ||
  fail "agent $lingering still runs after the module was disabled"
ours=$(wbemcli ei "$vexa_url:KOR_VEXA_Node" 2>&1 | normalise)
theirs=$(wbemcli ei "$pegasus_url:KOR_VEXA_Node" 2>&1 | normalise)
[[ $ours == "$theirs" && -n $ours ]] && pass "answers after re-enabling are correct" ||
  fail "answers after re-enabling" "$(diff <(echo "$ours") <(echo "$theirs"))"

# --- shutdown -------------------------------------------------------------------
running=$(agents)
started=$(date +%s)
out=$(cimserver -s 2>&1)
pegasus_started=""
[[ $out != *"Forced shutdown"* ]] && pass "cimserver -s shuts down in $(($(date +%s) - started)) s" ||
  fail "cimserver -s had to force the shutdown" "$out"
lingering=$(still_running $running)
[[ -z $lingering ]] && pass "no provider agent outlives the server" ||
  fail "agents $lingering outlive the server"
segfaults_after=$(segfault_lines)
[[ $segfaults_after == "$segfaults_before" ]] && pass "no provider agent crashed (kernel log)" ||
  fail "a provider agent crashed" "$(dmesg | grep "cimprovagt.*segfault" | tail -n 3)"

echo "$((checks - failures)) of $checks checks passed"
[[ $failures -eq 0 ]]
