#pragma once

#include "automation.h"

#include <map>
#include <string>
#include <vector>

namespace pluvo::stand_in {

/// What Word was asked, and what it is told to refuse.
class CallBook : public Observer {
 public:
  /// Calls of a member ("Range.Delete", or with its verb "put Range.Text") fail from the nth on that many
  /// times; 0 times is for ever. A number up to 65535 is Word's own (0x800A0000 + number), any other the
  /// status as it stands.
  void refuse(std::u16string member, std::int32_t code, std::int32_t nth = 1, std::int32_t times = 1);
  void allowAll() { refusals_.clear(); }

  /// One line a call: `call Range.SetRange(VT_I4 0, VT_I4 5) -> VT_EMPTY`, or `!800A11FD` for a failure.
  const std::vector<std::u16string>& lines() const { return lines_; }
  void writing(bool on) { writing_ = on; }
  void clear() { lines_.clear(); }
  std::int32_t calls() const { return calls_; }

  /// How many objects of a kind live; of all kinds where none is named.
  std::int32_t alive(std::u16string_view kind = {}) const;

  void born(const Interface& kind) override { ++alive_[kind.name]; }
  void gone(const Interface& kind) override { --alive_[kind.name]; }
  void called(const Interface& kind, Verb verb, std::u16string_view member,
              const DISPPARAMS& arguments) override;
  void returned(const Value& value) override;
  void failed(HRESULT status) override;

 private:
  struct Refusal {
    std::u16string member;
    std::int32_t code;
    std::int32_t before;  ///< calls that still pass
    std::int32_t times;   ///< refusals left; 0 is for ever
  };

  void refuseIfAsked(std::u16string_view verb, const std::u16string& member);

  std::vector<Refusal> refusals_;
  std::vector<std::u16string> lines_;
  std::map<std::u16string_view, std::int32_t> alive_;
  std::int32_t calls_ = 0;
  bool writing_ = true;
};

}  // namespace pluvo::stand_in
