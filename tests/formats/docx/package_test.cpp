#include "docx/docx_format.h"
#include "formats/docx/document_builder.h"
#include "formats/docx/package_check.h"
#include "formats/format.h"
#include "storage/files/as_text.h"

#include <gmock/gmock.h>

namespace pluvo::docx {
namespace {

using testing::HasSubstr;
using text::View;

const std::string kWordNamespace = "xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"";

formats::Opened withSettings(const std::string& content) {
  return DocxFormat().read(documentOf("", settingsOf(content)));
}

TEST(Package, isRefusedWithACodeAndASentence) {
  std::string sheet = part(documentOf(""), "[Content_Types].xml");
  sheet.replace(sheet.find("wordprocessingml.document"), 25, "spreadsheetml.sheet");
  const std::string cutOff = mainPartOf("").substr(0, 600);
  const auto document = [](const std::string& xml) { return Parts{{"word/document.xml", xml}}; };
  const auto deep = [&](const std::string& element) {
    std::string body;
    for (int i = 0; i < 100'000; ++i) body += element;
    return document(mainPartOf(body));
  };
  const std::pair<Parts, const char*> refusals[] = {
      {{{"[Content_Types].xml", "-"}}, "damaged: .*ordinary ZIP"},
      {{{"[Content_Types].xml", "-"}, {"mimetype", "application/vnd.oasis.opendocument.text"}},
       "damaged: .*OpenDocument text"},
      {{{"[Content_Types].xml", sheet}}, "damaged: .*spreadsheet"},
      {document("-"), "damaged: .*main part"},
      {{{"_rels/.rels", "-"}}, "damaged: .*main part"},
      {{{"_rels/.rels",
         relationships({{"officeDocument", "x.xml"}, {"officeDocument", "word/document.xml"}})}},
       "damaged: .*two main parts"},
      {{{"word/_rels/document.xml.rels", relationships({{"footnotes", "a.xml"}, {"footnotes", "b.xml"}})}},
       "damaged: .*two parts"},
      {kSigned, "signed: .*signed"},
      {document("<x/>"), "damaged: .*WordprocessingML"},
      {document("<w:document " + kWordNamespace + "/>"), "damaged: .*body"},
      {document(cutOff), "damaged: .*byte"},
      {document("<!DOCTYPE x [<!ENTITY a \"b\">]>" + mainPartOf("")), "damaged: .*document type"},
      {deep("<w:sdt>"), "too-large: "},
      {deep("<w:p><w:r><w:fldChar w:fldCharType=\"begin\"/></w:r></w:p>"), "too-large: "}};
  for (const auto& [parts, said] : refusals)
    EXPECT_THAT(files::refusalOf([&, &it = parts] { open(documentOf("", it)); }),
                testing::ContainsRegex(said));
}

TEST(Package, onlyProtectionThatIsEnforcedCounts) {
  const std::pair<const char*, bool> cases[] = {{"edit='readOnly' enforcement='1'", true},
                                                {"edit='forms'", true},
                                                {"edit='readOnly' enforcement='0'", false},
                                                {"edit='none' enforcement='1'", false},
                                                {"formatting='1' enforcement='1'", false}};
  for (const auto& [attributes, isProtected] : cases) {
    const auto opened = withSettings(wml("<documentProtection " + std::string(attributes) + "/>"));
    EXPECT_EQ(opened.protection.has_value(), isProtected) << attributes;
  }
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
        "<w:documentProtection w:edit=\"forms\" " + modern + "<w:writeProtection w:recommended=\"1\" " +
            kept}) {
    const auto opened = withSettings(settings);
    EXPECT_EQ(opened.protection.has_value(), settings.find("documentProtection") != std::string::npos);
    EXPECT_EQ(opened.reservation.has_value(), settings.find("writeProtection") != std::string::npos);
    const auto check = [&](const auto& asking) {
      if (!asking) return;
      EXPECT_TRUE(asking->isLiftedBy(u"Example")) << settings;
      EXPECT_FALSE(asking->isLiftedBy(u"example")) << settings;
    };
    check(opened.protection);
    check(opened.reservation);
  }
  // A password that would take long to check is none.
  for (const auto& [turns, isTried] :
       {std::pair{"1000000", true}, {"1000001", false}, {"99999999999", false}}) {
    const std::string attributes =
        std::string(" w:edit=\"forms\" w:hash=\"eA==\" w:cryptSpinCount=\"") + turns + "\"/>";
    const auto slow = withSettings("<w:documentProtection" + attributes + "<w:writeProtection" + attributes);
    ASSERT_TRUE(slow.protection && slow.reservation);
    EXPECT_EQ(slow.protection->obstacle.empty(), isTried) << turns;
    EXPECT_EQ(slow.reservation->obstacle.empty(), isTried) << turns;
  }
  const auto free = withSettings("<w:documentProtection w:edit=\"forms\"/>").protection;
  ASSERT_TRUE(free);
  EXPECT_FALSE(free->isLiftedBy);
  const auto recommending = withSettings("<w:writeProtection w:recommended=\"1\"/>");
  EXPECT_FALSE(recommending.protection);
  ASSERT_TRUE(recommending.reservation);
  EXPECT_FALSE(recommending.reservation->isLiftedBy);
  EXPECT_FALSE(withSettings("<w:writeProtection w:recommended=\"0\"/>").reservation);
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

TEST(Package, newAttributesAreOfTheDocumentsOwnNamespace) {
  for (const char* space : {"http://purl.oclc.org/ooxml/wordprocessingml/main",
                            "http://schemas.openxmlformats.org/wordprocessingml/2006/main"}) {
    const std::string xml =
        "<document xmlns=\"" + std::string(space) + "\"><!--" + std::string(5000, ' ') +
        "http://purl.oclc.org/ooxml/wordprocessingml/main--><body><p><r><t>x</t></r></p></body></document>";
    Opened opened = open(documentOf("", {{"word/document.xml", xml}}));
    opened.model.highlight({0, 1}, 7);
    EXPECT_THAT(part(opened.written(), "word/document.xml"),
                HasSubstr("<highlight xmlns:w=\"" + std::string(space) + "\" w:val=\"yellow\"/>"));
  }
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

const std::string kNotes = "<footnotes " + kWordNamespace + "><footnote type='separator' id='0'/>";
const std::string kExtended =
    "<w15:commentsEx xmlns:w15='http://schemas.microsoft.com/office/word/2012/wordml'>";

/// A footnote, an endnote and two comments of which the second answers the first.
Parts withNotes() {
  return {{"word/footnotes.xml", wml(kNotes + "<footnote id='2'>{[foot]}</footnote>"
                                              "<footnote id='3'>{[other]}</footnote></footnotes>")},
          {"word/endnotes.xml",
           wml("<endnotes " + kWordNamespace + "><endnote id='2'>{[end]}</endnote></endnotes>")},
          {"word/comments.xml", wml("<comments " + kWordNamespace +
                                    " xmlns:w14='http://schemas.microsoft.com/office/word/2010/wordml'>"
                                    "<comment id='0'><p w14:paraId='AA'/></comment>\n"
                                    "<comment id='1'><p w14:paraId='BB'/></comment></comments>")},
          {"word/commentsExtended.xml",
           wml(kExtended + "<w15:commentEx w15:paraId='AA'/><w15:commentEx w15:paraId='BB' "
                           "w15:paraIdParent='AA' w15:done='0'/></w15:commentsEx>")}};
}

TEST(Package, notesAndCommentsGoWithTheirReferences) {
  const std::string kept =
      "<commentRangeEnd id='1'/><r><commentReference id='1'/></r><r><footnoteReference id='3'/></r>[e]}";
  const base::Bytes document = documentOf(
      wml("{[a]<r><footnoteReference id='2'/></r>[b]<r><endnoteReference id='2'/></r><commentRangeStart "
          "id='0'/>"
          "<commentRangeStart id='1'/>[c]<commentRangeEnd id='0'/><r><commentReference id='0'/></r>[d]" +
          kept),
      withNotes());
  Opened opened = open(document);
  opened.model.replace(opened.find(u"b\2c\5"), {}, View::results);
  opened.model.replace(opened.find(u"\2d"), {}, View::results);
  const base::Bytes written = opened.written();
  EXPECT_EQ(bodyOf(written), wml("{[a]<commentRangeStart id='1'/>" + kept));
  EXPECT_EQ(part(written, "word/footnotes.xml"),
            wml(kNotes + "<footnote id='3'>{[other]}</footnote></footnotes>"));
  EXPECT_EQ(part(written, "word/endnotes.xml"), "<w:endnotes " + kWordNamespace + "></w:endnotes>");
  EXPECT_THAT(part(written, "word/comments.xml"), testing::Not(HasSubstr("AA")));
  EXPECT_EQ(part(written, "word/commentsExtended.xml"),
            wml(kExtended + "<w15:commentEx w15:paraId='BB' w15:done='0'/></w15:commentsEx>"));
  EXPECT_EQ(worsened(faultsOf(document), faultsOf(written)), "");
}

TEST(Package, theRangeOfACommentGoesWhereverItBegins) {
  const std::string ys(2000, 'y');
  const std::string zs(2000, 'z');
  Opened opened = open(documentOf(wml("{[x]<commentRangeStart id='0'/>[" + ys + "]}{[" + zs +
                                      "]}<commentRangeEnd id='0'/>{[a]<r><commentReference id='0'/></r>}"),
                                  withNotes()));
  opened.model.replace(opened.find(u"a\5"), u"b", View::results);
  EXPECT_EQ(bodyOf(opened.written()), wml("{[x][" + ys + "]}{[" + zs + "]}{[b]}"));
}

}  // namespace
}  // namespace pluvo::docx
