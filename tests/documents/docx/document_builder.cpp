#include "documents/docx/document_builder.h"

#include "archive/archive.h"
#include "documents/archive/zip_builder.h"
#include "docx/docx_format.h"

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

files::Bytes documentOf(std::string_view body, Parts parts) {
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
  archive::Zip zip;
  for (auto& [name, contents] : all) {
    if (contents != "-") zip.entries.push_back({name, contents});
  }
  const std::string bytes = archive::build(zip).bytes;
  return files::Bytes::of({bytes.begin(), bytes.end()});
}

std::string run(std::string_view text, std::string_view properties) {
  const bool edge = text.starts_with(' ') || text.ends_with(' ');
  return "<w:r>" + (properties.empty() ? "" : "<w:rPr>" + std::string(properties) + "</w:rPr>") +
         (edge ? "<w:t xml:space=\"preserve\">" : "<w:t>") + std::string(text) + "</w:t></w:r>";
}

std::string p(std::string_view content) { return "<w:p>" + std::string(content) + "</w:p>"; }

Opened open(files::Bytes bytes) {
  formats::Opened opened = DocxFormat().read(std::move(bytes));
  return {model::Model(std::move(opened.content)), std::move(opened.source)};
}

files::Bytes Opened::written() const {
  files::MemoryOutput out;
  source->write(model, out);
  return files::Bytes::of(std::move(out.bytes()));
}

text::Span Opened::find(std::u16string_view wanted) const {
  const std::size_t at = text().find(wanted);
  if (at == std::u16string::npos) throw std::invalid_argument("the text to be edited is not there");
  const auto from = static_cast<text::Position>(at);
  return {from, from + static_cast<text::Position>(wanted.size())};
}

std::string part(const files::Bytes& document, std::string_view name) {
  const archive::Archive archive = archive::Archive::open(document);
  const archive::Member* const member = archive.find(name);
  if (member == nullptr) return {};
  const files::Bytes bytes = archive.read(*member);
  return {bytes.view.begin(), bytes.view.end()};
}

std::string bodyOf(const files::Bytes& document) {
  const std::string xml = part(document, "word/document.xml");
  const std::size_t from = xml.find("<w:body>") + 8;
  return xml.substr(from, xml.find("</w:body>") - from);
}

}  // namespace pluvo::docx
