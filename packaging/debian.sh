#!/usr/bin/env bash
# packaging/debian.sh        makes the packages pluvo and pluvo-desktop for this Debian in build/debian, and checks them
# packaging/debian.sh prove  as root, outside CI: proves them in an empty Debian 12 as well
# packaging/debian.sh twice  builds them from clones in two folders, without a compiler cache, and compares the bytes
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/setup.sh
source scripts/empty_root.sh

what=${1:-make}
case $what in
  make | prove | twice) ;;
  *) fail "there is no '$what'; say prove, twice, or nothing" ;;
esac
need "${RUN_PACKAGES[@]}" "${PACKAGE_PACKAGES[@]}"
# The time of all files in the packages, and the day on manual pages: that of the packed sources.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH
version=$(sed -n 's/^project(pluvo VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)

# Into build/debian: the packages, and what each program is built from.
make_packages() {
  build package all
  local program
  for program in pluvo pluvo-desktop; do
    python3 packaging/spdx.py build/package "$program" "$version" "build/package/debian/$program.spdx.json"
  done
  rm -rf build/debian
  mkdir -p build/debian
  quietly build/package/cpack.log cpack --config build/package/CPackConfig.cmake -B build/debian
  rm -rf build/debian/_CPack_Packages
  cp build/package/debian/*.spdx.json build/debian
}

check_packages() {
  desktop-file-validate src/desktop/program/pluvo-desktop.desktop
  appstreamcli validate --no-net src/desktop/program/*.metainfo.xml
  lintian --allow-root --fail-on error,warning build/debian/*.deb
  hardening-check --nocfprotection build/package/bin/pluvo build/package/bin/pluvo-desktop
}

# The same packages as an earlier version, with a file that later ones do not have.
make_earlier() {
  local folder=$1 package
  for package in build/debian/*.deb; do
    local name=${package##*/}
    name=${name%%_*}
    dpkg-deb -R "$package" "$folder/$name"
    sed -i 's/^Version: .*/Version: 0.0.1-1/' "$folder/$name/DEBIAN/control"
    echo 'of an earlier version' >"$folder/$name/usr/share/doc/$name/earlier"
    dpkg-deb --root-owner-group -b "$folder/$name" "$folder/$name.deb" >/dev/null
    rm -r "${folder:?}/$name"
  done
}

prove_packages() {
  ((EUID == 0)) || fail 'root runs this, since it makes a root of its own'
  [[ -z ${CI:-} ]] || fail 'this is not for CI: it downloads and unpacks a Debian'
  need debootstrap util-linux
  local folder root
  folder=$(mktemp -d "${TMPDIR:-/tmp}/pluvo-packages-XXXXXX")
  root=$folder/debian
  # shellcheck disable=SC2064 # the folder of now
  trap "rm -rf --one-file-system '$folder'" EXIT
  printf 'An empty Debian 12 in %s ...\n' "$root"
  make_root "$root"
  mkdir -p "$root/packages/new" "$root/packages/old"
  cp build/debian/*.deb "$root/packages/new"
  make_earlier "$root/packages/old"
  cp -r packaging/prove_in_root.sh tests/pages/examples.sh samples "$root/packages"
  in_root "$root" bash /packages/prove_in_root.sh
}

# Two clones with names of different lengths; a compiler cache would give the second what the first has compiled.
compare_builds() {
  local folder clone
  folder=$(mktemp -d "${TMPDIR:-/tmp}/pluvo-twice-XXXXXX")
  # shellcheck disable=SC2064
  trap "rm -rf '$folder'" EXIT
  for clone in one a-second-and-longer-name/two; do git clone -q . "$folder/$clone"; done
  for clone in one a-second-and-longer-name/two; do
    (
      cd "$folder/$clone"
      export CCACHE_DISABLE=1
      make_packages
    )
  done
  local file differs=0
  for file in "$folder/one/build/debian"/*; do
    if cmp "$file" "$folder/a-second-and-longer-name/two/build/debian/${file##*/}"; then
      sha256sum "$file" | sed "s# .*/#  #"
    else
      differs=1
    fi
  done
  ((differs == 0)) || fail 'the two builds differ; diffoscope tells where'
  echo 'Both builds are the same, byte for byte.'
}

if [[ $what == twice ]]; then
  compare_builds
  exit
fi
make_packages
check_packages
ls -l build/debian
if [[ $what == prove ]]; then prove_packages; fi
