#!/usr/bin/env bash
# scripts/prove_setup.sh [STAGE...]: proves ./run, and ./test with these stages, on a clone of the commit in an empty
# Debian 12. Root runs it, outside CI; it takes as long as they do, and 8 GB in $TMPDIR (else /tmp). CCACHE_DIR, where
# it is set, is used there too.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/setup.sh
source scripts/empty_root.sh

((EUID == 0)) || fail 'root runs this, since it makes a root of its own'
need debootstrap git util-linux
folder=$(mktemp -d "${TMPDIR:-/tmp}/pluvo-empty-XXXXXX")
trap 'rm -rf --one-file-system "$folder"' EXIT
root=$folder/root
printf 'An empty Debian 12 in %s ...\n' "$root"
make_root "$root"
git clone -q . "$root/pluvo"
cache=()
if [[ -n ${CCACHE_DIR:-} ]]; then
  export ROOT_BINDS=$CCACHE_DIR:/ccache
  cache=(env CCACHE_DIR=/ccache)
fi
printf '== ./run\n'
in_root "$root" "${cache[@]}" /pluvo/run
printf '== ./run --version\n'
in_root "$root" "${cache[@]}" /pluvo/run --version
printf '== ./test %s\n' "$*"
in_root "$root" "${cache[@]}" /pluvo/test "$@"
echo './run and ./test work in an empty Debian 12.'
