// A compound file of any bytes: every stream read, one of them changed, and all of them compared. The first
// three bytes say which stream and how long it becomes.

#include "cfb/compound_file.h"

#include <algorithm>
#include <cstdlib>

using namespace pluvo;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void checkRewritten(const cfb::CompoundFile& old, cfb::Id changed, std::size_t size) {
  const std::vector<std::uint8_t> contents(size, 'x');
  const cfb::Change change{changed, {contents}};
  base::MemoryOutput out;
  cfb::rewrite(old, {&change, 1}, out);
  const cfb::CompoundFile made = cfb::CompoundFile::open(base::Bytes::of(std::move(out.bytes())));
  for (cfb::Id id = 1; id < old.entries().size(); ++id) {
    const cfb::Entry& was = old.entries()[id];
    const cfb::Entry& is = made.entries()[id];
    require(is.kind == was.kind && is.name == was.name && is.storage == was.storage);
    if (is.kind != cfb::Entry::Kind::stream) continue;
    require(
        std::ranges::equal(made.read(id).view, id == changed ? base::ByteSpan(contents) : old.read(id).view));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  try {
    const cfb::CompoundFile opened = cfb::CompoundFile::open(base::Bytes::of({data + 3, data + size}));
    const auto id = static_cast<cfb::Id>(data[0] % opened.entries().size());
    if (opened.entries()[id].kind == cfb::Entry::Kind::stream)
      checkRewritten(opened, id, data[1] + data[2] * std::size_t{256});
  } catch (const errors::DocumentError& error) {
    require(error.problem() == errors::Problem::damaged);
  }
  return 0;
}
