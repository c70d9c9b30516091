# Sourced by ./run and ./test: what the machine needs, and building without noise.
# shellcheck shell=bash

# To build and run the command line.
RUN_PACKAGES=(ca-certificates cmake g++ ninja-build libdeflate-dev libisal-dev libtomlplusplus-dev libuchardet-dev nettle-dev)
# To test it as well.
TEST_PACKAGES=(bash-completion ccache clang clang-format clang-tidy devscripts fish libclang-rt-dev libexpat1-dev
  libgmock-dev libgtest-dev python3 libpugixml-dev fonts-dejavu-core qt6-base-dev xauth xvfb zsh)
# To look through benchmarks with clang-tidy.
TIDY_PACKAGES=(libbenchmark-dev)
# To make Debian packages, and to check them.
PACKAGE_PACKAGES=(appstream ccache desktop-file-utils devscripts dpkg-dev git gzip lintian man-db python3 qt6-base-dev)
# To build the component for Word.
WINDOWS_PACKAGES=(ccache cmake googletest g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix libwine-dev mingw-w64-tools
  ninja-build python3)

fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 2
}

# Installs those of the packages that are missing. Says nothing when there is nothing to do.
need() {
  local missing=() package
  for package in "$@"; do
    [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
  done
  ((${#missing[@]})) || return 0

  command -v apt-get >/dev/null || fail "please install, by your system's own means: ${missing[*]}"
  local root=()
  if ((EUID)); then
    command -v sudo >/dev/null || fail "please install as root: apt-get install ${missing[*]}"
    root=(sudo)
  fi
  printf 'Installing %s ...\n' "${missing[*]}" >&2
  mkdir -p build
  if ! { "${root[@]}" apt-get -q update &&
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qy install --no-install-recommends "${missing[@]}"
  } >build/apt.log 2>&1 </dev/null; then
    tail -n 15 build/apt.log >&2
    fail "apt could not install ${missing[*]} (the end of its log is above, all of it in build/apt.log)"
  fi
}

# quietly LOG COMMAND...: the output goes to the log, and to standard error when the command fails.
quietly() {
  local log=$1
  shift
  "$@" >"$log" 2>&1 </dev/null || {
    # A build's output is of interest from the first step that failed.
    if grep -q '^FAILED' "$log"; then
      sed -n '/^FAILED/,$p' "$log" | head -n 60 >&2
    else
      tail -n 60 "$log" >&2
    fi
    fail "failed: $* (all of its output is in $log)"
  }
}

# build PRESET TARGET [CMAKE OPTION...]: configures build/PRESET and builds the target in it.
build() {
  local preset=$1 target=$2
  shift 2
  mkdir -p "build/$preset"
  quietly "build/$preset/configure.log" cmake --preset "$preset" "$@"
  quietly "build/$preset/build.log" cmake --build "build/$preset" --target "$target" -- -k 0
}
