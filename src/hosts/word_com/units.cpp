#include "units.h"

#include "errors/fault.h"
#include "word/faults.h"

namespace pluvo::word_com {

std::int32_t countOfUnits(const Object& object, word::WdUnits unit) {
  const auto count = [&](const wchar_t* collection) {
    return object.getObject(collection, collection).get(L"Count").toInteger();
  };
  switch (unit) {
    case word::wdCharacter:
      return count(L"Characters");
    case word::wdWord:
      return count(L"Words");
    case word::wdSentence:
      return count(L"Sentences");
    case word::wdParagraph:
      return count(L"Paragraphs");
  }
  throw errors::Fault(word::kParameterOutOfRange, u"There is no collection of this unit.");
}

}  // namespace pluvo::word_com
