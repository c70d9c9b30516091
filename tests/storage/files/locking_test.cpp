#include "files/locking.h"

#include <gtest/gtest.h>

namespace pluvo::files {
namespace {

TEST(Locking, ReachesAsFarAsTheMountSays) {
  struct Case {
    const char* mount;  ///< its device, and what stands after the dash
    LockReach reach;
  };
  using enum LockReach;
  for (const auto& [mount, reach] :
       {Case{"8:1|ext4 /dev/sda1 rw", oneMachine}, Case{"0:24|tmpfs none rw", oneMachine},
        Case{"0:30|btrfs /dev/sdb rw", oneMachine},
        Case{"0:50|nfs4 server:/x rw,vers=4.2,local_lock=none", allMachines},
        Case{"0:50|nfs server:/x rw,vers=3,local_lock=none", allMachines},
        Case{"0:50|nfs server:/x rw,vers=3,nolock,local_lock=all", unsure},
        Case{"0:50|nfs server:/x rw,local_lock=posix", unsure}, Case{"0:51|cifs //server/x rw", allMachines},
        Case{"0:51|cifs //server/x rw,nobrl", unsure}, Case{"0:52|lustre mgs:/x rw,flock", allMachines},
        Case{"0:52|lustre mgs:/x rw,localflock", unsure},
        Case{"0:53|fuse.glusterfs server:/x rw", allMachines}, Case{"0:54|fuse.sshfs server:/x rw", unsure},
        Case{"0:55|fuse.s3fs bucket rw", unsure}}) {
    const std::string text = mount;
    const std::size_t bar = text.find('|');
    const std::string line =
        " 25 " + text.substr(0, bar) + " / /mnt rw shared:1 - " + text.substr(bar + 1) + "\n";
    EXPECT_EQ(lockingOf("3" + line + "36 25 8:1 / / rw - xfs /dev/sda rw\n", 3).reach, reach) << mount;
  }
  EXPECT_EQ(lockingOf("", 3).reach, oneMachine);
  EXPECT_EQ(lockingAt("/dev/shm/not/there").reach, oneMachine);
}

}  // namespace
}  // namespace pluvo::files
