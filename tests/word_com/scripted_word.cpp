#include "scripted_word.h"

#include <algorithm>

namespace pluvo::word_com {

ScriptedWord::ScriptedWord() {
  application->answersObject(L"ActiveDocument", [this] { return document.Get(); });
  document->on(L"Range", [this](auto& arguments, VARIANT& result, EXCEPINFO&) {
    const Span span{arguments[0].lVal, arguments[1].lVal};
    auto object = rangeObject;
    if (others_.empty() && object->idQuestions == 0) {
      range = span;
    } else {
      object = make("Other");
      object->answersText(L"Text", [this, span] { return textAt(span); });
      others_.push_back(object);
    }
    result.vt = VT_DISPATCH;
    result.pdispVal = object.Detach();
    return S_OK;
  });
  scriptRange();
  scriptFind();
}

void ScriptedWord::scriptRange() {
  const auto end = [this](const wchar_t* name, std::int32_t Span::*member) {
    rangeObject->on(name, [this, member](auto& arguments, VARIANT& result, EXCEPINFO&) {
      if (!arguments.empty()) range.*member = arguments[0].lVal;
      result.vt = VT_I4;
      result.lVal = range.*member;
      return S_OK;
    });
  };
  end(L"Start", &Span::start);
  end(L"End", &Span::end);
  rangeObject->on(L"SetRange", [this](auto& arguments, VARIANT&, EXCEPINFO&) {
    range = {arguments[0].lVal, arguments[1].lVal};
    return S_OK;
  });
  rangeObject->on(L"MoveEnd", [this](auto& arguments, VARIANT& result, EXCEPINFO&) {
    range.end += arguments[1].vt == VT_I4 ? arguments[1].lVal : *arguments[1].piVal;
    result.vt = VT_I4;
    return S_OK;
  });
  rangeObject->answersText(L"Text", [this] { return textAt(range); });
  rangeObject->answersObject(L"Find", [this] { return find.Get(); });
  for (const wchar_t* method : {L"Select", L"InsertBefore", L"InsertAfter", L"HighlightColorIndex"})
    rangeObject->accepts(method);
  rangeObject->answers(L"Delete", [] { return 1; });
}

void ScriptedWord::scriptFind() {
  for (const wchar_t* member : {L"ClearFormatting", L"Text", L"Forward", L"MatchCase", L"MatchWholeWord",
                                L"MatchWildcards", L"MatchSoundsLike", L"MatchAllWordForms", L"Wrap"})
    find->accepts(member);
  find->on(L"Execute", [this](auto&, VARIANT& result, EXCEPINFO&) {
    result.vt = VT_BOOL;
    result.boolVal = matches.empty() ? VARIANT_FALSE : VARIANT_TRUE;
    if (!matches.empty()) {
      range = matches.front();
      matches.pop_front();
    }
    return S_OK;
  });
}

std::shared_ptr<word::Range> ScriptedWord::rangeOver(std::int32_t start, std::int32_t end) {
  return connected()->ActiveDocument()->Range(start, end);
}

CallLog ScriptedWord::calls(const std::string& member) const {
  CallLog found;
  std::ranges::copy_if(*log, std::back_inserter(found), [&](const std::string& call) {
    return call == member || call.starts_with(member + "(") || call.starts_with(member + " = ");
  });
  return found;
}

std::wstring ScriptedWord::textAt(Span span) const {
  const auto from = static_cast<std::size_t>(std::max(span.start, 0));
  if (from >= text.size()) return {};
  const std::u16string part = text.substr(from, static_cast<std::size_t>(span.end) - from);
  return {part.begin(), part.end()};
}

}  // namespace pluvo::word_com
