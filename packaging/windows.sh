#!/usr/bin/env bash
# packaging/windows.sh: builds the component for 64-bit and 32-bit Word and gathers what ships, the two DLLs and
# the two documents, in build/windows. Makes build/pluvo-VERSION-windows.zip of them, and the installer,
# build/pluvo-VERSION-setup.exe. "packaging/windows.sh prove" then installs, uses, updates and takes it out under Wine.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/setup.sh

need "${WINDOWS_PACKAGES[@]}" nsis
version=$(sed -n 's/^project(pluvo VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
rm -rf build/windows
for preset in mingw64 mingw32; do
  build "$preset" component
  cmake --build "build/$preset" --target instructions >/dev/null
  cmake --install "build/$preset" --prefix build/windows --strip >/dev/null
done
(cd build/windows && cmake -E tar cf "../pluvo-$version-windows.zip" --format=zip -- *)
quietly build/nsis.log makensis -V2 -WX "-DVERSION=$version" "-DFILES=$PWD/build/windows" \
  "-DOUTPUT=$PWD/build/pluvo-$version-setup.exe" packaging/windows.nsi
ls -l build/windows "build/pluvo-$version-windows.zip" "build/pluvo-$version-setup.exe"
[[ ${1-} == prove ]] || exit 0
need wine wine64 xvfb xauth imagemagick
exec xvfb-run -a -s '-screen 0 1280x960x24' packaging/prove_windows.sh "$version"
