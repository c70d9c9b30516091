#!/usr/bin/env bash
# scripts/prove_parallel.sh [COUNT]: proves slices under GNU parallel, as docs/scale.md has them: COUNT documents (20,000),
# eight slices by four workers, one of which is killed half-way. Takes some minutes, and half a GB in $TMPDIR (else /tmp).
# scripts/prove_parallel.sh figures [COUNT]: documents a second of one, two and four workers, and of their undo.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/setup.sh
source scripts/scale.sh

figures=
if [[ ${1:-} == figures ]]; then
  figures=1
  shift
fi
count=${1:-20000}
need "${RUN_PACKAGES[@]}" parallel unzip zip
build release pluvo
pluvo=$PWD/build/release/bin/pluvo
folder=$(mktemp -d "${TMPDIR:-/tmp}/pluvo-parallel-XXXXXX")
trap 'rm -rf --one-file-system "$folder"' EXIT
cd "$folder"
make_documents "$count"
mkdir journal

# work WORKERS: the command of docs/scale.md.
work() {
  seq 8 | parallel --will-cite --jobs "$1" --retries 3 --joblog slices.log \
    "$pluvo" insert --begin "'$BEGIN'" --text "'$TEXT'" --after --files-from documents.list --slice {}/8 \
    --run-name "$name" --journal-dir journal --jobs 1 --quiet
}

# rate SINCE: how many documents a second that is.
rate() {
  awk -v count="$count" -v since="$1" -v now="$(date +%s.%N)" 'BEGIN { printf "%.0f", count / (now - since) }'
}

if [[ $figures ]]; then
  for workers in 1 2 4; do
    name=figures-$workers
    rm -f slices.log
    since=$(date +%s.%N)
    work "$workers"
    worked=$(rate "$since")
    since=$(date +%s.%N)
    "$pluvo" undo "$name" --journal-dir journal --quiet
    printf '%s workers: %s documents a second, taken back at %s\n' "$workers" "$worked" "$(rate "$since")"
  done
  exit
fi

name=leases
kill_half_way 3-of-8 $((count / 8)) &
killing=$!
work 4
wait "$killing"
cut -f 1,7,8 slices.log | grep -v '^Seq' | sort -n | sed 's/^/Slice, exit status, signal: /'
require_two_each
require_report "$name" "$count" 3
require_undone "$name"
echo 'Slices under GNU parallel lose nothing and do nothing twice.'
