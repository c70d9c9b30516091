#pragma once

#include "formats/docx/document_builder.h"
#include "formats/docx/package_check.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::docx {

using Edit = std::function<void(Opened&)>;
using text::Span;
using text::View;

inline Edit replace(std::u16string what, std::u16string with, View view = View::results) {
  return [=](Opened& o) { o.model.replace(o.find(what), with, view); };
}
inline Edit remove(std::u16string what) { return replace(std::move(what), u""); }
inline Edit before(std::u16string what, std::u16string put) {
  return [=](Opened& o) { o.model.insertBefore(o.find(what).from, put); };
}
inline Edit after(std::u16string what, std::u16string put) {
  return [=](Opened& o) { o.model.insertBehind(o.find(what).to, put); };
}
inline Edit highlight(std::u16string what, std::uint8_t colour) {
  return [=](Opened& o) { o.model.highlight(o.find(what), colour); };
}
inline Edit both(Edit first, Edit second) {
  return [=](Opened& o) {
    first(o);
    second(o);
  };
}

struct EditCase {
  std::string body;  ///< in the shorthand of wml(), as is what comes of it
  Edit edit;
  std::string after;
};
using Abbreviations = std::vector<std::pair<char, std::string>>;

inline std::string expanded(std::string text, const Abbreviations& more) {
  Abbreviations all = {{'~', "<highlight val='yellow'/>"}};
  all.insert(all.begin(), more.begin(), more.end());
  for (const auto& [sign, meaning] : all) {
    for (std::size_t at = 0; (at = text.find(sign, at)) != text.npos; at += meaning.size())
      text.replace(at, 1, meaning);
  }
  return wml(text);
}

/// Edits, writes, compares the body's bytes, and reads the result again.
inline void expectBodies(const std::vector<EditCase>& cases, const Abbreviations& abbreviations = {}) {
  for (const EditCase& c : cases) {
    SCOPED_TRACE(c.body);
    const base::Bytes document = documentOf(expanded(c.body, abbreviations));
    Opened opened = open(document);
    c.edit(opened);
    const base::Bytes written = opened.written();
    EXPECT_EQ(bodyOf(written), expanded(c.after, abbreviations));
    EXPECT_EQ(notation::print(open(written).model), notation::print(opened.model));
    EXPECT_EQ(worsened(faultsOf(document), faultsOf(written)), "");
    EXPECT_EQ(valuesDenied(document, written), "");
  }
}

}  // namespace pluvo::docx
