// A Word document whose body is any markup. It is read with all its stories, edited in any of them, looked
// through for texts elsewhere, written and read again. The input is a program of edits and the inside of
// w:body. After zero bytes come those of a header, of footnotes and of comments, a part of custom XML, an
// imported file and an embedded one. The package around them is always the same.

#include "docx/docx_format.h"
#include "elsewhere/elsewhere.h"
#include "formats/docx/document_builder.h"
#include "formats/docx/random_edits.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <set>
#include <utility>

namespace {

using namespace pluvo;

std::u16string textOf(const document::Story& story) { return story.text().substring(0, story.length()); }

/// The texts of all stories that are there, but of versions that are alike one.
std::multiset<std::u16string> textsOf(const document::Document& document) {
  std::multiset<std::u16string> texts;
  const document::Document::Snapshot snapshot = document.snapshot();
  for (std::size_t i = 0; i < document.count(); ++i)
    if (!snapshot[i].gone && !snapshot[i].twin) texts.insert(textOf(document.story(i)));
  return texts;
}

void edit(document::Document& document, base::ByteSpan program) {
  for (; program.size() >= 5; program = program.subspan(5)) {
    const auto place = static_cast<std::uint32_t>(program[0] | program[1] << 8U);
    docx::editBySeed(document, {place, program[2], program[3], program[4]});
  }
}

docx::Parts partsOf(std::string_view data, std::string_view& body) {
  const auto next = [&] {
    const std::string_view one = data.substr(0, data.find('\0'));
    data.remove_prefix(std::min(one.size() + 1, data.size()));
    return std::string(one);
  };
  body = data.substr(0, data.find('\0'));
  next();
  // With the declarations of a main part.
  const auto partOf = [](const std::string& root, const std::string& inner) {
    std::string part = docx::mainPartOf({});
    part.replace(part.find("<w:body>"), std::string::npos, inner + "</w:" + root + ">");
    return part.replace(part.find("w:document"), std::strlen("w:document"), "w:" + root);
  };
  docx::Parts parts = {
      {"word/header.xml", partOf("hdr", next())},
      {"word/footnotes.xml", partOf("footnotes", "<w:footnote w:id='1'>" + next() + "</w:footnote>")},
      {"word/comments.xml", partOf("comments", "<w:comment w:id='1'>" + next() + "</w:comment>")},
      {"word/item.xml", next()},
      {"word/chunk", next()}};
  parts["word/package"] = std::string(data);
  parts["word/_rels/item.xml.rels"] = docx::relationships({{"customXmlProps", "props.xml"}});
  parts["word/props.xml"] =
      "<ds:datastoreItem ds:itemID=\"i\" "
      "xmlns:ds=\"http://schemas.openxmlformats.org/officeDocument/2006/customXml\"/>";
  parts["word/_rels/document.xml.rels"] = docx::relationships({{"header", "header.xml"},
                                                               {"chart", "item.xml"},
                                                               {"aFChunk", "chunk"},
                                                               {"package", "package"},
                                                               {"footnotes", "footnotes.xml"},
                                                               {"comments", "comments.xml"}});
  parts["_rels/.rels"] =
      docx::relationships({{"officeDocument", "word/document.xml"}, {"customXml", "word/item.xml"}});
  return parts;
}

/// Whatever the document is, looking changes nothing: a second look finds the same.
void lookElsewhere(const docx::Opened& opened, bool fieldCodes) {
  engine::Request request;
  request.begin = u"e";
  request.distance = 0;
  request.showFieldCodes = fieldCodes;
  const elsewhere::Elsewhere once = elsewhere::lookElsewhere(*opened.source, opened.document, {&request, 1});
  const elsewhere::Elsewhere again = elsewhere::lookElsewhere(*opened.source, opened.document, {&request, 1});
  if (once.stories != again.stories || once.unreached != again.unreached) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t edits = std::min<std::size_t>(data[0] % 8 * std::size_t{5}, size - 1);
  std::string_view body;
  const docx::Parts parts =
      partsOf({reinterpret_cast<const char*>(data) + 1 + edits, size - 1 - edits}, body);
  try {
    docx::Opened opened = docx::open(docx::documentOf(body, parts));
    edit(opened.document, {data + 1, edits});
    lookElsewhere(opened, data[0] % 2 != 0);
    const base::Bytes written = opened.written();
    const docx::Opened again = docx::open(written);
    if (textOf(again.model) != textOf(opened.model)) std::abort();
    if (textsOf(again.document) != textsOf(opened.document)) std::abort();
  } catch (const errors::DocumentError&) {
  }
  return 0;
}
