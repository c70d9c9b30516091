#!/usr/bin/env bash
# Makes the pictures of the desktop program in docs/, as a user sees it on a screen of 1366 by 768:
#
#     cmake --preset release && cmake --build --preset release && scripts/pictures.sh [PROGRAM [FOLDER]]
#
# Needs xvfb, openbox, xdotool, imagemagick and libqt6svg6. A screen and settings of its own are made.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
program=$(realpath "${1:-build/release/bin/pluvo-desktop}")
folder=$(realpath "${2:-docs}")
for tool in Xvfb openbox xdotool import; do
  command -v "$tool" >/dev/null || { echo "$tool is not there" >&2 && exit 1; }
done
home=$(mktemp -d)
mkdir -p "$home/config/PLUVO" "$home/runtime" "$home/data"
export HOME=$home XDG_CONFIG_HOME=$home/config XDG_DATA_HOME=$home/data XDG_STATE_HOME=$home/state
export XDG_RUNTIME_DIR=$home/runtime QT_QPA_PLATFORM=xcb
chmod 700 "$home/runtime"

# The screen tells its number when it is there.
exec {told}< <(exec Xvfb -noreset -displayfd 1 -screen 0 1366x768x24 2>/dev/null)
screen=$!
running=("$screen")
trap 'kill "${running[@]}" 2>/dev/null || true; rm -rf "$home"' EXIT
read -r number <&"$told"
export DISPLAY=:$number
openbox >/dev/null 2>&1 &
running+=($!)

# open COLOURS DOCUMENT: the program with a document, its window in front.
open() {
  printf '[General]\ncolours=%s\n' "$1" >"$home/config/PLUVO/PLUVO.conf"
  "$program" "$2" 2>/dev/null &
  running+=($!)
  window=$(xdotool search --sync --onlyvisible --name ' – PLUVO$' | head -n 1)
  until xdotool windowactivate --sync "$window" 2>/dev/null; do sleep 0.2; done
  sleep 3
}
keys() { xdotool key --delay 60 --clearmodifiers "$@" && sleep 0.5; }
words() { xdotool type --delay 20 --clearmodifiers -- "$1" && sleep 0.5; }
# The pointer is out of the way.
picture() {
  xdotool mousemove 1365 767
  sleep 1
  import -window root "$folder/$1"
}
close() {
  kill "${running[-1]}"
  wait "${running[-1]}" || true
}

cp samples/lease.docx "$home/Lease.docx"
cp samples/settlement.docx "$home/Settlement.docx"

# The first block was highlighted, the second one waits for a decision.
open light "$home/Lease.docx"
keys alt+t
words '[Note to file'
keys alt+w
words ']'
keys Tab Tab
words Highlight
keys Tab alt+o alt+n alt+i alt+x
sleep 2
keys Return
sleep 2
picture desktop-confirm.png
close

open dark "$home/Settlement.docx"
picture desktop-dark.png
close
