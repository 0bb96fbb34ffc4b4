#!/usr/bin/env bash
# Builds OpenPegasus 2.14.4 from the source archive kept beside the project
# into a cache folder outside the checkout, and reuses a complete earlier
# build instead of building again (the build takes 20 to 30 minutes on two
# cores).
#
#   scripts/build-openpegasus.sh            build, or reuse the cache
#   scripts/build-openpegasus.sh --print    print the cache folder and stop
#   scripts/build-openpegasus.sh --available  succeed when the source archive
#                                             or a complete build is there
#
# Environment:
#   VEXA_PEGASUS_CACHE    cache folder (default: ${XDG_CACHE_HOME:-~/.cache}/vexa/openpegasus-2.14.4)
#   VEXA_PEGASUS_ARCHIVE  source archive (default: shared/openpegasus/openpegasus-2.14.4.tar.gz
#                         beside the checkout or one level up, or under /work);
#                         its .sha256 file must sit next to it
#
# The cache then holds, besides the build itself, the layout the project's
# CMake option -DVEXA_PEGASUS_ROOT expects: include/Pegasus/... and lib/, and
# bin/ with cimserver, cimprovagt, cimmof, cimcli and cimprovider, and
# repository/ (the CIM schema, ready to be copied for a private server).
# Progress goes to <cache>/build.log; a failure names the step and the log.
set -euo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
version=2.14.4
cache=${VEXA_PEGASUS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/vexa/openpegasus-$version}
# The archive is kept beside the checkout; a checkout one level deeper, or the
# workplace's shared folder, finds it too.
archive=${VEXA_PEGASUS_ARCHIVE:-}
if [[ -z $archive ]]; then
  for folder in "$here/../shared/openpegasus" "$here/../../shared/openpegasus" /work/shared/openpegasus; do
    if [[ -f $folder/openpegasus-$version.tar.gz ]]; then
      archive=$folder/openpegasus-$version.tar.gz
      break
    fi
  done
  archive=${archive:-$here/../shared/openpegasus/openpegasus-$version.tar.gz}
fi

case ${1:-} in
  --print)
    echo "$cache"
    exit 0
    ;;
  --available)
    # Succeeds when a build can be made or reused.
    [[ -f $cache/.complete || -f $archive ]]
    exit
    ;;
esac

log=$cache/build.log
stamp=$cache/.complete

fail() {
  echo "build-openpegasus: $1 failed; see $log" >&2
  tail -n 20 "$log" >&2 || true
  exit 1
}

step() {
  local name=$1
  shift
  echo "build-openpegasus: $name ($(date +%H:%M:%S))"
  echo "=== $name" >>"$log"
  "$@" >>"$log" 2>&1 || fail "$name"
}

if [[ ! -f $archive ]]; then
  echo "build-openpegasus: source archive $archive not found;" \
    "set VEXA_PEGASUS_ARCHIVE to the openpegasus-$version.tar.gz file" >&2
  exit 1
fi
expected=$(cut -d' ' -f1 "$archive.sha256")

if [[ -f $stamp && $(cat "$stamp") == "$expected" && -x $cache/bin/cimserver ]]; then
  echo "build-openpegasus: reusing the build in $cache"
  exit 0
fi

# The packages OpenPegasus's own make files call for, beyond the project's.
bash "$here/scripts/setup.sh"

mkdir -p "$cache"
: >"$log"
echo "build-openpegasus: building OpenPegasus $version in $cache (log: $log)"

step "checksum of $archive" bash -c "cd '$(dirname "$archive")' && sha256sum -c '$(basename "$archive").sha256'"

rm -rf "$cache/src" "$cache/home" "$cache/include" "$cache/lib" "$cache/bin" "$cache/repository" "$stamp"
mkdir -p "$cache/src" "$cache/home"
step "unpacking" tar -xzf "$archive" -C "$cache/src" --strip-components=1

export PEGASUS_ROOT=$cache/src/pegasus
export PEGASUS_HOME=$cache/home
export PEGASUS_PLATFORM=LINUX_X86_64_GNU
case $(uname -m) in
  aarch64) PEGASUS_PLATFORM=LINUX_AARCH64_GNU ;;
esac
# Tests of OpenPegasus itself are not needed; providers run without user
# context switching because the private servers run as whoever starts them.
export PEGASUS_SKIP_MOST_TEST_DIRS=true
export PEGASUS_DISABLE_PROV_USERCTXT=true
export PEGASUS_REPOSITORY_MODE=XML
export PATH=$PEGASUS_HOME/bin:$PATH
export LD_LIBRARY_PATH=$PEGASUS_HOME/lib${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}

jobs=${VEXA_PEGASUS_JOBS:-2}
step "make build" make -C "$PEGASUS_ROOT" -j"$jobs" build
step "make repository" make -C "$PEGASUS_ROOT" repository

ln -sfn src/pegasus/src "$cache/include"
ln -sfn home/lib "$cache/lib"
ln -sfn home/bin "$cache/bin"
ln -sfn home/repository "$cache/repository"
for tool in cimserver cimprovagt cimmof cimcli cimprovider; do
  [[ -x $cache/bin/$tool ]] || fail "looking for $tool in $cache/bin"
done
echo "$expected" >"$stamp"
echo "build-openpegasus: done ($(date +%H:%M:%S)); configure with -DVEXA_PEGASUS_ROOT=$cache"
