#include "document/place.h"
#include "document/same_document.h"
#include "docx/docx_format.h"
#include "errors/fault.h"
#include "formats/docx/document_builder.h"
#include "formats/docx/package_check.h"

#include <gtest/gtest.h>

#include <regex>
#include <tuple>

namespace pluvo::docx {
namespace {

using document::Place;
using text::View;

const std::string kWordOnly = " xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main'";

/// A part with this root, as w:ROOT, around markup written short.
std::string partOf(const std::string& root, const std::string& inner) {
  return "<w:" + root + kWordOnly + ">" + wml(inner) + "</w:" + root + ">\n<!-- end -->";
}

std::string newer(const std::string& boxes) {
  return "<drawing><wp:inline>" + boxes + "</wp:inline></drawing>";
}
std::string older(const std::string& boxes) { return "<pict><shape>" + boxes + "</shape></pict>"; }
std::string box(const std::string& inner) { return "<txbxContent>" + inner + "</txbxContent>"; }
std::string choices(const std::string& first, const std::string& second) {
  return "{[a]<r><A><mc:Choice Requires='wps'>" + newer(first) + "</mc:Choice><mc:Choice Requires='new'>" +
         older(second) + "</mc:Choice><mc:Fallback>" + older(second) + "</mc:Fallback></A></r>[b]}";
}

struct Case {
  const char* name;
  Place place;
  std::string body;
  Parts parts;
  int stories = 2;  ///< that the document has
  int found = 1;
};

std::vector<Case> cases() {
  const Parts pages = {{"word/_rels/document.xml.rels",
                        relationships({{"header", "h2.xml"}, {"footer", "f1.xml"}, {"header", "h1.xml"}})},
                       {"word/h1.xml", partOf("hdr", "{[SECRET]}")},
                       {"word/h2.xml", partOf("hdr", "{[two]}")},
                       {"word/f1.xml", partOf("ftr", "{[foot SECRET]}")}};
  const std::string section = "<sectPr><headerReference type='even' r:id='rId3'/></sectPr>";
  const auto header = [](const std::string& inner) {
    return Parts{{"word/_rels/document.xml.rels", relationships({{"header", "h.xml"}})},
                 {"word/h.xml", partOf("hdr", inner)}};
  };
  const auto notes = [](const std::string& kind, const std::string& inner) {
    return Parts{{"word/" + kind + "s.xml",
                  partOf(kind + "s", "<" + kind + " type='separator' id='-1'>{[x]}</" + kind + "><" + kind +
                                         " id='1' author='SEC' date='2026'>" + inner + "</" + kind + ">")}};
  };
  const auto boxed = [](const std::string& inner) {
    const std::string table = box("<T><tc>" + inner + "</tc></T>{}");
    return choices(table, table);
  };
  const std::string secret = "{[one SE][<b/>|CRET two]}{}";
  return {
      {"headers", Place::headers, "{<pPr>" + section + "</pPr>[a]}{<pPr>" + section + "</pPr>}{}", pages, 4},
      {"footers", Place::footers, "{}", pages, 4},
      {"footnotes", Place::footnotes, "{[a]<r><footnoteReference id='1'/></r>}",
       notes("footnote", "{<r><footnoteRef/><t>SECRET</t></r>}")},
      {"endnotes", Place::endnotes, "{<r><endnoteReference id='1'/></r>}", notes("endnote", secret)},
      {"comments", Place::comments, "{<r><commentReference id='1'/></r>}", notes("comment", secret), 3},
      {"drawings", Place::boxes, "{<r>" + newer(box(secret)) + "</r>}", {}},
      {"old drawings", Place::boxes, "{<r>" + older(box(secret)) + "</r>}", {}},
      {"objects", Place::boxes, "{<r><object>" + box(secret) + "</object></r>}", {}},
      {"several alternatives", Place::boxes, choices(box(secret), box(secret)), {}},
      {"an alternative without box", Place::boxes, choices(box(secret), ""), {}},
      {"groups",
       Place::boxes,
       choices("<new:g>" + box("{[x]}") + "<new:g>" + box(secret) + "</new:g></new:g>",
               box("{[x]}") + box(secret)),
       {},
       3},
      {"canvases",
       Place::boxes,
       choices("<new:wpc><new:wsp>" + box(secret) + "</new:wsp></new:wpc>",
               "<group><shape>" + box(secret) + "</shape></group>"),
       {}},
      {"tables", Place::boxes, "<T><tc>" + choices(box(secret), box(secret)) + "</tc></T>{}", {}},
      {"tables in boxes",
       Place::boxes,
       choices(box("<T><tc>" + secret + "</tc></T>{}"), box("<T><tc>" + secret + "</tc></T>{}")),
       {}},
      {"boxes in boxes",
       Place::boxes,
       choices(box("{[o]}" + choices(box(secret), box(secret))),
               box("{[o]}{[a]<r>" + older(box(secret)) + "</r>[b]}")),
       {},
       3},
      {"boxes beside text",
       Place::boxes,
       choices(box("{[SECRET]}" + choices(box(secret), box(secret))),
               box("{[SECRET]}" + choices(box(secret), box(secret)))),
       {},
       3,
       2},
      {"comments in boxes in tables in boxes", Place::comments,
       boxed(boxed("{[n]<r><commentReference id='1'/></r>}")), notes("comment", secret), 5},
      {"boxes in headers", Place::boxes, "{}", header("{<r>" + older(box(secret)) + "</r>}"), 3},
      {"boxes in notes", Place::boxes, "{<r><footnoteReference id='1'/></r>}",
       notes("footnote", "{[n]<r>" + older(box(secret)) + "</r>}"), 3},
      {"alternatives of paragraphs",
       Place::boxes,
       "<A><mc:Choice Requires='w14'>{<r>" + newer(box(secret)) + "</r>}</mc:Choice><mc:Fallback>{<r>" +
           older(box(secret)) + "</r>}</mc:Fallback></A>{}",
       {}},
      {"notices",
       Place::footnotes,
       "{}",
       {{"word/footnotes.xml",
         partOf("footnotes", "<footnote type='continuationNotice' id='0'>{[SECRET]}</footnote>")}}}};
}

std::u16string textOf(const document::Story& story) { return story.text().substring(0, story.length()); }

/// Puts text in the place of each SECRET; how many there were by places.
std::map<Place, int> replaceSecrets(document::Document& document, std::u16string_view text) {
  std::map<Place, int> found;
  for (std::size_t i = 0; i < document.count(); ++i) {
    document::Story& story = document.story(i);
    for (std::size_t at = 0; (at = textOf(story).find(u"SECRET")) != std::u16string::npos;) {
      const auto from = static_cast<text::Position>(at);
      story.replace({from, from + 6}, text, View::results);
      ++found[document::placeOf(story.kind())];
    }
  }
  return found;
}

void expectReadBack(const base::Bytes& before, const Opened& opened, const base::Bytes& written) {
  const std::vector<document::Content> again = DocxFormat().read(written, allStories()).stories;
  EXPECT_EQ(document::differenceOf(opened.document.snapshot(), again, [] {}), "");
  EXPECT_EQ(worsened(faultsOf(before), faultsOf(written)), "");
}

const std::vector<std::string> kParts = {"document", "h1",        "h2",       "h",
                                         "f1",       "footnotes", "endnotes", "comments"};

/// In each place a text is found and changed, wherever the file holds it, and every other byte stays.
TEST(Stories, areFoundAndChangedInEveryPlace) {
  for (const Case& c : cases()) {
    SCOPED_TRACE(c.name);
    const base::Bytes document = documentOf(wml(c.body), c.parts);
    Opened opened = open(document);
    EXPECT_EQ(opened.document.count(), static_cast<std::size_t>(c.stories));
    EXPECT_EQ(replaceSecrets(opened.document, u"N")[c.place], c.found);
    const base::Bytes written = opened.written();
    expectReadBack(document, opened, written);
    for (const std::string& name : kParts) {
      const std::string old = part(document, "word/" + name + ".xml");
      std::string expected =
          std::regex_replace(old, std::regex("SE(</w:t>.{32}<w:t)>CRET"), "N$1 xml:space=\"preserve\">");
      expected = std::regex_replace(expected, std::regex("SECRET"), "N");
      EXPECT_EQ(part(written, "word/" + name + ".xml"), expected);
      EXPECT_EQ(expected.find("CRET"), std::string::npos);
    }
  }
}

/// Headers come as a reader meets them: by sections, first pages first, however their parts are called.
TEST(Stories, ofPagesComeInTheOrderOfTheirUse) {
  const auto section = [](const std::string& uses) { return "<sectPr>" + uses + "</sectPr>"; };
  const auto use = [](const std::string& pages, int id) {
    return "<headerReference type='" + pages + "' r:id='rId" + std::to_string(id) + "'/>";
  };
  Parts parts = {
      {"word/_rels/document.xml.rels",
       relationships({{"header", "a.xml"}, {"header", "b.xml"}, {"header", "c.xml"}, {"header", "d.xml"}})}};
  for (const char name : {'a', 'b', 'c', 'd'})
    parts[std::string("word/") + name + ".xml"] = partOf("hdr", std::string("{[") + name + "]}");
  const std::string commented = "<!-- <headerReference a=b> <headerReference a='-->";
  const base::Bytes document =
      documentOf(wml(commented + "{<pPr>" + section(use("even", 4) + use("default", 2)) + "</pPr>[x]}{[y]}") +
                     "<w:sectPr><w:headerReference w:a=\"x>\" w:type=\"default\" r:id=\"rId4\"/>" +
                     wml(use("first", 3)) + "</w:sectPr>",
                 parts);
  Opened opened = open(document);
  const auto textsOf = [](const Opened& read) {
    std::string texts;
    for (std::size_t i = 1; i < read.document.count(); ++i)
      texts += static_cast<char>(read.document.story(i).text().at(0)) +
               std::to_string(read.document.story(i).kind());
    return texts;
  };
  EXPECT_EQ(textsOf(opened), "b7d6c10a7");
  opened.model.replace({1, 2}, u"", View::results);
  const base::Bytes written = opened.written();
  expectReadBack(document, opened, written);
  EXPECT_EQ(textsOf(open(written)), "c10d7a7b7");
}

/// A character that stands for a story takes it along, also a changed one. An emptied story stays.
TEST(Stories, goWithTheirReferencesAlone) {
  const Parts parts = {
      {"word/footnotes.xml", partOf("footnotes",
                                    "<footnote id='1'>{<r><footnoteRef/><t>one</t></r>}</footnote><footnote "
                                    "id='2'>{[two]<r><commentReference id='7'/></r>}</footnote>")},
      {"word/comments.xml",
       partOf("comments",
              "<comment id='7' author='A'>{[seven]}</comment><comment id='8'>{[eight]}</comment>")}};
  const base::Bytes document = documentOf(
      wml("{[a]<r><footnoteReference id='1'/></r><r><footnoteReference id='2'/></r>[b]<commentRangeStart "
          "id='8'/>[c]<commentRangeEnd id='8'/><r><commentReference id='8'/></r>}"),
      parts);
  Opened opened = open(document);
  ASSERT_EQ(opened.document.count(), 5U);
  opened.document.story(1).replace({0, 3}, u"", View::results);
  opened.document.story(2).replace({0, 3}, u"changed", View::results);
  opened.document.story(4).replace({0, 7}, u"changed", View::results);
  opened.model.replace({2, 3}, u"", View::results);
  const base::Bytes written = opened.written();
  expectReadBack(document, opened, written);
  EXPECT_EQ(part(written, "word/footnotes.xml"),
            partOf("footnotes", "<footnote id='1'>{<r><footnoteRef/></r>}</footnote>"));
  EXPECT_EQ(part(written, "word/comments.xml"), partOf("comments", "<comment id='8'>{[eight]}</comment>"));
}

/// Versions of a box that differ are changed one by one, and only where the other does not hold the text.
TEST(Stories, ofTwoVersionsAreChangedWhereOneHoldsTheText) {
  const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
      {"SECRET x", "y", "N x", "y"},
      {"x", "SECRET y", "x", "N y"},
      {"N x", "SECRET x", "N x", "N x"},
      {"SECRET x", "y SECRET", nullptr, nullptr}};
  for (const auto& [newText, oldText, newAfter, oldAfter] : cases) {
    const auto body = [](const std::string& a, const std::string& b) {
      return wml(choices(box("{[" + a + "]}"), box("{[" + b + "]}")));
    };
    const base::Bytes document = documentOf(body(newText, oldText));
    Opened opened = open(document);
    ASSERT_EQ(opened.document.count(), 3U);
    if (newAfter == nullptr) {
      EXPECT_THROW(replaceSecrets(opened.document, u"N"), errors::Fault);
      EXPECT_THROW(opened.document.story(1).highlight({0, 6}, 7), errors::Fault);
      EXPECT_THROW(opened.document.story(2).insertBefore(2, u"x"), errors::Fault);
      EXPECT_FALSE(opened.document.changed());
      opened.document.story(1).block(text::Span{0, 8});
      opened.document.story(1).replace({0, 6}, u"N", View::results);
      EXPECT_EQ(textOf(opened.document.story(1)), u"N x\r") << "no other holds the block that it is part of";
      continue;
    }
    replaceSecrets(opened.document, u"N");
    const base::Bytes written = opened.written();
    expectReadBack(document, opened, written);
    EXPECT_EQ(bodyOf(written), body(newAfter, oldAfter));
  }
}

/// Its replies and its state know a comment by its last paragraph.
TEST(Stories, ofCommentsKeepTheirIdentity) {
  const std::string w14 = " xmlns:w14='http://schemas.microsoft.com/office/word/2010/wordml'";
  const auto comment = [&](const std::string& inner) {
    return wml("<comments" + kWordOnly + w14 + "><comment id='1' author='A'>" + inner +
               "</comment></comments>");
  };
  const base::Bytes document =
      documentOf(wml("{<r><commentReference id='1'/></r>}"),
                 {{"word/comments.xml", comment("<p w14:paraId='AA' rsidR='1'>[one]</p>")}});
  Opened opened = open(document);
  opened.document.story(1).replace({1, 2}, u"\r-\r", View::results);
  EXPECT_EQ(part(opened.written(), "word/comments.xml"),
            comment("<p rsidR='1'>[o]</p><p rsidR='1'>[-]</p><p w14:paraId='AA' rsidR='1'>[e]</p>"));
}

}  // namespace
}  // namespace pluvo::docx
