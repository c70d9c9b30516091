#include "files/locking.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <iterator>
#include <vector>

namespace pluvo::files {

namespace {

std::vector<std::string_view> divided(std::string_view text, char at) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(at), text.size());
    parts.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

template <std::size_t Size>
bool isOneOf(const std::array<std::string_view, Size>& names, std::string_view name) {
  return std::ranges::find(names, name) != names.end();
}

/// Of a machine's own, though no device of their own lies below them.
constexpr std::array<std::string_view, 10> kOwn = {"tmpfs",     "ramfs", "rootfs",   "overlay",  "aufs",
                                                   "overlayfs", "btrfs", "bcachefs", "ecryptfs", "zfs"};
/// Whose locks are the server's, in whatever way they are mounted.
constexpr std::array<std::string_view, 7> kShared = {
    "nfs4", "ceph", "fuse.ceph-fuse", "fuse.glusterfs", "gpfs", "ocfs2", "gfs2"};

LockReach reachOf(std::string_view system, const std::vector<std::string_view>& options, bool hasDevice) {
  const auto has = [&](std::string_view option) {
    return std::ranges::find(options, option) != options.end();
  };
  const auto sureWhere = [](bool sure) { return sure ? LockReach::allMachines : LockReach::unsure; };
  if (isOneOf(kShared, system)) return LockReach::allMachines;
  if (system == "nfs") return sureWhere(!has("nolock") && !has("local_lock=all") && !has("local_lock=posix"));
  if (system == "cifs" || system == "smb3") return sureWhere(!has("nobrl"));
  if (system == "lustre") return sureWhere(has("flock"));
  return hasDevice || isOneOf(kOwn, system) ? LockReach::oneMachine : LockReach::unsure;
}

/// A line such as "36 35 0:31 / /mnt rw,noatime shared:1 - nfs4 server:/export rw,vers=4.2". It has the
/// number of the mount and of the one above, device, root, place, options, any more; then "-", system,
/// source, options.
Locking lockingIn(std::string_view mount) {
  constexpr std::size_t kDevice = 2;
  const std::vector<std::string_view> words = divided(mount, ' ');
  const auto dash = std::ranges::find(words, "-");
  if (std::distance(dash, words.end()) < 4) return {};
  const std::string_view system = dash[1];
  // Devices without a driver, as those of file servers, have the number 0.
  return {reachOf(system, divided(dash[3], ','), !words[kDevice].starts_with("0:")), std::string(system)};
}

}  // namespace

Locking lockingOf(std::string_view mounts, std::uint64_t number) {
  const std::string wanted = std::to_string(number) + " ";
  for (const std::string_view mount : divided(mounts, '\n'))
    if (mount.starts_with(wanted)) return lockingIn(mount);
  return {};
}

std::optional<std::uint64_t> mountOf(const std::string& path) {
  std::string place = path.empty() ? "." : path;
  struct statx found = {};
  while (::statx(AT_FDCWD, place.c_str(), 0, STATX_MNT_ID, &found) != 0) {
    const std::size_t last = place.find_last_not_of('/');
    if (errno != ENOENT || last == std::string::npos || place == ".") return std::nullopt;
    const std::size_t slash = place.rfind('/', last);
    place = slash == std::string::npos ? "." : slash == 0 ? "/" : place.substr(0, slash);
  }
  return (found.stx_mask & STATX_MNT_ID) != 0 ? std::optional<std::uint64_t>(found.stx_mnt_id) : std::nullopt;
}

Locking lockingAt(const std::string& path) {
  const auto mount = mountOf(path);
  if (!mount) return {};
  std::ifstream file("/proc/self/mountinfo");
  return lockingOf(std::string{std::istreambuf_iterator<char>(file), {}}, *mount);
}

}  // namespace pluvo::files
