#!/usr/bin/env bash
# prove_windows.sh VERSION: what docs/word.md says of the installer, done to the letter under Wine, in a Windows of its
# own in build/wine-installer. Word is the stand-in of tests/add_in. Started by packaging/windows.sh on a screen.
# Pictures of it lie in build/installer-pictures.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/setup.sh
source scripts/windows.sh

version=$1
build mingw64 word_host -DPLUVO_TESTS=ON
root=$PWD
trap '[[ -z ${filming-} ]] || kill "$filming" 2>/dev/null || true' EXIT
export WINEPREFIX=$root/build/wine-installer
rm -rf "$WINEPREFIX" build/installer build/installer-pictures
mkdir -p build/installer build/installer-pictures
quietly build/wine.log make_wine
home=$WINEPREFIX/drive_c/users/$(id -un)
installed=$home/AppData/Local/PLUVO
data=$home/AppData/Roaming/Microsoft/Templates/PLUVO
setup=build/pluvo-$version-setup.exe
next=${version%.*}.$((${version##*.} + 1))
update=build/installer/pluvo-$next-setup.exe

told() { printf '%s\n' "$*"; }
holds() {
  local what=$1
  shift
  "$@" || fail "does not hold: $what"
  told "  $what"
}
# film NAME: a picture a second, until the next film.
film() {
  [[ -z ${filming-} ]] || kill "$filming" 2>/dev/null || true
  (for i in {01..30}; do
    import -window root "build/installer-pictures/$1-$i.png"
    sleep 1
  done) &
  filming=$!
}

# The registry's Software and the disk, as they are now.
state() {
  wineserver -w
  local part
  for part in user system; do
    sed -E '/^(\[[^]]*\]) [0-9]+$/ s//\1/; /^#|^;/d' "$WINEPREFIX/$part.reg" |
      awk -v RS= '/^\[Software/ && !/NetworkCards/ { print $0 "\n" }'
  done >"build/installer/$1.registry"
  (cd "$WINEPREFIX/drive_c" && find . -path './users/*/Temp/*' -prune -o -path ./windows/temp -prune -o -print | sort) \
    >"build/installer/$1.disk"
}
same() { cmp -s "build/installer/$1.registry" "build/installer/$2.registry" && cmp -s "build/installer/$1.disk" "build/installer/$2.disk"; }

# steps NAME STEP...: writes what a user is to do; user NAME has him do it, and did NAME is whether he could.
steps() { printf '%s\n' "${@:2}" >"build/installer/$1.steps"; }
user() { (cd build/installer && wine ../mingw64/bin/user.exe "$1.steps" "$1.outcome" 2>/dev/null); }
did() {
  for _ in {1..50}; do
    [[ ! -s build/installer/$1.outcome ]] || break
    sleep 0.2
  done
  grep -q '^done' "build/installer/$1.outcome" || fail "$(cat "build/installer/$1.outcome")"
}

# word STEPS: Word, and a user who does what the file says.
word() { (cd build/mingw64/bin && wine word_host.exe "Z:${root//\//\\}\\${1//\//\\}" 2>/dev/null) >build/installer/word.log; }
worked() { grep -q 'all as wanted' build/installer/word.log; }
uninstall() { wine "$installed/uninstall.exe" /S "_?=$(winepath -w "$installed")"; }
# The uninstaller by its own entry: it goes on in a copy of itself.
uninstall_whole() {
  wine "$installed/uninstall.exe" /S
  for _ in {1..100}; do
    [[ -e $installed ]] || return 0
    sleep 0.2
  done
  return 1
}
is_careful() { wine reg query 'HKCU\Software\PLUVO' /v Careful | grep -q 0x1; }
sees() { wine reg query "$1" "/reg:$2" >/dev/null 2>&1; }

# What Wine itself writes when a script is first run.
touch build/installer/empty.vbs
wine cscript //nologo build/installer/empty.vbs >/dev/null 2>&1
state before

told "Install"
steps install "window|PLUVO $version Setup" 'read|needs no administrator' 'wait|1500' 'press|Install' \
  'read|PLUVO is installed' 'wait|1500' 'press|Finish' "gone|PLUVO $version Setup"
wine "$setup" &
pid=$!
user install &
film install
holds "the installer ends with 0" wait "$pid"
holds "the user was led through it" did install
for width in 64 32; do
  holds "the class is registered in $width bits" sees 'HKCR\CLSID\{D6306AC3-8FBC-4F2F-AA1E-21C8A9CF6F82}\InprocServer32' "$width"
done
holds "Careful is set" is_careful
holds "the data folder is there" test -d "$data"
holds "the instructions are Rich Text" grep -q '^{\\rtf1' "$installed/Instructions.doc"

told "Use"
word tests/add_in/open_dialog.steps &
pid=$!
film dialog
wait "$pid" || true
holds "the button opens the dialog, and Word closes over it" worked
sed -n '/^```vb$/,/^```$/{/^```/!p}' README.md >build/installer/readme.vbs
word tests/add_in/word_idles.steps &
pid=$!
sleep 4
cp tests/add_in/script.steps build/installer/
user script &
wine cscript //nologo build/installer/readme.vbs
wait "$pid" || true
holds "the script of the README opens the dialog" did script

told "Update, with Word open"
makensis -V2 "-DVERSION=$next" "-DFILES=$root/build/windows" "-DOUTPUT=$root/$update" packaging/windows.nsi
word tests/add_in/word_waits.steps &
pid=$!
sleep 4
holds "the update ends with 0" wine "$update" /S
holds "the loaded DLL is put aside" test -e "$installed/pluvo64.dll.1.old"
status=0
uninstall || status=$?
holds "nothing is taken out while Word has it loaded" test "$status" = 3 -a -e "$installed/pluvo64.dll"
wait "$pid" || true
holds "the open Word keeps the old version" worked
word tests/add_in/confirmation.steps || true
holds "Word that is started then has the new one" worked
holds "a further update ends with 0" wine "$setup" /S
holds "and clears up" test ! -e "$installed/pluvo64.dll.1.old"

told "Take out"
echo options >"$data/PLUVO.cfg"
touch "$data/errors.txt"
holds "the uninstaller clears up" uninstall_whole
holds "options stay, logs go" test "$(ls "$data")" = PLUVO.cfg
rm -r "$data"
grep -q '/Microsoft/Templates$' build/installer/before.disk || rmdir "$(dirname "$data")"
state after
for part in registry disk; do
  diff "build/installer/before.$part" "build/installer/after.$part" || true
done
holds "registry and folders are as before" same before after
