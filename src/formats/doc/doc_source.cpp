#include "doc_source.h"

#include "appearance_reader.h"
#include "other_texts.h"
#include "reader.h"

namespace pluvo::doc {

const document::Restriction& DocSource::restriction() {
  static const document::Restriction kRestriction = {document::Restriction::Of::change,
                                                     "Documents of this kind (.doc) are searched and shown, "
                                                     "but not changed yet; save this one as .docx in a word "
                                                     "processor, and change that."};
  return kRestriction;
}

/// Its restriction refuses every edit, of any text.
std::optional<std::string> DocSource::refusesText(std::u16string_view /*newText*/) const {
  return std::nullopt;
}

void DocSource::write(const document::Document& document, base::Output& out) const {
  if (document.changed()) throw errors::DocumentError(errors::Problem::unsupported, restriction().sentence);
  out.write(opened_->streams.file.bytes());
}

std::vector<text::RunMap<formats::Appearance>> DocSource::appearance() const {
  return {readAppearance(opened_->text, 0, opened_->text.fib.length(Part::main), length_)};
}

void DocSource::tellOtherTexts(const document::Story& mainText, formats::OtherTexts& texts) const {
  doc::tellOtherTexts(*opened_, mainText, texts);
}

}  // namespace pluvo::doc
