#pragma once

#include "fib.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace pluvo::doc {

/// The stream of tables in the making. What does not change keeps its place: some tables go on where the
/// information block says they end.
class NewTables {
 public:
  /// The tables of a glossary lie in the same stream; null where there is none.
  NewTables(const Fib& fib, const Fib* glossary, base::ByteSpan tables)
      : fib_(fib), glossary_(glossary), tables_(tables) {}

  /// A table as it was.
  base::ByteSpan old(std::size_t number) const { return fib_.in(tables_, number); }
  base::ByteSpan old(Table table) const { return fib_.in(tables_, table); }
  /// The same as it is to be.
  base::ByteSpan now(std::size_t number) const;
  /// Gives a table other contents; with none it goes.
  void replace(std::size_t number, std::string bytes) { changed_[number] = std::move(bytes); }
  void replace(Table table, std::string bytes) { replace(static_cast<std::size_t>(table), std::move(bytes)); }
  void drop(std::size_t number) { replace(number, {}); }

  struct Written {
    std::vector<std::uint8_t> stream;
    std::vector<Fib::Extent> extents;
  };
  Written write() const;

 private:
  bool overlapsOthers(std::size_t number) const;

  const Fib& fib_;
  const Fib* glossary_;
  base::ByteSpan tables_;
  std::map<std::size_t, std::string> changed_;
};

}  // namespace pluvo::doc
