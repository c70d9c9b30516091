#pragma once

#include "base/bytes.h"
#include "document/story.h"
#include "formats/format.h"

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace pluvo::docx {

/// The parts of a package by their names; what a document cannot be without is put in.
using Parts = std::map<std::string, std::string>;

/// A package whose main part has this body. Parts given replace those put in; one given as "-" is left out.
base::Bytes documentOf(std::string_view body, Parts parts = {});
std::string mainPartOf(std::string_view body);
/// A header part with one paragraph.
std::string headerOf(std::string_view content);
/// A part of relationships: the ends of their types, and targets.
std::string relationships(std::initializer_list<std::pair<const char*, const char*>> typesAndTargets);

/// A part of settings.
Parts settingsOf(std::string_view content);
/// The relationships of a signed package.
extern const Parts kSigned;
/// A file of one paragraph.
std::string fileOf(std::string_view text, Parts parts = {});

/// <w:r> with these properties and one text element.
std::string run(std::string_view text, std::string_view properties = {});
/// <w:p> around content.
std::string p(std::string_view content);

/// Markup written short. {…} is a paragraph, [text] and [properties|text] a run, ^ % $ are the marks of a
/// field, @code@ is a run of field code. <T>…</T> is a table of one row, <A>…</A> are alternatives. Names
/// without prefix get w:, and ' stands for ".
std::string wml(std::string_view text);

/// A document with all its stories as the rest of the program has it.
struct Opened {
  document::Document document;
  std::shared_ptr<const formats::Source> source;
  document::Story& model = document.mainText();

  base::Bytes written() const;
  std::u16string text() const { return model.text().substring(0, model.length()); }
  /// Where this text stands for the first time; a failure when it does not.
  text::Span find(std::u16string_view wanted) const;
};
Opened open(base::Bytes bytes);
formats::Hint allStories();

std::string part(const base::Bytes& document, std::string_view name);
/// What stands between the tags of w:body.
std::string bodyOf(const base::Bytes& document);

}  // namespace pluvo::docx
