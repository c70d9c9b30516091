#include "call_book.h"

namespace pluvo::stand_in {

void CallBook::refuse(const std::u16string& call, std::int32_t number, std::int32_t nth) {
  on(call, [number, nth](const Arguments&, VARIANT&, EXCEPINFO&) mutable -> std::optional<HRESULT> {
    if (--nth == 0) throw refusal(number);
    return std::nullopt;
  });
}

bool CallBook::lacks(const std::u16string& member) {
  ++idQuestions;
  return lacking_.contains(member);
}

void CallBook::allowAll() {
  scripts_.clear();
  lacking_.clear();
  // As in Word 2003 and later.
  most_ = {{u"call Documents.Open", 16},
           {u"call Document.Protect", 5},
           {u"call Document.Close", 3},
           {u"call Find.Execute", 15},
           {u"call Range.Delete", 2}};
  leavesErrors = false;
}

std::optional<HRESULT> CallBook::called(const std::u16string& call, const Arguments& arguments,
                                        VARIANT& result, EXCEPINFO& exception) {
  if (writing_) lines_.push_back(call + u"(" + arguments.words() + u")");
  if (const auto most = most_.find(call); most != most_.end() && arguments.count() > most->second)
    return DISP_E_BADPARAMCOUNT;
  const auto script = scripts_.find(call);
  if (script == scripts_.end()) return std::nullopt;
  return script->second(arguments, result, exception);
}

}  // namespace pluvo::stand_in
