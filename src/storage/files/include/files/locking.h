#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pluvo::files {

/// Whom a lock on a file keeps off.
enum class LockReach : std::uint8_t {
  oneMachine,   ///< a disk of this machine: no other sees the file
  allMachines,  ///< all clients of the file server
  unsure,       ///< programs of this machine; whether others are kept off is not known, or known not to be so
};

struct Locking {
  LockReach reach = LockReach::oneMachine;
  std::string system;  ///< its name, as "nfs4"
};

/// Of the file system that the path lies on; of the nearest folder above where there is nothing yet. What the
/// machine does not tell is taken for a disk of its own.
Locking lockingAt(const std::string& path);

/// The number under which the file system that the path lies on is mounted; nothing where that is not told.
std::optional<std::uint64_t> mountOf(const std::string& path);

/// The same from Linux's list of mounts (/proc/self/mountinfo) and a number in it.
Locking lockingOf(std::string_view mounts, std::uint64_t number);

}  // namespace pluvo::files
