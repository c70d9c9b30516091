#include "find.h"

#include "errors/fault.h"
#include "member.h"
#include "word/faults.h"

namespace pluvo::memory {

void MemoryFind::Text(const std::u16string& text) {
  member(u"Find.Text", [&] {
    if (text.size() > kLongestText) throw errors::Fault(word::kStringTooLong, u"String parameter too long.");
    WholeText(std::make_shared<const std::u16string>(text));
  });
}

bool MemoryFind::Execute() {
  return member(u"Find.Execute", [&] {
    MemoryDocument& document = range_.document();
    document::Story& story = range_.story();
    const text::Span span = range_.span();
    const text::Position end = span.empty() ? story.length() : span.to;
    if (query_.text == nullptr) return false;
    const auto match = story.find(query_, {span.from, end}, document.view());
    if (match) range_.set(*match);
    return match.has_value();
  });
}

void MemoryFind::requireOnly(const char16_t* criterion, bool value, bool possible) {
  member(criterion, [&] {
    if (value == possible) return;
    throw errors::Fault(word::kParameterOutOfRange,
                        u"Documents in memory are searched literally and forward only.");
  });
}

}  // namespace pluvo::memory
