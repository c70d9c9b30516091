#include "formats/docx/document_builder.h"

#include "containers/zip/zip_builder.h"
#include "docx/docx_format.h"
#include "storage/files/as_text.h"
#include "zip/archive.h"

#include <algorithm>
#include <regex>
#include <stdexcept>

namespace pluvo::docx {

namespace {

const char* const kTypes =
    "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
    "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
    "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
    "<Override PartName=\"/word/document.xml\" ContentType=\"application/vnd.openxmlformats-officedocument."
    "wordprocessingml.document.main+xml\"/></Types>";

}  // namespace

std::string relationships(std::initializer_list<std::pair<const char*, const char*>> typesAndTargets) {
  std::string xml = "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">";
  int id = 0;
  for (const auto& [type, target] : typesAndTargets) {
    xml += "<Relationship Id=\"rId" + std::to_string(++id) + "\" Type=\"http://schemas.openxmlformats.org/" +
           "officeDocument/2006/relationships/" + type + "\" Target=\"" + target + "\"/>";
  }
  return xml + "</Relationships>";
}

const Parts kSigned = {{"_rels/.rels", relationships({{"officeDocument", "word/document.xml"},
                                                      {"digital-signature/origin", "x"}})}};

std::string mainPartOf(std::string_view body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<w:document"
         " xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\""
         " xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\""
         " xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\""
         " xmlns:m=\"http://schemas.openxmlformats.org/officeDocument/2006/math\""
         " xmlns:w14=\"http://schemas.microsoft.com/office/word/2010/wordml\""
         " xmlns:w15=\"http://schemas.microsoft.com/office/word/2012/wordml\""
         " xmlns:wps=\"http://schemas.microsoft.com/office/word/2010/wordprocessingShape\""
         " xmlns:wp=\"http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing\""
         " xmlns:new=\"urn:nobody-knows\"><w:body>" +
         std::string(body) + "</w:body></w:document>";
}

std::string headerOf(std::string_view content) {
  return "<w:hdr xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">" + p(content) +
         "</w:hdr>";
}

base::Bytes documentOf(std::string_view body, Parts parts) {
  Parts all = {
      {"[Content_Types].xml", kTypes},
      {"_rels/.rels", relationships({{"officeDocument", "word/document.xml"}})},
      {"word/_rels/document.xml.rels", relationships({{"styles", "styles.xml"},
                                                      {"settings", "settings.xml"},
                                                      {"footnotes", "footnotes.xml"},
                                                      {"endnotes", "endnotes.xml"},
                                                      {"comments", "comments.xml"},
                                                      {"commentsExtended", "commentsExtended.xml"}})},
      {"word/document.xml", mainPartOf(body)}};
  for (auto& [name, contents] : parts) all[name] = std::move(contents);
  zip::Zip zip;
  for (auto& [name, contents] : all) {
    if (contents != "-") zip.entries.push_back({name, contents});
  }
  return files::bytesOf(zip::build(zip).bytes);
}

Parts settingsOf(std::string_view content) {
  return {{"word/settings.xml",
           "<w:settings xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">" +
               std::string(content) + "</w:settings>"}};
}

std::string fileOf(std::string_view text, Parts parts) {
  return files::textOf(documentOf(p(run(text)), std::move(parts)).view);
}

std::string run(std::string_view text, std::string_view properties) {
  const bool edge = text.starts_with(' ') || text.ends_with(' ');
  return "<w:r>" + (properties.empty() ? "" : "<w:rPr>" + std::string(properties) + "</w:rPr>") +
         (edge ? "<w:t xml:space=\"preserve\">" : "<w:t>") + std::string(text) + "</w:t></w:r>";
}

std::string p(std::string_view content) { return "<w:p>" + std::string(content) + "</w:p>"; }

namespace {

std::string tagOf(std::string tag) {
  static const std::map<std::string_view, std::string_view> kShort = {
      {"<T>", "<w:tbl><w:tblPr/><w:tblGrid/><w:tr>"},
      {"</T>", "</w:tr></w:tbl>"},
      {"<A>", "<mc:AlternateContent>"},
      {"</A>", "</mc:AlternateContent>"}};
  if (const auto found = kShort.find(tag); found != kShort.end()) return std::string(found->second);
  std::replace(tag.begin(), tag.end(), '\'', '"');
  const std::size_t name = tag[1] == '/' ? 2 : 1;
  if (tag.find(':') < tag.find_first_of(" />", name) || tag[1] == '!') return tag;
  tag.insert(name, "w:");
  return std::regex_replace(tag, std::regex(" ([A-Za-z]+=)"), " w:$1");
}

}  // namespace

std::string wml(std::string_view text) {
  const auto field = [](const char* type) {
    return "<w:r><w:fldChar w:fldCharType=\"" + std::string(type) + "\"/></w:r>";
  };
  const std::map<char, std::string> marks = {
      {'{', "<w:p>"}, {'}', "</w:p>"}, {'^', field("begin")}, {'%', field("separate")}, {'$', field("end")}};
  std::string out;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    const char closing = c == '<' ? '>' : c == '[' ? ']' : c == '@' ? '@' : '\0';
    const std::size_t end = closing == '\0' ? at : text.find(closing, at + 1);
    const std::string_view inner = end > at ? text.substr(at + 1, end - at - 1) : "";
    if (c == '<') {
      out += tagOf(std::string(text.substr(at, end - at + 1)));
    } else if (c == '[') {
      const std::size_t bar = inner.find('|');
      out += bar == inner.npos ? run(inner) : run(inner.substr(bar + 1), wml(inner.substr(0, bar)));
    } else if (c == '@') {
      out += "<w:r><w:instrText>" + std::string(inner) + "</w:instrText></w:r>";
    } else if (const auto mark = marks.find(c); mark != marks.end()) {
      out += mark->second;
    } else {
      out += c;
    }
    at = end;
  }
  return out;
}

formats::Hint allStories() {
  formats::Hint hint;
  hint.allStories = true;
  return hint;
}

Opened open(base::Bytes bytes) {
  formats::Opened opened = DocxFormat().read(std::move(bytes), allStories());
  return {document::Document(std::move(opened.stories)), std::move(opened.source)};
}

base::Bytes Opened::written() const {
  base::MemoryOutput out;
  source->write(document, out);
  return base::Bytes::of(std::move(out.bytes()));
}

text::Span Opened::find(std::u16string_view wanted) const {
  const std::size_t at = text().find(wanted);
  if (at == std::u16string::npos) throw std::invalid_argument("the text to be edited is not there");
  const auto from = static_cast<text::Position>(at);
  return {from, from + static_cast<text::Position>(wanted.size())};
}

std::string part(const base::Bytes& document, std::string_view name) {
  const zip::Archive archive = zip::Archive::open(document);
  const zip::Member* const member = archive.find(name);
  return member == nullptr ? "" : files::textOf(archive.read(*member).view);
}

std::string bodyOf(const base::Bytes& document) {
  const std::string xml = part(document, "word/document.xml");
  const std::size_t from = xml.find("<w:body>") + 8;
  return xml.substr(from, xml.find("</w:body>") - from);
}

}  // namespace pluvo::docx
