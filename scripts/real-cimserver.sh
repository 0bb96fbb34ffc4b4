# Starting and stopping the real OpenPegasus cimserver with a private home,
# and vexa-cimserver beside it. Sourced by tests/openpegasus/real_cimserver_e2e.sh
# and bench/side_by_side.sh; defines functions only.
#
# OpenPegasus compiles in one start lock and one local socket per machine
# (/var/tmp/cimserver_start.*, /var/tmp/cimxml.socket), so one such server
# runs at a time whatever its home.

# A TCP port on 127.0.0.1 that nothing listens on.
free_port() {
  local port
  for _ in $(seq 50); do
    port=$((20000 + RANDOM % 20000))
    if ! (: </dev/tcp/127.0.0.1/$port) 2>/dev/null; then
      echo "$port"
      return
    fi
  done
  echo "no free port found" >&2
  exit 1
}

# Process ids of the provider agents that serve our module.
agents() { pgrep -f "cimprovagt .*VexaProviderModule" | sort -n | tr '\n' ' '; }

# Fails, saying so, when a cimserver already runs on this machine.
no_other_cimserver() {
  local home=$1
  if PEGASUS_HOME=$home cimserver --status >/dev/null 2>&1 || pgrep -x cimserver >/dev/null; then
    echo "another cimserver is running on this machine (pid $(pgrep -x cimserver | tr '\n' ' '));" \
      "stop it with 'cimserver -s' first" >&2
    return 1
  fi
}

# make_pegasus_home PEGASUS_ROOT HOME PROVIDER_LIB_DIR: a fresh home with a
# copy of the repository and links to the programs, the libraries and
# libVexaProvider.so (which finds libqzantras through its own run path).
make_pegasus_home() {
  local pegasus=$1 home=$2 provider_lib=$3 lib
  rm -rf "$home"
  mkdir -p "$home/lib"
  cp -a "$pegasus/home/repository" "$home/repository"
  ln -s "$pegasus/bin" "$home/bin"
  for lib in "$pegasus"/lib/*; do ln -s "$lib" "$home/lib/"; done
  ln -s "$provider_lib/libVexaProvider.so" "$home/lib/"
}

# start_pegasus HOME PORT OUTPUT_FILE: cimserver on HTTP at PORT, without
# authentication; it detaches itself once it serves. Sets pegasus_started
# (cleared by whoever stops it) and pegasus_ran (kept).
pegasus_started=""
pegasus_ran=""
start_pegasus() {
  local home=$1 port=$2 output=$3
  if ! PEGASUS_HOME=$home cimserver enableHttpConnection=true httpPort="$port" \
    enableHttpsConnection=false enableAuthentication=false shutdownTimeout=15 >"$output" 2>&1; then
    echo "cimserver did not start:" >&2
    cat "$output" >&2
    return 1
  fi
  pegasus_started=$home
  pegasus_ran=yes
}

# Stops the cimserver that start_pegasus started, and any agent of it that
# outlives it. Nothing is touched when this shell started no cimserver: the
# agents are ours only because no other cimserver ran when ours started.
stop_pegasus() {
  local pid
  [[ -n $pegasus_ran ]] || return 0
  if [[ -n $pegasus_started ]]; then
    PEGASUS_HOME=$pegasus_started cimserver -s >/dev/null 2>&1
    pegasus_started=""
  fi
  for pid in $(agents); do kill -9 "$pid" 2>/dev/null; done
}

# load_vexa_schema SOURCE_DIR: the schema into root/cimv2 and the
# registration into root/PG_InterOp of the running cimserver; prints what
# cimmof said and fails when it failed.
load_vexa_schema() {
  local source=$1
  cimmof -n root/cimv2 -I "$source/mof" "$source/mof/VexaProvider.mof" 2>&1 &&
    cimmof -n root/PG_InterOp -I "$source/mof" "$source/mof/VexaProviderRegistration.mof" 2>&1
}

# start_vexa BUILD_DIR MODEL WORK_DIR: vexa-cimserver on a port of its
# choosing; sets vexa_pid and vexa_port once it serves.
vexa_pid=""
vexa_port=""
start_vexa() {
  local build=$1 model=$2 work=$3
  "$build/bin/vexa-cimserver" --listen 127.0.0.1:0 --port-file "$work/vexa.port" \
    --cluster-model "$model" --log-file "$work/vexa-provider.log" \
    --event-socket "$work/vexa-events.sock" >"$work/vexa.out" 2>"$work/vexa.err" &
  vexa_pid=$!
  for _ in $(seq 300); do
    grep -q "Stop with Ctrl-C." "$work/vexa.out" 2>/dev/null && break
    sleep 0.1
  done
  vexa_port=$(cat "$work/vexa.port" 2>/dev/null)
  [[ -n $vexa_port ]]
}

stop_vexa() {
  [[ -n $vexa_pid ]] && kill "$vexa_pid" 2>/dev/null && wait "$vexa_pid" 2>/dev/null
  vexa_pid=""
}
