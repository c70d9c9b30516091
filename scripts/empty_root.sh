# Sourced by scripts that prove something in a Debian with nothing but its essential packages. They are run by root,
# outside CI, and take packages from where the machine takes its own.
# shellcheck shell=bash

# Lines of a sources.list, one for each place that the machine has Debian's packages from.
machine_sources() {
  apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
    grep -E ' bookworm[a-z-]* main$' | sort -u
}

# make_root FOLDER: Debian 12, minimal variant, in a folder that is not there yet.
make_root() {
  local root=$1 main
  [[ ! -e $root ]] || fail "$root is there already; remove it, or name another folder"
  main=$(machine_sources | sed -n 's/ bookworm main$//; T; s/^deb //p')
  [[ -n $main ]] || fail "the machine takes no packages from a place with Debian 12 ('apt-get update' first?)"
  mkdir -p "$root"
  debootstrap --variant=minbase bookworm "$root" "${main%%$'\n'*}" >"$root.log" 2>&1 || {
    tail -n 15 "$root.log" >&2
    fail "debootstrap could not make $root (the end of its log is above, all of it in $root.log)"
  }
  machine_sources >"$root/etc/apt/sources.list"
  cp /etc/hosts "$root/etc/hosts"
}

# in_root FOLDER COMMAND...: runs it there as root. Its mounts and processes end with it; folders named in ROOT_BINDS,
# as FROM:TO, are seen there too.
in_root() {
  local root=$1 bind
  shift
  # shellcheck disable=SC2016 # the inner shell expands these
  unshare --mount --pid --ipc --fork --kill-child bash -euc '
    root=$1
    shift
    mount -t proc proc "$root/proc"
    mount -t sysfs -o ro sysfs "$root/sys"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
    mkdir -p "$root/dev/shm"
    mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
    for bind in ${ROOT_BINDS:-}; do
      mkdir -p "$root${bind#*:}"
      mount --bind "${bind%%:*}" "$root${bind#*:}"
    done
    exec env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM=dumb LANG=C.UTF-8 chroot "$root" "$@"
  ' in_root "$root" "$@"
}
