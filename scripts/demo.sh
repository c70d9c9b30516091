#!/usr/bin/env bash
# demo.sh PLUVO: the main job, on a copy of samples/ that is left for the reader to look at.
set -euo pipefail
cd "$(dirname "$0")/.."
pluvo=$1
copy=build/samples
rm -rf "$copy"
cp -r samples "$copy"
cd "$copy"
# What it changes here is not for the user's own "pluvo undo".
export XDG_STATE_HOME=$PWD/../demo-state

show() {
  printf '\n%s\n$ pluvo' "$1"
  shift
  local word
  for word in "$@"; do
    if [[ $word == *[!A-Za-z0-9._/-]* ]]; then printf " '%s'" "$word"; else printf ' %s' "$word"; fi
  done
  printf '\n'
  local status=0
  "$pluvo" "$@" 2>&1 || status=$?
  ((status < 2)) || exit "$status"
}

show 'Find what the Lessor must do:' \
  find -b 'the Lessor shall' -e '.' lease.txt
show 'See what a change would do, without doing it:' \
  replace -b 'DRAFT of' -e 'parties' -t 'AGREED FORM' --match-case --dry-run lease.txt
show 'Take the notes to file out of the lease, and keep the original:' \
  delete -b '[Note to file:' -e ']' --backup lease.txt
show 'Black out the confidential passages in the minutes, however long:' \
  replace -b '[begin confidential]' -e '[end confidential]' --unit document -t '[withheld]' minutes.txt
show 'Add a remark in a list that is stored in an old encoding:' \
  insert -b 'not to be shown before' -e '2045' --apart 2 --unit word -t ' (see rule 12)' --after inventory.txt
show 'In Word documents the same, over runs, links, notes and tracked changes; the other text keeps its bytes:' \
  highlight -b 'The Lessor' -e 'the Lessee' --match-case lease.docx
show 'Take the notes to file out of the Word lease, paragraphs and all:' \
  delete -b '[Note to file:' -e ']' --backup lease.docx
show 'From the text into nested tables:' \
  find -b 'Without prejudice' -e 'signature' settlement.docx
show 'The name of the grantor, in a document another program wrote:' \
  replace -b 'The Grantor' -t 'Eleni Marten' --match-case deed.docx

printf '\nWhat changed in the plain texts, by line:\n'
for file in lease.txt minutes.txt inventory.txt; do
  printf '%s\n' "$file"
  diff -U0 "../../samples/$file" "$file" | sed '1,2d; /^@@/d' |
    tr -d '\r' | iconv -c -f utf-8 -t utf-8 | sed -E 's/^(.{150}).+/\1 …/; s/^/  /' || true
done
printf '\nThe Word lease after both:\n'
"$pluvo" find -b 'The Lessor' -e 'the Lessee' lease.docx
printf '\nThe changed copies are in %s; the samples are as they were.\n' "$copy"
