#!/usr/bin/env bash
# anew.sh MAKER TEMPLATES TEST PROGRAM [COMMAND...]: runs a test on pages that are made for it.
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" "$2" "$folder" 2026-01-01
bash "$3" "$4" "$folder" "${@:5}"
