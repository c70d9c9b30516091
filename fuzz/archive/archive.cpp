#include "archive/archive.h"

#include "archive/rewrite.h"

#include <algorithm>
#include <cstdlib>

using namespace pluvo;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

/// What a rewrite promises: the new archive opens, the changed member has the new contents, every other
/// member the packed bytes it had.
void checkRewritten(const archive::Archive& old, const archive::Member& changed, files::ByteSpan contents) {
  const archive::Change change{changed.name,
                               {contents.first(contents.size() / 2), contents.subspan(contents.size() / 2)}};
  files::MemoryOutput out;
  archive::rewrite(old, {&change, 1}, out, 1);
  const archive::Archive made = archive::Archive::open(files::Bytes::of(std::move(out.bytes())));
  require(made.members().size() == old.members().size());
  for (std::size_t i = 0; i < old.members().size(); ++i) {
    const archive::Member& before = old.members()[i];
    const archive::Member& after = made.members()[i];
    require(after.name == before.name);
    if (&before == &changed) {
      require(std::ranges::equal(made.read(after).view, contents));
    } else {
      require(std::ranges::equal(made.bytes().subspan(after.header, after.next - after.header),
                                 old.bytes().subspan(before.header, before.next - before.header)));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  archive::Limits limits;
  limits.memberSize = limits.freeSize = 1U << 20U;
  try {
    const archive::Archive opened = archive::Archive::open(files::Bytes::of({data, data + size}), limits);
    for (const archive::Member& member : opened.members()) {
      require(opened.find(member.name) == &member);
      try {
        checkRewritten(opened, member, opened.read(member).view);
      } catch (const files::DocumentError& error) {
        require(error.problem() != files::Problem::io);
      }
    }
  } catch (const files::DocumentError&) {
  }
  return 0;
}
