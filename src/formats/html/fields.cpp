#include "fields.h"

#include <algorithm>

namespace pluvo::formats::html {

namespace {

class FieldMatcher final : public Events {
 public:
  FieldMatcher(const Page& page, const Part& part) : walker_(page, *this, part) {}

  std::vector<std::size_t> strays() {
    walker_.walk();
    while (!open_.empty()) drop();
    std::ranges::sort(strays_);
    return std::move(strays_);
  }

  void character(const Character& character) override {
    const std::size_t at = character.bytes.begin;
    switch (character.kind) {
      case Character::Kind::fieldBegin:
        return open_.push_back({tableHere(), {at}});
      case Character::Kind::fieldSeparator:
        if (!open_.empty() && open_.back().table == tableHere() && open_.back().marks.size() == 1)
          return open_.back().marks.push_back(at);
        return strays_.push_back(at);
      case Character::Kind::fieldEnd:
        // What began in a table that has ended is gone already; what began in one around this one waits.
        if (open_.empty() || open_.back().table != tableHere()) return strays_.push_back(at);
        return open_.pop_back();
      default:
        return;
    }
  }
  void tableBegins(const Block& /*table*/, std::size_t /*firstCell*/) override {
    tables_.push_back(++count_);
  }
  void tableEnds(Extent /*endTag*/, bool /*isWhole*/) override {
    while (!open_.empty() && open_.back().table == tableHere()) drop();
    tables_.pop_back();
  }

 private:
  struct Field {
    std::size_t table;
    std::vector<std::size_t> marks;
  };

  std::size_t tableHere() const { return tables_.empty() ? 0 : tables_.back(); }
  void drop() {
    const std::vector<std::size_t>& marks = open_.back().marks;
    strays_.insert(strays_.end(), marks.begin(), marks.end());
    open_.pop_back();
  }

  Walker walker_;
  std::vector<Field> open_;
  std::vector<std::size_t> tables_;  ///< that are open, by number
  std::size_t count_ = 0;
  std::vector<std::size_t> strays_;
};

}  // namespace

std::vector<std::size_t> strayFieldMarks(const Page& page, const Part& part) {
  return FieldMatcher(page, part).strays();
}

}  // namespace pluvo::formats::html
