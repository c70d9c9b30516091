#!/usr/bin/env bash
# examples.sh PLUVO SAMPLES PAGE...: goes through every example of --help and of the manual pages, each page on a copy of
# the samples. Each must find or do something.
set -euo pipefail
pluvo=$(realpath "$(command -v "$1")")
samples=$2
shift 2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export XDG_STATE_HOME=$folder/state PATH=$folder/bin:$PATH
mkdir "$folder/bin"
ln -s "$pluvo" "$folder/bin/pluvo"

# The lines of examples that begin with the program's name, without the formatter's signs.
examples() {
  if [[ $1 == --help ]]; then
    pluvo --help | sed -n 's/^  \(pluvo .*\)/\1/p'
    return
  fi
  sed -n '/^\.nf$/,/^\.fi$/{/^pluvo /{s/\\(aq/'\''/g; s/\\-/-/g; s/\\(ti/~/g; s/\\:\|\\&//g; p}}' "$1"
}

failed=0
count=0
for page in --help "$@"; do
  rm -rf "$folder/trial"
  cp -r "$samples" "$folder/trial"
  cd "$folder/trial"
  while IFS= read -r line; do
    count=$((count + 1))
    # The run that the manual names is somebody else's.
    if [[ $line =~ ^'pluvo undo '[0-9] ]]; then
      line="pluvo undo $(pluvo undo --list | sed -n 's/^\([0-9-]*\)  .*/\1/p' | tail -n 1)"
    fi
    status=0
    if [[ $line == *--confirm* ]]; then
      # Somebody at a terminal says yes to all.
      script -qec "$line" /dev/null <<<aaaa >"$folder/log" 2>&1 || status=$?
    else
      bash -c "$line" >"$folder/log" 2>&1 </dev/null || status=$?
    fi
    if ((status)); then
      failed=1
      printf '%s: status %s: %s\n' "${page##*/}" "$status" "$line"
      tail -n 5 "$folder/log"
    fi
  done < <(examples "$page")
done
((count >= 15)) || { printf 'only %s examples were found\n' "$count" && exit 1; }
((failed == 0)) || exit 1
printf '%s examples work.\n' "$count"
