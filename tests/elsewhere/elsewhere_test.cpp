#include "elsewhere/elsewhere.h"

#include "document/place_names.h"
#include "elsewhere/words.h"
#include "formats/docx/document_builder.h"
#include "storage/files/as_text.h"

#include <gtest/gtest.h>

namespace pluvo::elsewhere {
namespace {

using docx::Parts;
using docx::wml;

/// "headers 1, hidden 2": what was found, and of what was not looked into or damaged the name.
std::string told(const Elsewhere& found) {
  std::string result;
  const auto add = [&](std::string_view key, std::int64_t count) {
    if (count == 0) return;
    result +=
        (result.empty() ? "" : ", ") + std::string(key) + (count < 0 ? "" : " " + std::to_string(count));
  };
  for (std::size_t i = 0; i < found.stories.size(); ++i)
    add(keyOf(static_cast<document::Place>(i)), found.stories[i]);
  for (std::size_t i = 0; i < found.unreached.size(); ++i)
    add(keyOf(static_cast<formats::Unreached>(i)), found.unreached[i]);
  for (std::size_t i = 0; i < found.notLookedInto.size(); ++i)
    add(keyOf(static_cast<formats::Opaque>(i)), found.notLookedInto[i] ? -1 : 0);
  for (const Damage& damage : found.damaged) add("damaged " + damage.part, -1);
  return result;
}

engine::Request requestFor(std::u16string begin) {
  engine::Request request;
  request.begin = std::move(begin);
  request.distance = 0;
  request.unit = engine::kEntireDocument;
  return request;
}
const engine::Request kSecret = requestFor(u"SECRET");

std::string look(const docx::Opened& document, const engine::Request& request = kSecret) {
  return told(lookElsewhere(*document.source, document.document, {&request, 1}));
}
std::string look(const std::string& body, Parts parts = {}, const engine::Request& request = kSecret) {
  return look(docx::open(docx::documentOf(body, std::move(parts))), request);
}

constexpr std::string_view kNamespaces =
    " xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\""
    " xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\""
    " xmlns:m=\"http://schemas.openxmlformats.org/officeDocument/2006/math\""
    " xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\""
    " xmlns:w15=\"http://schemas.microsoft.com/office/word/2012/wordml\""
    " xmlns:v=\"urn:schemas-microsoft-com:vml\"";

/// A part with such a root element.
std::string part(std::string_view root, std::string_view inner) {
  return "<" + std::string(root) + std::string(kNamespaces) + ">" + std::string(inner) + "</" +
         std::string(root) + ">";
}

/// The main part's relationships, and a part.
Parts withPart(const char* type, std::string content, const char* name = "other.xml") {
  return {{"word/_rels/document.xml.rels", docx::relationships({{type, name}})},
          {"word/" + std::string(name), std::move(content)}};
}
Parts withRootPart(const char* type, std::string content) {
  return {
      {"_rels/.rels", docx::relationships({{"officeDocument", "word/document.xml"}, {type, "other.xml"}})},
      {"other.xml", std::move(content)}};
}
Parts with(Parts parts, const Parts& more) {
  parts.insert(more.begin(), more.end());
  return parts;
}

/// Drawings, as runs, with their contents.
std::string shape(const std::string& inner) {
  return "<w:r><w:drawing xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\"><wp:anchor>"
         "<a:graphic><a:graphicData>" +
         inner + "</a:graphicData></a:graphic></wp:anchor></w:drawing></w:r>";
}
std::string box(const std::string& content) {
  return "<wps:wsp><wps:txbx><w:txbxContent>" + wml(content) + "</w:txbxContent></wps:txbx></wps:wsp>";
}
std::string vml(const std::string& inner) {
  return "<w:pict xmlns:v=\"urn:schemas-microsoft-com:vml\"><v:shape>" + inner + "</v:shape></w:pict>";
}
std::string vmlBox(const std::string& content) {
  return vml("<v:textbox><w:txbxContent>" + wml(content) + "</w:txbxContent></v:textbox>");
}
std::string drawing(const std::string& frame) {
  return wml("{<r><drawing><wp:inline>") + frame + wml("</wp:inline></drawing></r>}");
}
std::string twins(const std::string& choice, const std::string& fallback) {
  return "<w:p><w:r><mc:AlternateContent><mc:Choice Requires=\"wps\"><w:drawing><wp:anchor>" + box(choice) +
         "</wp:anchor></w:drawing></mc:Choice><mc:Fallback>" + vmlBox(fallback) +
         "</mc:Fallback></mc:AlternateContent></w:r></w:p>";
}

const std::string kNotes =
    "<w:footnote w:type=\"separator\" w:id=\"-1\"><w:p><w:r><w:separator/></w:r></w:p></w:footnote>";
const std::string kHtml = "<html><body><p>a <b>SEC</b>RET &amp; more</p></body></html>";
const std::string kRtf = "{\\rtf1{\\fonttbl SECRET;}\\pard a \\b SEC\\b0 RET\\par}";

std::string bound(const std::string& text, const std::string& more = "") {
  return wml("{<sdt><sdtPr>") + more +
         "<w:dataBinding w:prefixMappings=\"xmlns:n='urn:n'\" w:xpath=\"/n:a[1]/n:b[2]\" "
         "w:storeItemID=\"{ab-1}\"/>" +
         wml("</sdtPr><sdtContent>[" + text + "]</sdtContent></sdt>}");
}
Parts boundTo(const std::string& value) {
  return with(withPart("customXml", "<a xmlns=\"urn:n\"><b>SECRET not this</b><b>" + value + "</b></a>"),
              {{"word/_rels/other.xml.rels", docx::relationships({{"customXmlProps", "props.xml"}})},
               {"word/props.xml",
                "<ds:datastoreItem ds:itemID=\"{AB-1}\" xmlns:ds=\"http://schemas.openxmlformats.org/"
                "officeDocument/2006/customXml\"/>"}});
}
std::string embedded(const std::string& body, Parts parts = {}) {
  return files::textOf(docx::documentOf(body, std::move(parts)).view);
}

struct Case {
  const char* what;
  std::string body;
  Parts parts;
  const char* expected;
};

TEST(Elsewhere, tellsEachPlaceWithItsCount) {
  const std::string a = wml("{[a]}");
  const std::string secret = wml("{[a SEC][RET]}");
  const Case cases[] = {
      {"main text alone", wml("{[SECRET]}"), {}, ""},
      {"a header", a, withPart("header", part("w:hdr", secret)), "headers 1"},
      {"a footer", a, withPart("footer", part("w:ftr", secret + secret)), "footers 2"},
      {"a footnote, and separators", a,
       withPart("footnotes",
                part("w:footnotes", kNotes + "<w:footnote w:id=\"1\">" + secret + "</w:footnote>")),
       "footnotes 1"},
      {"an endnote", a,
       withPart("endnotes", part("w:endnotes", "<w:endnote w:id=\"1\">" + secret + "</w:endnote>")),
       "endnotes 1"},
      {"a comment and its author", a,
       withPart("comments", part("w:comments", "<w:comment w:id=\"1\" w:author=\"a SECRET man\">" + secret +
                                                   "</w:comment>")),
       "comments 1, people 1"},
      {"no match runs from note to note", a,
       withPart("footnotes",
                part("w:footnotes",
                     wml("<footnote id='1'>{[SEC]}</footnote><footnote id='2'>{[RET]}</footnote>"))),
       ""},
      {"a table and a tracked change in a header", a,
       withPart(
           "header",
           part("w:hdr", wml("<T><tc>{<ins>[SEC]</ins><del><r><delText>RET</delText></r></del>}</tc></T>"))),
       "headers 1"},
      {"a box", "<w:p>" + shape(box("{[SECRET]}")) + "</w:p>", {}, "boxes 1"},
      {"two boxes in a group",
       "<w:p>" + shape(box("{[SECRET]}") + box("{[SECRET]}")) + "</w:p>",
       {},
       "boxes 2"},
      {"an older box", "<w:p><w:r>" + vmlBox("{[SECRET]}") + "</w:r></w:p>", {}, "boxes 1"},
      {"a box twice in the file", twins("{[SECRET]}", "{[SECRET]}"), {}, "boxes 1"},
      {"a box that is another in older programs", twins("{[a]}", "{[SECRET]}"), {}, "boxes 1"},
      {"a box in a box",
       "<w:p><w:r>" + vmlBox("{[SECRET]<r>" + vmlBox("{[a SECRET]}") + "</r>}") + "</w:r></w:p>",
       {},
       "boxes 2"},
      {"a box in a header", a,
       withPart("header", part("w:hdr", "<w:p><w:r>" + vmlBox("{[SECRET]}") + "</w:r></w:p>")), "boxes 1"},
      {"a box in a table after others",
       a + a + wml("<T><tc>{<r>") + vmlBox("{[SECRET]}") + wml("</r>}</tc></T>{[x]}"),
       {},
       "boxes 1"},
      {"hidden text", wml("{[a ][<vanish/>|SEC][RET]}"), {}, "hidden 1"},
      {"hidden text in a header", a, withPart("header", part("w:hdr", wml("{[<vanish/>|SECRET]}"))),
       "hidden 1"},
      {"a field's code", wml("{^@DATE SECRET@%[x]$}"), {}, "fieldCodes 1"},
      {"a code in a result", wml("{^@TOC@%^@REF SECRET@%[x]$$}"), {}, "fieldCodes 1"},
      {"no match runs from a code into the text", wml("{^@DATE SEC@%[RET]$[RET]}"), {}, ""},
      {"a button's text", wml("{^@ MacroButton Go SECRET@$[x]}"), {}, "computed 1"},
      {"another button's text", wml("{^@GOTOBUTTON Go SECRET@$[x]}"), {}, "computed 1"},
      {"a button's macro", wml("{^@MACROBUTTON SECRET x@$}"), {}, "fieldCodes 1"},
      {"moved text, which is main text", wml("{<moveFrom>[SECRET]</moveFrom>}"), {}, ""},
      {"a formula",
       wml("{<m:oMath><m:r><m:t>SEC</m:t></m:r><m:r><m:t>RET</m:t></m:r></m:oMath>}"),
       {},
       "formulas 1"},
      {"a phonetic guide",
       wml("{<r><ruby><rt>[SECRET]</rt><rubyBase>[x]</rubyBase></ruby></r>}"),
       {},
       "guides 1"},
      {"a guided text amid others",
       wml("{<r><t>x</t><ruby><rt>[y]</rt><rubyBase>[SECRET]</rubyBase></ruby></r>}"),
       {},
       "guides 1"},
      {"WordArt",
       "<w:p><w:r>" + vml("<v:textpath string=\"a SECRET b\"/>") + "</w:r></w:p>",
       {},
       "wordArt 1"},
      {"text of a drawing",
       "<w:p>" + shape("<a:p><a:r><a:t>SEC</a:t></a:r><a:r><a:t>RET</a:t></a:r></a:p>") + "</w:p>",
       {},
       "wordArt 1"},
      {"texts of a picture, once more in its frame",
       drawing("<wp:docPr id=\"1\" name=\"n\" descr=\"SECRET\" title=\"a SECRET\"/><pic:cNvPr "
               "xmlns:pic=\"http://schemas.openxmlformats.org/drawingml/2006/picture\" descr=\"SECRET\"/>"),
       {},
       "pictureTexts 2"},
      {"a chart and its numbers", a,
       withPart("chart",
                part("c", "<a:p><a:r><a:t>SECRET</a:t></a:r></a:p><cat><v>SECRET</v><f>SECRET!A1</f></cat>")),
       "charts 2"},
      {"SmartArt and its drawing",
       a,
       {{"word/_rels/document.xml.rels",
         docx::relationships({{"diagramDrawing", "d.xml"}, {"diagramData", "e.xml"}})},
        {"word/d.xml", part("d", "<a:p><a:t>SECRET</a:t></a:p><a:p><a:t>SECRET of old</a:t></a:p>")},
        {"word/e.xml", part("e", "<a:p><a:t>SECRET</a:t></a:p>")}},
       "smartArt 2"},
      {"an imported page", a, withPart("aFChunk", kHtml, "c.html"), "chunks 1"},
      {"imported rich text", a, withPart("aFChunk", kRtf, "c.rtf"), "chunks 1"},
      {"an imported mail", a,
       withPart("aFChunk", "MIME-Version: 1.0\r\n\r\n<html>SEC=\r\nRE=54</html>", "c.mht"), "chunks 1"},
      {"an imported document", a, withPart("aFChunk", embedded(secret), "c.docx"), "chunks 1"},
      {"an embedded document, all of it", a,
       withPart("package", embedded(secret, withPart("header", part("w:hdr", secret))), "e.docx"),
       "embedded 2"},
      {"an embedded sheet", a,
       withPart(
           "package",
           files::textOf(
               docx::documentOf(
                   "", {{"word/document.xml", "-"},
                        {"xl/sharedStrings.xml", "<sst><si><r><t>SEC</t></r><r><t>RET</t></r></si></sst>"},
                        {"xl/w.xml", "<s><sheet name=\"SECRET\"/><c t=\"s\"><v>1</v></c></s>"}})
                   .view),
           "e.xlsx"),
       "embedded 2"},
      {"one level only", a,
       withPart("package", embedded(a, withPart("package", embedded(secret), "e.docx")), "e.docx"),
       "objects"},
      {"properties, but no program's name", a,
       withRootPart("extended-properties",
                    "<Properties><Application>SECRET</Application><Company>SECRET</Company></Properties>"),
       "properties 1"},
      {"custom XML, values too", a, withPart("customXml", "<a b=\"SECRET\">SECRET<c>SECRET</c></a>"),
       "customXml 3"},
      {"variables", a,
       withPart("settings", part("w:settings",
                                 "<w:docVars><w:docVar w:name=\"SECRET\" w:val=\"a SECRET\"/></w:docVars>")),
       "variables 2"},
      {"the glossary with its headers", a,
       with(withPart("glossaryDocument",
                     part("w:glossaryDocument", "<w:docParts><w:docPart><w:docPartBody>" + secret +
                                                    "</w:docPartBody></w:docPart></w:docParts>")),
            {{"word/_rels/other.xml.rels", docx::relationships({{"header", "h.xml"}})},
             {"word/h.xml", part("w:hdr", secret)}}),
       "glossary 2"},
      {"people", a, withPart("people", part("w15:people", "<w15:person w15:author=\"SECRET\"/>")),
       "people 1"},
      {"what is not looked into",
       a,
       {{"word/_rels/document.xml.rels",
         docx::relationships({{"oleObject", "o.bin"}, {"image", "i.png"}, {"vbaProject", "v.bin"}})},
        {"word/o.bin", "SECRET"},
        {"word/i.png", "SECRET"},
        {"word/v.bin", "SECRET"}},
       "objects, pictures, macros"},
      {"damage, and what comes before and after it",
       a,
       {{"word/_rels/document.xml.rels",
         docx::relationships({{"header", "h.xml"}, {"package", "e.zip"}, {"footer", "f.xml"}})},
        {"word/h.xml", "<w:hdr " + std::string(kNamespaces) + ">" + secret + "<x"},
        {"word/e.zip", "PK\3\4"},
        {"word/f.xml", part("w:ftr", secret)}},
       "footers 1, damaged word/h.xml, damaged word/e.zip"},
      {"data that a control shows instead", bound("x"), boundTo("SECRET"), "computed 1, customXml 2"},
      {"data that it shows already", bound("SECRET"), boundTo("SECRET"), "customXml 2"},
      {"what a choice shows for its data",
       bound("x", "<w:dropDownList><w:listItem w:displayText=\"SECRET\" w:value=\"1\"/></w:dropDownList>"),
       boundTo("1"), "computed 1, customXml 1"},
  };
  for (const Case& it : cases) EXPECT_EQ(look(it.body, it.parts), it.expected) << it.what;
}

TEST(Elsewhere, countsAsTheRequestDoes) {
  engine::Request blocks = kSecret;
  blocks.end = u"end";
  blocks.distance = 2;
  blocks.unit = engine::kWords;
  engine::Request codes = kSecret;
  codes.showFieldCodes = true;
  engine::Request exact = kSecret;
  exact.matchCase = exact.wholeWords = true;
  engine::Request lines = requestFor(u"one\n two");
  const Parts sections = {
      {"word/_rels/document.xml.rels",
       docx::relationships({{"header", "h.xml"}, {"header", "h.xml"}, {"header", "H.xml"}})},
      {"word/h.xml", part("w:hdr", wml("{[SECRET]}"))}};
  const std::tuple<const char*, engine::Request, std::string, Parts, const char*> cases[] = {
      {"blocks, not beginnings", blocks, "",
       withPart("header", part("w:hdr", wml("{[SECRET a end, SECRET a b c d end. secret x END]}"))),
       "headers 2"},
      {"a header of several sections", kSecret, "", sections, "headers 1"},
      {"codes", codes, wml("{^@SECRET@%[SECRET]$}"), {}, "fieldResults 1"},
      {"a button in codes", codes, wml("{^@MACROBUTTON x SECRET@$}"), {}, ""},
      {"case and whole words", exact, "",
       withRootPart("core-properties", "<p><a>secret</a><a>SECRETS</a><a>a SECRET.</a></p>"), "properties 1"},
      {"lines", lines, "", withPart("header", part("w:hdr", wml("{[one]}{[ two]}{[one]<r><br/></r>[ two]}"))),
       "headers 2"},
      {"nothing asked for", requestFor(u""), "", sections, ""}};
  for (const auto& [what, request, body, parts, expected] : cases)
    EXPECT_EQ(look(body, parts, request), expected) << what;
}

TEST(Elsewhere, leavesOutWhatThePassTookAlongAndWrote) {
  const std::string body = wml("{[one ]<r><footnoteReference id='1'/></r><r>") + vmlBox("{[SECRET]}") +
                           wml("</r>[ two]<m:oMath><m:r><m:t>SECRET</m:t></m:r></m:oMath>[<vanish/>|three]") +
                           "<mc:AlternateContent><mc:Choice Requires=\"wps\">" + shape(box("{[SECRET]}")) +
                           "</mc:Choice><mc:Fallback><w:r>" + vmlBox("{[SECRET]}") +
                           "</w:r></mc:Fallback></mc:AlternateContent>" + wml("[ four]}{[x]}");
  const Parts notes = {
      {"word/footnotes.xml", part("w:footnotes", wml("<footnote id='1'>{[SECRET]}</footnote>"))}};
  const std::tuple<std::u16string, std::u16string, const char*> cases[] = {
      {u"x", u"y", "footnotes 1, boxes 2, formulas 1"},
      {u"one \u0002", u"", "boxes 2, formulas 1"},
      {u"\u0001 two", u"", "footnotes 1, boxes 1, formulas 1"},
      {u"\u0001three\u0008", u"", "footnotes 1, boxes 1"},
      {u"three", u"SECRET", "footnotes 1, boxes 2, formulas 1"}};
  for (const auto& [from, to, expected] : cases) {
    docx::Opened document = docx::open(docx::documentOf(body, notes));
    document.model.replace(document.find(from), to, text::View::results);
    EXPECT_EQ(look(document), expected);
  }
}

TEST(Elsewhere, unpacksNoMoreThanASoundDocumentHolds) {
  std::string relations =
      "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">";
  Parts parts;
  const std::string blanks = "<a>" + std::string(std::size_t{4} << 20U, ' ') + "SECRET</a>";
  const std::string sheet = embedded("", {{"word/document.xml", "-"}, {"a.xml", blanks}});
  for (int i = 0; i < 12; ++i) {
    const std::string name = "e" + std::to_string(i) + ".bin";
    relations +=
        "<Relationship Id=\"r" + std::to_string(i) + "\" Type=\"x/package\" Target=\"" + name + "\"/>";
    parts["word/" + name] = sheet;
  }
  parts["word/_rels/document.xml.rels"] = relations + "</Relationships>";
  EXPECT_EQ(look("", std::move(parts)), "embedded 7, damaged word/e7.bin/a.xml");
}

TEST(Elsewhere, IsToldInWords) {
  Elsewhere found;
  EXPECT_EQ(inWords(found), "");
  EXPECT_FALSE(needsCare(found));
  found.damaged.push_back({"a.xml", "It is cut off."});
  EXPECT_EQ(inWords(found), "1 part could not be read");
  EXPECT_TRUE(needsCare(found));
  found.damaged.push_back({"b.xml", "The part b.xml is cut off."});
  EXPECT_EQ(damageInWords(found), "a.xml: It is cut off. The part b.xml is cut off.");
  found.unreached[0] = 2;
  EXPECT_EQ(inWords(found), "the beginning occurs in hidden text (2); 2 parts could not be read");
  found.stories[1] = 1;
  found.stories[2] = 2;
  found.unreached[1] = 1;
  found.notLookedInto[4] = true;
  Elsewhere twice = found;
  twice += found;
  twice.stories[6] = 1;
  EXPECT_EQ(blocksIn(twice), 7);
  EXPECT_EQ(occurrencesIn(twice), 6);
  twice += Elsewhere();
  EXPECT_EQ(notLookedIntoInWords(twice), "text that scripts write");
  EXPECT_EQ(
      inWords(twice),
      "2 blocks in headers, 4 in footers and 1 in text boxes; the beginning also occurs in hidden text (4) "
      "and field codes (2); 4 parts could not be read");
  for (int i = 0; i < 7; ++i) twice += found;
  EXPECT_TRUE(damageInWords(twice).ends_with("is cut off. And 8 more."));
}

/// Scripts read the keys.
TEST(Elsewhere, NamesItsPlaces) {
  std::string keys;
  std::string words;
  const auto add = [&](auto kind) {
    keys += std::string(keyOf(kind)) + " ";
    words += std::string(wordsOf(kind)) + ", ";
  };
  for (std::size_t i = 0; i < formats::kUnreached; ++i) add(static_cast<formats::Unreached>(i));
  for (std::size_t i = 0; i < formats::kOpaque; ++i) add(static_cast<formats::Opaque>(i));
  EXPECT_EQ(
      keys,
      "hidden fieldCodes fieldResults computed charts formulas wordArt smartArt guides chunks pictureTexts "
      "properties customXml variables glossary people embedded pageComments scripts styleSheets templates "
      "formFields earlier otherPrograms objects pictures macros thumbnail scriptedText ");
  EXPECT_EQ(
      words,
      "hidden text, field codes, field results, text that Word computes, charts, formulas, WordArt, "
      "SmartArt, phonetic guides, imported files, alternative texts, document properties, custom XML, "
      "document variables, glossary entries, names of people, embedded documents, comments of the page's "
      "source, scripts, style sheets, templates, form fields, text of earlier versions, data of other "
      "programs, embedded objects, pictures, macros, the thumbnail, text that scripts write, ");
}

}  // namespace
}  // namespace pluvo::elsewhere
