#include "archive/archive.h"
#include "documents/docx/document_builder.h"
#include "documents/docx/package_check.h"
#include "documents/support/notation.h"
#include "docx/docx_format.h"
#include "formats/format.h"

#include <gmock/gmock.h>

namespace pluvo::docx {
namespace {

using testing::HasSubstr;
using text::View;

const std::string kWordNamespace = "xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"";

struct Refusal {
  const char* what;
  files::Bytes document;
  files::Problem problem;
  const char* sentence;
};

std::string rels(std::string_view type, std::string_view target) {
  return "<Relationships "
         "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\"><Relationship Id=\"a\" "
         "Type=\"http://schemas.openxmlformats.org/" +
         std::string(type) + "\" Target=\"" + std::string(target) +
         "\"/><Relationship Id=\"b\" "
         "Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
         "officeDocument\" Target=\"/word/document.xml\"/></Relationships>";
}

files::Bytes bytesOf(std::string_view text) { return files::Bytes::of({text.begin(), text.end()}); }

files::Bytes withSettings(const std::string& inner) {
  return documentOf(p(""),
                    {{"word/settings.xml", "<w:settings " + kWordNamespace + ">" + inner + "</w:settings>"}});
}

TEST(Package, isRefusedWithACodeAndASentence) {
  using files::Problem;
  const std::string types = part(documentOf(p("")), "[Content_Types].xml");
  std::string sheet = types;
  sheet.replace(sheet.find("wordprocessingml.document"), 25, "spreadsheetml.sheet");
  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "<w:sdt>";
  std::string fields;
  for (int i = 0; i < 100000; ++i) fields += "<w:r><w:fldChar w:fldCharType=\"begin\"/></w:r>";
  const Refusal refusals[] = {
      {"plain text", bytesOf("Dear Sir"), Problem::damaged, "plain text"},
      {"RTF", bytesOf("{\\rtf1 x}"), Problem::damaged, "RTF"},
      {"nothing", bytesOf(""), Problem::damaged, "empty"},
      {"another ZIP", documentOf("", {{"[Content_Types].xml", "-"}}), Problem::damaged, "ordinary ZIP"},
      {"OpenDocument",
       documentOf("",
                  {{"[Content_Types].xml", "-"}, {"mimetype", "application/vnd.oasis.opendocument.text"}}),
       Problem::damaged, "OpenDocument text"},
      {"a spreadsheet", documentOf("", {{"[Content_Types].xml", sheet}}), Problem::damaged, "spreadsheet"},
      {"no main part", documentOf("", {{"word/document.xml", "-"}}), Problem::damaged, "main part"},
      {"no relationships", documentOf("", {{"_rels/.rels", "-"}}), Problem::damaged, "main part"},
      {"two main parts",
       documentOf("",
                  {{"_rels/.rels", rels("officeDocument/2006/relationships/officeDocument", "other.xml")}}),
       Problem::damaged, "two main parts"},
      {"two parts of notes",
       documentOf("",
                  {{"word/_rels/document.xml.rels",
                    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
                    "<Relationship Type=\"x/footnotes\" Target=\"a.xml\"/><Relationship Type=\"x/footnotes\" "
                    "Target=\"b.xml\"/></Relationships>"}}),
       Problem::damaged, "two parts"},
      {"a signature",
       documentOf("", {{"_rels/.rels", rels("package/2006/relationships/digital-signature/origin", "x")}}),
       Problem::signature, "signed"},
      {"another root", documentOf("", {{"word/document.xml", "<x/>"}}), Problem::damaged, "WordprocessingML"},
      {"no body", documentOf("", {{"word/document.xml", "<w:document " + kWordNamespace + "/>"}}),
       Problem::damaged, "body"},
      {"cut-off XML", documentOf("", {{"word/document.xml", mainPartOf("").substr(0, 600)}}),
       Problem::damaged, "byte"},
      {"entities",
       documentOf("", {{"word/document.xml", "<!DOCTYPE x [<!ENTITY a \"b\">]>" + mainPartOf("")}}),
       Problem::damaged, "document type"},
      {"deep nesting", documentOf(deep), Problem::tooLarge, ""},
      {"deep fields", documentOf(p(fields)), Problem::tooLarge, ""},
  };
  for (const Refusal& refusal : refusals) {
    try {
      open(refusal.document);
      ADD_FAILURE() << refusal.what << " was opened";
    } catch (const files::DocumentError& error) {
      EXPECT_EQ(nameOf(error.problem()), nameOf(refusal.problem)) << refusal.what;
      EXPECT_THAT(error.what(), HasSubstr(refusal.sentence)) << refusal.what;
    }
  }
}

TEST(Package, onlyProtectionThatIsEnforcedCounts) {
  const auto isProtected = [](const char* settings) {
    return DocxFormat().read(withSettings(settings)).protection.has_value();
  };
  EXPECT_TRUE(isProtected("<w:documentProtection w:edit=\"readOnly\" w:enforcement=\"1\"/>"));
  EXPECT_TRUE(isProtected("<w:documentProtection w:edit=\"forms\"/>"));
  EXPECT_FALSE(isProtected("<w:documentProtection w:edit=\"readOnly\" w:enforcement=\"0\"/>"));
  EXPECT_FALSE(isProtected("<w:documentProtection w:edit=\"none\" w:enforcement=\"1\"/>"));
  EXPECT_FALSE(isProtected("<w:documentProtection w:formatting=\"1\" w:enforcement=\"1\"/>"));
}

TEST(Package, protectionIsLiftedByItsPassword) {
  const std::string kept =
      "w:cryptAlgorithmSid=\"4\" w:cryptSpinCount=\"100000\" w:hash=\"MUHbcmpC9AnlLsd9v3lW0j30y6E=\" "
      "w:salt=\"2Z+i7o/0EZyUNakVeWzU/w==\"/>";
  const std::string modern =
      "w:algorithmName=\"SHA-512\" w:spinCount=\"100000\" w:saltValue=\"AQIDBAUGBwgJCgsMDQ4PEA==\" "
      "w:hashValue=\""
      "sB4QFRUiYScKc9awLAg/izghewHia0y3THhcvHYNEfQ9HbUll4Boo8ZrV9N+9z163Exfdz9vZJWFFfgPwFO6mw==\"/>";
  for (const std::string& settings :
       {"<w:documentProtection w:edit=\"comments\" " + kept, "<w:writeProtection " + modern,
        "<w:documentProtection w:edit=\"forms\" " + modern + "<w:writeProtection " + kept}) {
    const auto protection = DocxFormat().read(withSettings(settings)).protection;
    ASSERT_TRUE(protection) << settings;
    EXPECT_TRUE(protection->isLiftedBy(u"Example")) << settings;
    EXPECT_FALSE(protection->isLiftedBy(u"example")) << settings;
  }
  const auto free = DocxFormat().read(withSettings("<w:documentProtection w:edit=\"forms\"/>")).protection;
  ASSERT_TRUE(free);
  EXPECT_FALSE(free->isLiftedBy);
  EXPECT_FALSE(DocxFormat().read(withSettings("<w:writeProtection w:recommended=\"1\"/>")).protection);
}

TEST(Package, theMainPartIsWhereTheRelationshipsSay) {
  const std::string types = part(documentOf(""), "[Content_Types].xml");
  std::string moved = types;
  moved.replace(moved.find("/word/document.xml"), 18, "/Text/a b.xml");
  std::string relationships = part(documentOf(""), "_rels/.rels");
  relationships.replace(relationships.find("word/document.xml"), 17, "./x/../Text/a%20b.xml");
  Opened opened = open(documentOf("", {{"[Content_Types].xml", moved},
                                       {"_rels/.rels", relationships},
                                       {"word/document.xml", "-"},
                                       {"Text/a b.xml", mainPartOf(p(run("x")))}}));
  opened.model.insertBefore(0, u"y");
  EXPECT_THAT(part(opened.written(), "Text/a b.xml"), HasSubstr("<w:t>yx</w:t>"));
}

TEST(Package, charactersThatXmlCannotHoldAreRefused) {
  const Opened opened = open(documentOf(""));
  EXPECT_EQ(opened.source->refusesText(u"Text\r\n\t\v\f\x0E\x1E\x1F 😀 \xFFFD"), std::nullopt);
  EXPECT_THAT(opened.source->refusesText(u"a\x0001").value(), HasSubstr("U+0001"));
  EXPECT_THAT(opened.source->refusesText(u"\xFFFF").value(), HasSubstr("U+FFFF"));
  EXPECT_THAT(opened.source->refusesText(std::u16string(1, 0xD83D)).value(), HasSubstr("U+D83D"));
}

TEST(Package, anotherEncodingIsKept) {
  std::string wide = "\xFF\xFE";
  for (const char c : mainPartOf(p(run("x")))) wide += {c, '\0'};
  Opened opened = open(documentOf("", {{"word/document.xml", wide}}));
  opened.model.insertBefore(0, u"é");
  std::string expected = wide;
  expected.insert(expected.find(std::string("x\0<", 3)), "\xE9\0", 2);
  EXPECT_EQ(part(opened.written(), "word/document.xml"), expected);
}

struct NoteParts {
  Parts parts;
  std::string body;
};

/// A footnote, an endnote and two comments of which the second answers the first.
NoteParts withNotes() {
  const std::string w14 = " xmlns:w14=\"http://schemas.microsoft.com/office/word/2010/wordml\"";
  const auto note = [](const char* name, const char* id, const char* text) {
    return "<w:" + std::string(name) + " w:id=\"" + id + "\">" + p(run(text)) + "</w:" + name + ">";
  };
  NoteParts result;
  result.parts["word/footnotes.xml"] =
      "<w:footnotes " + kWordNamespace + "><w:footnote w:type=\"separator\" w:id=\"0\"/>" +
      note("footnote", "2", "foot") + note("footnote", "3", "other") + "</w:footnotes>";
  result.parts["word/endnotes.xml"] =
      "<w:endnotes " + kWordNamespace + ">" + note("endnote", "2", "end") + "</w:endnotes>";
  result.parts["word/comments.xml"] =
      "<w:comments " + kWordNamespace + w14 +
      "><w:comment w:id=\"0\"><w:p w14:paraId=\"AA\"/></w:comment>\n"
      "<w:comment w:id=\"1\"><w:p w14:paraId=\"BB\"/></w:comment></w:comments>";
  result.parts["word/commentsExtended.xml"] =
      "<w15:commentsEx xmlns:w15=\"http://schemas.microsoft.com/office/word/2012/wordml\"><w15:commentEx "
      "w15:paraId=\"AA\"/>"
      "<w15:commentEx w15:paraId=\"BB\" w15:paraIdParent=\"AA\" w15:done=\"0\"/></w15:commentsEx>";
  const auto reference = [](const char* name, const char* id) {
    return "<w:r><w:" + std::string(name) + "Reference w:id=\"" + id + "\"/></w:r>";
  };
  result.body = p(run("a") + reference("footnote", "2") + run("b") + reference("endnote", "2") +
                  "<w:commentRangeStart w:id=\"0\"/><w:commentRangeStart w:id=\"1\"/>" + run("c") +
                  "<w:commentRangeEnd w:id=\"0\"/>" + reference("comment", "0") + run("d") +
                  "<w:commentRangeEnd w:id=\"1\"/>" + reference("comment", "1") + reference("footnote", "3") +
                  run("e"));
  return result;
}

TEST(Package, notesAndCommentsGoWithTheirReferences) {
  const NoteParts notes = withNotes();
  const files::Bytes document = documentOf(notes.body, notes.parts);
  Opened opened = open(document);
  opened.model.replace(opened.find(u"b\x02"
                                   u"c\x05"),
                       {}, View::results);
  opened.model.replace(opened.find(u"\x02"
                                   u"d"),
                       {}, View::results);
  const files::Bytes written = opened.written();
  EXPECT_EQ(bodyOf(written),
            p(run("a") +
              "<w:commentRangeStart w:id=\"1\"/><w:commentRangeEnd w:id=\"1\"/>"
              "<w:r><w:commentReference w:id=\"1\"/></w:r><w:r><w:footnoteReference w:id=\"3\"/></w:r>" +
              run("e")));
  EXPECT_EQ(part(written, "word/footnotes.xml"),
            "<w:footnotes " + kWordNamespace +
                "><w:footnote w:type=\"separator\" w:id=\"0\"/><w:footnote w:id=\"3\">" + p(run("other")) +
                "</w:footnote></w:footnotes>");
  EXPECT_EQ(part(written, "word/endnotes.xml"), "<w:endnotes " + kWordNamespace + "></w:endnotes>");
  EXPECT_THAT(part(written, "word/comments.xml"), testing::Not(HasSubstr("AA")));
  EXPECT_EQ(part(written, "word/commentsExtended.xml"),
            "<w15:commentsEx xmlns:w15=\"http://schemas.microsoft.com/office/word/2012/wordml\">"
            "<w15:commentEx w15:paraId=\"BB\" w15:done=\"0\"/></w15:commentsEx>");
  EXPECT_EQ(worsened(faultsOf(document), faultsOf(written)), "");
}

TEST(Package, theRangeOfACommentGoesWhereverItBegins) {
  const NoteParts notes = withNotes();
  const std::string before = p(run("x") + "<w:commentRangeStart w:id=\"0\"/>" + run(std::string(2000, 'y')));
  const std::string filling = p(run(std::string(2000, 'z'))) + "<w:commentRangeEnd w:id=\"0\"/>";
  const std::string last = p(run("a") + "<w:r><w:commentReference w:id=\"0\"/></w:r>");
  Opened opened = open(documentOf(before + filling + last, notes.parts));
  opened.model.replace(opened.find(u"a\x05"), u"b", View::results);
  EXPECT_EQ(bodyOf(opened.written()),
            p(run("x") + run(std::string(2000, 'y'))) + p(run(std::string(2000, 'z'))) + p(run("b")));
}

TEST(Package, otherMembersAreCopied) {
  const files::Bytes document = documentOf(p(run("x")), {{"word/media/a.bin", std::string(1000, 'q')}});
  Opened opened = open(document);
  opened.model.highlight({0, 1}, 7);
  const files::Bytes written = opened.written();
  const archive::Archive before = archive::Archive::open(document);
  const archive::Archive after = archive::Archive::open(written);
  ASSERT_EQ(before.members().size(), after.members().size());
  for (std::size_t i = 0; i < before.members().size(); ++i) {
    const archive::Member& old = before.members()[i];
    const archive::Member& now = after.members()[i];
    EXPECT_EQ(old.name, now.name);
    if (old.name == "word/document.xml") continue;
    const auto packed = [](const files::Bytes& bytes, const archive::Member& member) {
      return std::vector<std::uint8_t>(bytes.view.begin() + static_cast<std::ptrdiff_t>(member.header),
                                       bytes.view.begin() + static_cast<std::ptrdiff_t>(member.next));
    };
    EXPECT_EQ(packed(document, old), packed(written, now)) << old.name;
  }
}

}  // namespace
}  // namespace pluvo::docx
