#include "zip/archive.h"
#include "zip/rewrite.h"

#include <algorithm>
#include <cstdlib>

using namespace pluvo;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

/// What a rewrite promises: the new archive opens, the changed member has the new contents, every other
/// member the packed bytes it had.
void checkRewritten(const zip::Archive& old, const zip::Member& changed, base::ByteSpan contents) {
  const zip::Change change{changed.name,
                           {contents.first(contents.size() / 2), contents.subspan(contents.size() / 2)}};
  base::MemoryOutput out;
  zip::rewrite(old, {&change, 1}, out, 1);
  const zip::Archive made = zip::Archive::open(base::Bytes::of(std::move(out.bytes())));
  require(made.members().size() == old.members().size());
  for (std::size_t i = 0; i < old.members().size(); ++i) {
    const zip::Member& before = old.members()[i];
    const zip::Member& after = made.members()[i];
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
  zip::Limits limits;
  limits.memberSize = limits.freeSize = 1U << 20U;
  try {
    const zip::Archive opened = zip::Archive::open(base::Bytes::of({data, data + size}), limits);
    for (const zip::Member& member : opened.members()) {
      require(opened.find(member.name) == &member);
      try {
        checkRewritten(opened, member, opened.read(member).view);
      } catch (const errors::DocumentError& error) {
        require(error.problem() != errors::Problem::io);
      }
    }
  } catch (const errors::DocumentError&) {
  }
  return 0;
}
