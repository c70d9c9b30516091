#!/usr/bin/env bash
# Run by packaging/debian.sh in an empty Debian 12, where /packages holds the packages: installs an earlier version,
# upgrades, works, removes and purges.
set -euo pipefail
export DEBIAN_FRONTEND=noninteractive

fail() {
  printf 'prove_in_root.sh: %s\n' "$*" >&2
  exit 1
}
step() { printf '== %s\n' "$*"; }
quietly() { "$@" >/tmp/log 2>&1 || {
  tail -n 40 /tmp/log >&2
  fail "failed: $*"
}; }
# All files but those that the package tools and the kernel keep for themselves.
listing() {
  find / -xdev \( -path /proc -o -path /sys -o -path /dev -o -path /tmp -o -path /packages -o -path /var/lib/dpkg -o \
    -path /var/lib/apt -o -path /var/cache -o -path /var/log -o -path /root \) -prune -o -print | sort
}

# Documentation is left out by no one here; a minimal root has no manual reader.
quietly apt-get -q update
quietly apt-get -qy install --no-install-recommends man-db bash-completion desktop-file-utils shared-mime-info
listing >/tmp/before

step 'the command line alone'
quietly apt-get -qy install --no-install-recommends /packages/old/pluvo.deb
pluvo --version
cp -r /packages/samples /tmp/trial
cd /tmp/trial
pluvo replace -b '[begin confidential]' -e '[end confidential]' --unit document -t '[withheld]' minutes.txt
grep -q withheld minutes.txt || fail 'minutes.txt has not changed'
pluvo undo
cmp minutes.txt /packages/samples/minutes.txt

step 'the desktop beside it'
quietly apt-get -qy install --no-install-recommends /packages/old/pluvo-desktop.deb

step 'upgraded, with a run to take back'
pluvo replace -b 'Harbour Estates' -t 'Harbour Holdings' --quiet lease.txt lease.docx
quietly apt-get -qy install --no-install-recommends /packages/new/*.deb
for package in pluvo pluvo-desktop; do
  [[ ! -e /usr/share/doc/$package/earlier ]] || fail "a file of the earlier $package is left"
  dpkg -s "$package" | grep -E '^(Package|Version|Status|Depends):'
done
dpkg -V pluvo pluvo-desktop || fail 'the installed files are not the packed ones'
pluvo undo
cmp lease.txt /packages/samples/lease.txt
cmp lease.docx /packages/samples/lease.docx

step 'every example of the manual, as it stands'
for page in pluvo.1 pluvo-desktop.1 pluvo-requests.5; do
  man -w "${page%.*}" >/dev/null
  man --warnings -E UTF-8 "${page%.*}" 2>/tmp/warnings >/tmp/page
  [[ -s /tmp/page && ! -s /tmp/warnings ]] || fail "$page: $(cat /tmp/warnings)"
  zcat "/usr/share/man/man${page##*.}/$page.gz" >"/tmp/$page"
done
bash /packages/examples.sh pluvo /usr/share/doc/pluvo/examples /tmp/pluvo.1 /tmp/pluvo-requests.5

step 'the desktop program, without a screen'
QT_QPA_PLATFORM=offscreen pluvo-desktop --version
status=0
QT_QPA_PLATFORM=offscreen timeout 5 pluvo-desktop minutes.txt lease.docx || status=$?
((status == 124)) || fail "pluvo-desktop ended with $status, and not when it was told to"
grep -q '^application/vnd.openxmlformats-officedocument.wordprocessingml.document=.*pluvo-desktop.desktop' \
  /usr/share/applications/mimeinfo.cache || fail 'the desktop does not know who opens .docx'

step 'completion'
bash -c 'source /usr/share/bash-completion/bash_completion; _completion_loader pluvo
  COMP_WORDS=(pluvo replace --dry); COMP_CWORD=2; COMP_LINE="pluvo replace --dry"; COMP_POINT=${#COMP_LINE}
  _pluvo; [[ ${COMPREPLY[*]} == --dry-run ]]' || fail 'bash does not complete --dry-run'

step 'removed, then purged'
quietly apt-get -qy remove pluvo pluvo-desktop
[[ ! -e /usr/bin/pluvo && ! -L /usr/bin/pluvo-desktop ]] || fail 'a program is left'
[[ -d ~/.local/state/pluvo ]] || fail "the user's own originals are gone"
quietly dpkg --purge pluvo pluvo-desktop
quietly apt-get -qy autoremove --purge
! dpkg -l 'pluvo*' 2>/dev/null | grep -E '^[a-z][a-z] ' || fail 'dpkg still knows a package'
listing >/tmp/after
diff /tmp/before /tmp/after | grep '^>' | grep -vE '/etc/ssl|/etc/fonts|/usr/share/fonts|/var/lib/(dbus|systemd)' |
  tee /tmp/left || true
! grep -qi pluvo /tmp/left || fail 'files are left'
echo 'Installed, upgraded, run, removed and purged in an empty Debian 12.'
