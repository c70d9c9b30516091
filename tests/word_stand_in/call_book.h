#pragma once

#include "automation.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace pluvo::stand_in {

/// What Word was asked, and what it is told to answer otherwise than it would.
class CallBook {
 public:
  /// What Invoke gives away; nothing where Word is to answer itself.
  using Script = std::function<std::optional<HRESULT>(const Arguments&, VARIANT& result, EXCEPINFO&)>;

  /// A call is named as in its line: "put Range.Text".
  void on(const std::u16string& call, Script script) { scripts_[call] = std::move(script); }
  /// The nth of these calls from now on is refused, once, by a number of Word's.
  void refuse(const std::u16string& call, std::int32_t number, std::int32_t nth = 1);
  /// This Word does not have the member ("Application.UndoRecord").
  void lack(const std::u16string& member) { lacking_.insert(member); }
  bool lacks(const std::u16string& member);
  void allowAll();
  /// More arguments are too many for this Word.
  void atMost(const std::u16string& call, UINT arguments) { most_[call] = arguments; }

  /// One a call: `call Range.SetRange(VT_I4 0, VT_I4 5)`.
  const std::vector<std::u16string>& lines() const { return lines_; }
  void writing(bool on) { writing_ = on; }
  void clear() { lines_.clear(); }

  std::optional<HRESULT> called(const std::u16string& call, const Arguments& arguments, VARIANT& result,
                                EXCEPINFO& exception);

  /// How many objects live.
  std::int32_t alive = 0;
  /// How often the id of a member was asked for.
  std::int32_t idQuestions = 0;
  /// Whether objects say that they leave error objects.
  bool leavesErrors = false;

 private:
  std::map<std::u16string, Script> scripts_;
  std::set<std::u16string> lacking_;
  std::map<std::u16string, UINT> most_;
  std::vector<std::u16string> lines_;
  bool writing_ = true;
};

}  // namespace pluvo::stand_in
