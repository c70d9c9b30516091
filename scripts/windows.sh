# Sourced by ./test: Wine for the tests of the component for Word.
# shellcheck shell=bash

# The tests have a Windows of their own, in build/wine, made where there is none. Its windows lie on a desktop
# of its own: no window manager is waited for.
export WINEPREFIX=$PWD/build/wine WINEDEBUG=-all

make_wine() {
  [[ -f $WINEPREFIX/ready ]] && return
  rm -rf "$WINEPREFIX"
  wineboot --init
  wine reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f
  wine reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d 1280x950 /f
  wineserver --wait
  touch "$WINEPREFIX/ready"
}

# Whether Wine runs 32-bit programs here.
wine_runs_32_bit() { [[ -x /usr/lib/wine/wine ]]; }

# What the DLL of a preset gives and asks for. Needs no Wine.
check_component() {
  cmake -DOBJDUMP="$(command -v "$3-objdump")" -DFILE="build/$1/bin/$2" -P tests/component/file.cmake
}
