#pragma once

#include "errors/fault.h"
#include "word/enums.h"

#include <utility>

namespace pluvo::memory {

/// Elsewhere than where members do their work, which stays small by that.
void tellMember(errors::Fault& fault, const char16_t* name);

/// Runs a member of the word processor ("Range.Text"). A fault has the member in its source, as
/// Word's have; of members that use one another, that which was called first.
/// The name is no view, whose length would be counted at every call.
template <class Work>
decltype(auto) member(const char16_t* name, Work&& work) {
  try {
    return std::forward<Work>(work)();
  } catch (errors::Fault& fault) {
    tellMember(fault, name);
    throw;
  }
}

/// The member that counts these units.
constexpr const char16_t* countOfUnit(word::WdUnits unit) {
  switch (unit) {
    case word::wdCharacter:
      return u"Characters.Count";
    case word::wdWord:
      return u"Words.Count";
    case word::wdSentence:
      return u"Sentences.Count";
    case word::wdParagraph:
      break;
  }
  return u"Paragraphs.Count";
}

}  // namespace pluvo::memory
