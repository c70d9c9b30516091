#!/usr/bin/env bash
# packaging/windows.sh: builds the component for 64-bit and 32-bit Word and gathers what ships, the two DLLs and
# the two documents, into build/windows and build/pluvo-VERSION-windows.zip.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/setup.sh

need "${WINDOWS_PACKAGES[@]}"
version=$(sed -n 's/^project(pluvo VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
rm -rf build/windows
for preset in mingw64 mingw32; do
  build "$preset" component
  cmake --build "build/$preset" --target instructions >/dev/null
  cmake --install "build/$preset" --prefix build/windows --strip >/dev/null
done
(cd build/windows && cmake -E tar cf "../pluvo-$version-windows.zip" --format=zip -- *)
ls -l build/windows "build/pluvo-$version-windows.zip"
