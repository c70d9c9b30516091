# Sourced by scripts/prove_parallel.sh and scripts/prove_slurm.sh: documents to work on, and what must hold of them.
# shellcheck shell=bash

# Each document has two places where TEXT goes in.
BEGIN='the Lessee'
TEXT=' [see schedule]'

# make_documents COUNT: COUNT documents in "documents", most of them plain text, a tenth Word documents; their names in
# "documents.list", and what they are in "before".
make_documents() {
  local count=$1 i
  printf 'Making %s documents ...\n' "$count"
  mkdir documents
  for ((i = 0; i * 500 < count; ++i)); do mkdir "documents/$i"; done
  awk -v count="$count" 'BEGIN {
    for (i = 0; i < count; ++i) {
      if (i % 10 == 9) continue
      file = "documents/" int(i / 500) "/lease " i ".txt"
      print "Lease " i ".\n\nThe rent is due from the Lessee each quarter.\nNo. " i " binds the Lessee alone." >file
      close(file)
    }
  }'
  make_word_document >model.docx
  for ((i = 9; i < count; i += 10)); do
    cp model.docx "documents/$((i / 500))/lease $i.docx"
  done
  find documents -type f >documents.list
  (($(wc -l <documents.list) == count)) || fail 'not all documents were made'
  state >before
}

make_word_document() {
  mkdir -p model/_rels model/word
  cat >'model/[Content_Types].xml' <<'XML'
<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types"><Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/><Override PartName="/word/document.xml" ContentType="application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"/></Types>
XML
  cat >model/_rels/.rels <<'XML'
<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="word/document.xml"/></Relationships>
XML
  cat >model/word/document.xml <<'XML'
<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<w:document xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main"><w:body><w:p><w:r><w:t>The rent is due from the Lessee each quarter.</w:t></w:r></w:p><w:p><w:r><w:t>It binds the Lessee alone.</w:t></w:r></w:p></w:body></w:document>
XML
  (cd model && zip -qX - '[Content_Types].xml' _rels/.rels word/document.xml)
}

# Bytes, permissions and time of last change of every document.
state() {
  find documents -type f -print0 | sort -z | xargs -0 sha256sum
  find documents -type f -printf '%p %m %T@\n' | sort
}

# Counts inserted texts in each document, without PLUVO: every one must have two, and each after its block.
require_two_each() {
  local texts bad=0 file
  texts=$(find documents -name '*.txt' -print0 | xargs -0 grep -oF "$BEGIN$TEXT" | wc -l)
  find documents -name '*.txt' -print0 | xargs -0 grep -cF "$BEGIN$TEXT" | grep -v ':2$' && bad=1
  find documents -name '*.txt' -print0 | xargs -0 grep -cF "$TEXT$TEXT" | grep -v ':0$' && bad=1
  while IFS= read -r -d '' file; do
    (($(unzip -p "$file" word/document.xml | grep -oF "$TEXT" | wc -l) == 2)) || { echo "$file"; bad=1; }
    texts=$((texts + 2))
  done < <(find documents -name '*.docx' -print0)
  ((!bad)) || fail 'these documents have not two inserted texts each'
  (($(find documents -type f | wc -l) * 2 == texts)) || fail "$texts texts were inserted"
  [[ -z $(find documents -name '*pluvo-*') ]] || fail 'something was left beside documents'
  printf 'Every document has its two texts, %s in all.\n' "$texts"
}

# require_report NAME COUNT SLICE: the merged report has every document once and every count, and tells that SLICE was
# begun twice.
require_report() {
  local name=$1 count=$2 slice=$3 kind
  "$pluvo" report "$name" --journal-dir journal --files-from documents.list --json >merged
  grep -q "^{\"summary\":{\"files\":$count,\"found\":$((2 * count)),\"operated\":$((2 * count)),\"skipped\":0,\"changed\":$count,\"failed\":0,\"left_out\":0," merged ||
    fail "the merged report tells of something else: $(tail -n 1 merged)"
  diff <(sed -n 's/^{"file":"\([^"]*\)".*"saved":true.*/\1/p' merged | sort) <(sort documents.list) >/dev/null ||
    fail 'the merged report has not every document once'
  grep -q "\"number\":$slice,.*\"stage\":\"ended\",.*\"attempts\":2," merged || fail "slice $slice was not begun twice"
  for kind in html csv json; do
    "$pluvo" report "$name" --journal-dir journal --report "merged.$kind" --quiet
  done
  (($(grep -c '^"document",' merged.csv) == count)) || fail 'the table has not every document'
  "$pluvo" report "$name" --journal-dir journal
}

# require_undone NAME: an undo of NAME puts every byte back, and there is nothing left to undo.
require_undone() {
  "$pluvo" undo "$1" --journal-dir journal --quiet
  state | cmp - before || fail 'the undo did not put everything back'
  ! "$pluvo" undo "$1" --journal-dir journal 2>/dev/null || fail 'it could be undone twice'
  echo 'The undo put back every byte, permission and time.'
}

# done_in SLICE: how many documents its journal has results of.
done_in() {
  cat "journal/pluvo/named/$name/$1/journal" 2>/dev/null | grep -c '^result ' || true
}

# kill_half_way SLICE COUNT: kills the program that works on the slice, as soon as it has done half of COUNT.
kill_half_way() {
  local before
  until (($(done_in "$1") * 2 >= $2)); do sleep 0.02; done
  kill -KILL "$(awk 'END { print $2 }' "journal/pluvo/named/$name/$1/lock")"
  before=$(done_in "$1")
  printf 'Killed slice %s when it had done %s of about %s documents.\n' "$1" "$before" "$2"
}
