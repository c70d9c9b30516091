#include "formats/edited_files.h"
#include "formats/rtf/rtf_document.h"

namespace pluvo::rtf {
namespace {

using formats::OpenedFile;
using formats::SpliceCase;

std::string savedAndTheSame(const OpenedFile& opened) {
  return formats::savedAndTheSame(RtfFormat(), opened);
}

TEST(RtfFormat, IsEditedBySplices) {
  const std::vector<SpliceCase> cases = {
      // No word runs into text put after it.
      {"\\b\\'e9x\\par", u"\u00E9", u"", "\\b x\\par"},
      {"\\b\\'e9 x\\par", u"\u00E9", u"", "\\b  x\\par"},
      {"\\b\\'e9{\\i x}\\par", u"\u00E9", u"", "\\b{\\i x}\\par"},
      {"\\b\nax\\par", u"a", u"", "\\b\nx\\par"},
      {"\\b\\'e9x\\par", u"\u00E9", u"a", "\\b ax\\par"},
      // Any text, in ASCII.
      {"axb\\par", u"x", u"{\\}\t\u0416\u20AC\U0001F600\u00A0\u001E\r\v",
       "a\\{\\\\\\}\\tab \\u1046?\\u8364?\\u-10179?\\u-8704?\\~\\_\\par \\line b\\par"},
      {"{\\uc0 axb}{\\uc2 cd}\\par", u"x", u"\u0416", "{\\uc0 a\\u1046 b}{\\uc2 cd}\\par"},
      {"{\\uc2 axb}\\par", u"x", u"\u0416", "{\\uc2 a\\u1046??b}\\par"},
      {"{\\u1046}x\\par", u"\u0416x", u"yz", "{yz}\\par"},
      {"{\\f3 axb}\\par", u"\uF078", u"y", "{\\f3 a{\\f0 y}b}\\par"},
      {"{\\f2\\'83}x{\\f2 A}\\par", u"x", u"", "{\\f2\\'83}{\\f2 A}\\par"},
      {"{\\f2\\'83\\u1046?A}\\par", u"\u0416", u"", "{\\f2\\'83{}A}\\par"},
      {"\\'4gba\\'xa\\par", u"gb", u"", "\\'4{}a\\'xa\\par"},
      {"\\\\'xa\\par", u"x", u"", "\\\\'a\\par"},
      {"a\\u0\\par z\\par", u"\r", u"", "a\\u0?z\\par"},
      {"a\\u1046\n\\par z\\par", u"\r", u"", "a\\u1046\n?z\\par"},
      {"{x\\footnote y}\\u1046\\par z\\par", u"x", u"", "{{}\\footnote y}\\u1046\\par z\\par"},
      {"a\\u1046\\par z\\par", u"\r", u"", "a\\u1046?z\\par"},
      {"{\\qc\\pict 00}xy\\par", u"x", u"z", "{\\qc\\pict 00}zy\\par"},
      // What goes as a whole.
      {"a{\\field{\\*\\fldinst X}{\\fldrslt b}}c\\par", u"a\u0013X\u0014b\u0015c", u"d", "d\\par"},
      {"a{\\super\\chftn}{\\footnote n}c\\par", u"\u0002", u"", "a{\\super}c\\par"},
      {"{\\*\\atrfstart 1}ab{\\*\\atrfend 1}{\\*\\atnid i}{\\*\\annotation{\\*\\atnref 1}n}c\\par",
       u"b\u0005", u"", "ac\\par"},
      {"a\\par\\trowd\\cellx1\\pard\\intbl b\\cell{\\trowd\\cellx1\\row }\\trowd\\cellx2\\pard\\intbl "
       "c\\cell\\row\\pard d\\par",
       u"b\a\ac\a\a", u"", "a\\par\\pard\\intbl {}\\pard\\intbl \\pard d\\par"},
      {"a{\\*\\bkmkstart B}b{\\*\\bkmkend B}c{\\*\\bkmkstart D}d{\\*\\bkmkend D}{\\field{\\*\\fldinst REF "
       "d}}\\par",
       u"bcd", u"", "a{\\*\\bkmkstart D}{\\*\\bkmkend D}{\\field{\\*\\fldinst REF d}}\\par"},
      {"a\\par\\row b\\par", u"a\r", u"c", "cb\\par"},
      {"\\intbl\\itap2 a\\nestcell b{\\*\\nesttableprops\\nestrow}c\\cell\\row\\pard d\\par", u"b\a", u"7",
       "\\intbl\\itap2 a\\nestcell \\highlight2 b\\nestcell {\\*\\nesttableprops\\nestrow}\\highlight0 "
       "c\\cell\\row\\pard d\\par"},
      {"\\intbl\\itap2 a\\nestcell b{\\*\\nesttableprops\\nestrow}c\\cell\\row\\pard d\\par", u"b", u"",
       "\\intbl\\itap2 a\\nestcell \\nestcell {\\*\\nesttableprops\\nestrow}c\\cell\\row\\pard d\\par"},
      {"{\\listtext 1}a\\par{\\listtext 2}b\\par", u"\r", u"", "{\\listtext 1}ab\\par"},
      {"a\\par b", u"b", u"", "a\\par \\par "},
      // Highlight.
      {"a b c\\par", u"b", u"7", "a \\highlight2 b\\highlight0  c\\par"},
      {"a{\\highlight2 b c}d\\par", u"b", u"", "a{\\highlight2  c}d\\par"},
      {"{\\deleted a}b\\par", u"b", u"", "{\\deleted a}\\par"},
  };
  expectSplices(RtfFormat(), head(), "}", cases);
}

TEST(RtfFormat, EditsStoriesWhereTheyStand) {
  const std::vector<SpliceCase> cases = {
      {"{\\headerl x\\par}{\\header{\\b y}\\par}{\\footerf z}a\\par", u"y", u"\u0416n",
       "{\\headerl x\\par}{\\header{\\b \\u1046?n}\\par}{\\footerf z}a\\par", 2},
      {"{\\uc0{\\header y\\par}}a\\par", u"y", u"\u0416", "{\\uc0{\\header \\u1046 \\par}}a\\par", 1},
      {"{\\header y\\par}{\\header z\\par}a\\par", u"z", u"7",
       "{\\header y\\par}{\\header \\highlight2 z\\highlight0 \\par}a\\par", 2},
      {"a\\chftn{\\footnote\\chftn y}{\\footnote\\ftnalt z}b\\par", u"y", u"n",
       "a\\chftn{\\footnote\\chftn n}{\\footnote\\ftnalt z}b\\par", 1},
      {"a{\\super\\chftn}{\\footnote y}{\\footnote\\ftnalt z}b\\par", u"\u0002", u"",
       "a{\\super}{\\footnote\\ftnalt z}b\\par", 0},
      {"a{\\footnote y{\\header h}}b\\par", u"\u0002", u"", "ab\\par", 0},
      {"a{\\*\\atnid i}{\\*\\annotation{\\*\\atnref 1}y\\par}\\par", u"y", u"1\r2",
       "a{\\*\\atnid i}{\\*\\annotation{\\*\\atnref 1}1\\par 2\\par}\\par", 1},
      {"{\\header{\\shp{\\*\\shpinst{\\shptxt y{\\pict 00}}}{\\shprslt{\\*\\do{\\dptxbxtext y}}}}}a\\par",
       u"y", u"n", "{\\header{\\shp{\\*\\shpinst{\\shptxt n{\\pict 00}}}}}a\\par", 2},
      {"{\\shp{\\*\\shpinst{\\shptxt y\\par}}{\\shprslt{\\*\\do{\\dptxbxtext{\\b y}\\par}}}}a\\par", u"y",
       u"n", "{\\shp{\\*\\shpinst{\\shptxt n\\par}}{\\shprslt{\\*\\do{\\dptxbxtext{\\b n}\\par}}}}a\\par", 1},
      {"{\\shp{\\*\\shpinst{\\sp x}}{\\shprslt{\\*\\do{\\dptxbxtext y\\par}}}}a\\par", u"y", u"n",
       "{\\shp{\\*\\shpinst{\\sp x}}{\\shprslt{\\*\\do{\\dptxbxtext n\\par}}}}a\\par", 1},
      {"{\\upr{axb}{\\*\\ud a{\\b x}b}}{\\upr{c}{\\*\\ud c}}\\par", u"x", u"",
       "{\\upr{}{\\*\\ud a{\\b }b}}{\\upr{c}{\\*\\ud c}}\\par", 0},
      {"{\\field{\\*\\fldinst X}{\\fldrslt b{\\header h\\par}c}}d\\par", u"\u0013X\u0014bc\u0015", u"",
       "{\\header h\\par}d\\par", 0},
  };
  expectSplices(RtfFormat(), head(), "}", cases);
}

TEST(RtfFormat, HighlightsAtTheEndsOfWhatIsOdd) {
  OpenedFile cut = open("{\\rtf1{\\field{\\*\\fldinst X}{\\fldrslt {b");
  cut.model.highlight({4, 5}, 7);
  EXPECT_EQ(
      savedAndTheSame(cut),
      "{\\rtf1{\\colortbl;\\red255\\green255\\blue0;}{\\field{\\*\\fldinst X}{\\fldrslt {b}}\\highlight1 ");
  OpenedFile early = open("{\\rtf1 {\\fonttbl} {\\colortbl;\\red255\\green255\\blue0;}\\pard}");
  early.model.highlight({1, 2}, 7);
  early.model.insertBefore(1, u"n");
  EXPECT_EQ(savedAndTheSame(early),
            "{\\rtf1 {\\fonttbl} {\\colortbl;\\red255\\green255\\blue0;}\\pard\\highlight1 n}");
}

TEST(RtfFormat, TakesNoHighlightInFrontOfItsColours) {
  OpenedFile opened = open("{\\rtf1{\\header h}a{\\colortbl;\\red255\\green255\\blue0;}b\\par}");
  EXPECT_THROW(opened.model.highlight({0, 1}, 7), errors::Fault);
  EXPECT_THROW(opened.document.story(1).highlight({0, 1}, 7), errors::Fault);
  opened.model.replace({0, 1}, u"n", text::View::results);
  EXPECT_THROW(opened.model.highlight({0, 1}, 7), errors::Fault);
  opened.model.highlight({1, 2}, 7);
  EXPECT_EQ(savedAndTheSame(opened),
            "{\\rtf1{\\header h}n{\\colortbl;\\red255\\green255\\blue0;}\\highlight1 b\\highlight0 \\par}");
}

/// Where a document, or what it says of all its text, ends in the middle of something.
TEST(RtfFormat, AddsTextAtAnEnd) {
  const struct {
    const char* before;
    text::Span place;
    const char16_t* text;
    const char* after;
  } cases[] = {
      {"{\\rtf1\\ansi\\'e9x}", {0, 1}, u"", "{\\rtf1\\ansi x}"},
      {"{\\rtf1\\ansi\\'e9x}", {0, 1}, u"a", "{\\rtf1\\ansi ax}"},
      {"{\\rtf1 x\\", {0, 1}, u"", "{\\rtf1 \\"},
      {"{\\rtf1 x\\", {1, 1}, u"a", "{\\rtf1 xa\\"},
      {"{\\rtf1 x\\'e", {1, 1}, u"a", "{\\rtf1 xa\\'e"},
      {"{\\rtf1{\\field{\\*\\fldinst X}{\\fldrslt b",
       {5, 5},
       u"a",
       "{\\rtf1{\\field{\\*\\fldinst X}{\\fldrslt b}}a"},
      {"{\\rtf1 x{\\field{\\*\\fldinst X}{\\fldrslt b", {0, 6}, u"a", "{\\rtf1 a"},
      {"{\\rtf1 x\\par\\row", {0, 1}, u"a", "{\\rtf1 a\\par\\row"},
  };
  for (const auto& [before, place, text, after] : cases) {
    OpenedFile opened = open(before);
    EXPECT_EQ(opened.written(), before);
    opened.model.replace(place, text, text::View::results);
    EXPECT_EQ(savedAndTheSame(opened), after);
  }
}

TEST(RtfFormat, AddsColoursWhereTheDocumentHasThem) {
  const struct {
    const char* before;
    const char* after;
  } cases[] = {
      {"{\\rtf1\\ansi a}",
       "{\\rtf1\\ansi {\\colortbl;\\red255\\green255\\blue0;}\\highlight1 a\\highlight0 }"},
      {"{\\rtf1{\\fonttbl}\\pard a\\par}",
       "{\\rtf1{\\fonttbl}{\\colortbl;\\red255\\green255\\blue0;}\\pard \\highlight1 a\\highlight0 \\par}"},
      {"{\\rtf1{\\colortbl;\\red1;}a\\par}",
       "{\\rtf1{\\colortbl;\\red1;\\red255\\green255\\blue0;}\\highlight2 a\\highlight0 \\par}"},
      {"{\\rtf1{\\colortbl\\red1}a\\par}",
       "{\\rtf1{\\colortbl\\red1;\\red255\\green255\\blue0;}\\highlight1 a\\highlight0 \\par}"},
      {"{\\rtf1{\\colortbl}a\\par}",
       "{\\rtf1{\\colortbl;\\red255\\green255\\blue0;}\\highlight1 a\\highlight0 \\par}"},
  };
  for (const auto& [before, after] : cases) {
    OpenedFile opened = open(before);
    opened.model.highlight({0, 1}, 7);
    EXPECT_EQ(savedAndTheSame(opened), after);
  }
}

TEST(Corpus, keepsAllOtherBytes) {
  formats::expectCorpusKept(RtfFormat(), "rtf", {{{0, 20}, {0, 20}, {0, 6}, {0, 70}, {8, 8}, {8, 1}}});
}

TEST(Corpus, takesRandomEditsThatAreReadBack) { formats::expectRandomEditsReadBack(RtfFormat(), "rtf"); }

}  // namespace
}  // namespace pluvo::rtf
