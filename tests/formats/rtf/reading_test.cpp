#include "base/utf.h"
#include "errors/document_error.h"
#include "formats/rtf/rtf_document.h"
#include "support/invariants.h"
#include "support/notation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pluvo::rtf {
namespace {

TEST(RtfFormat, ReadsTextAsAWordProcessorShowsIt) {
  const struct {
    const char* body;
    const char* text;
  } cases[] = {
      {"a\\par b\\par", "a¶b¶"},
      {"a\\par b", "a¶b¶"},
      {"", "¶"},
      {"a\\\r\nb\\\nc\r\n d\\par", "a¶b¶c d¶"},
      {"a\\line b\\tab c\td\\~\\_\\-\\{\\}\\\\\\emdash x\\par", "a\vb\tc\td\u00A0\u001E\u001F\\{\\}\\\\—x¶"},
      {"a\\page b\\column c\\par\\sect d\\par",
       "a\fb\x0E"
       "c¶§d¶"},
      {"\\b\n x\\b0 y\\qc\\foo1 z\\par", " xyz¶"},
      {"\\'e9\\'80\\'81\xE9\\'0d\\'09\\'01\\'4g{\\f1\\'e1}\\'e1", "é€\u0081é¶\t4gαá¶"},
      {"{\\f2\\'83\\'41\\'83A\\'83\nA\\'83{}A \\'83\\b A\\'b1}A", "アアア\uFFFDA \uFFFDAｱA¶"},
      {"{\\f3 a\\'62\\u1044?}{\\f4\\'e3\\'81\\'82\xF0\x9F\x98\x80}", "\uF061\uF062Дあ😀¶"},
      {"\\u1046?\\u8364\\'80x{\\uc2\\u1046 ab\\u1047\\'01\\'02c\\uc0\\u1048 d}\\u1049?e\\u-10179?\\u-8704?",
       "Ж€xЖЗcИdЙe😀¶"},
      {"{\\u1046}x\\u1046\\par\\u1046\\emdash y\\u10?\\u99999?z", "ЖxЖ¶Жyz¶"},
      {"a{\\v b}\\v c\\plain d{\\deleted e}\\webhidden f", "a<h:bc>d<d:e>f¶"},
      {"a{\\highlight2 b\\highlight1 c}{\\highlight2 d\\plain e}{\\highlight9 f}", "a<7:b><6:c><7:d>e<1:f>¶"},
      {"{\\*\\unknown x{\\b y}}{\\unknown z}{\\info{\\title t}}{\\header h\\par}{\\*\\bkmkstart b}{\\xe e}a",
       "za¶"},
      {"{\\pict\\bin3 }}{}x{\\*\\shppict{\\pict 00}}{\\nonshppict{\\pict 00}}y{\\object{\\result "
       "r}}{\\shp{\\*\\shpinst}}{\\qc\\pict 00}",
       "\x01x\x01y\x01\x08\x01¶"},
      {"a\\chftn{\\footnote\\chftn n\\par}b{\\super\\chftn}{\\*\\footnote n}c{\\footnote own}",
       "a\x02"
       "b\x02"
       "c\x02¶"},
      {"{\\*\\atrfstart 1}a{\\*\\atrfend 1}{\\*\\atnid i}{\\*\\atnauthor A}\\chatn "
       "{\\*\\annotation{\\*\\atnref 1}n}b",
       "a<h:\x05>b¶"},
      {"{\\upr{ansi}{\\*\\ud{uni}}}x", "unix¶"},
      {"x{\\rtf1 y}", "xy¶"},
      // Fields.
      {"{\\field{\\*\\fldinst PAGE }{\\fldrslt 1}}x{\\field\\flddirty{\\*\\fldinst{\\f3 A}}}",
       "{PAGE |1}x{A}¶"},
      {"{\\field{\\*\\fldinst A{\\field{\\*\\fldinst B}{\\fldrslt C}}}{\\b }{\\fldrslt D}{\\i }}x",
       "{A{B|C}|D}x¶"},
      {"{\\field{\\fldrslt D}}x{\\fldinst y}", "Dxy¶"},
      {"{\\field{\\*\\fldinst A}{\\fldrslt D\\par", "{A|D¶}¶"},
      // Tables.
      {"a\\par\\trowd\\cellx1\\cellx2\\pard\\intbl b\\cell c\\cell\\row\\trowd\\pard d\\par\\intbl "
       "e\\cell\\row\\pard f",
       "a¶⟦b¦c¦‖⟧d¶⟦e¦‖⟧f¶"},
      {"\\intbl a\\par b\\cell c\\row\\row\\pard\\par", "⟦a¶b¦c¦‖⟧¶"},
      {"a\\cell b\\cell\\par c", "a¶b¶¶c¶"},
      {"\\pard\\intbl\\itap2 a\\nestcell "
       "b\\nestcell{\\*\\nesttableprops\\trowd\\nestrow}{\\nonesttables\\par}"
       "\\pard\\intbl c\\cell\\row\\pard d",
       "⟦⟦a¦b¦‖⟧c¦‖⟧d¶"},
      {"\\pard\\intbl\\itap3 a\\nestcell{\\*\\nesttableprops\\nestrow}\\pard\\intbl\\itap2 x\\nestcell "
       "\\pard\\intbl c\\cell\\row",
       "⟦⟦a¦‖⟧x¶c¦‖⟧¶"},
  };
  for (const auto& [body, text] : cases) {
    SCOPED_TRACE(body);
    const std::string file = head() + body + (std::string_view(body).ends_with("D\\par") ? "" : "}");
    const formats::OpenedFile opened = open(file);
    EXPECT_EQ(notation::print(opened.model), text);
    EXPECT_EQ(notation::damageOf(opened.model), "");
    EXPECT_EQ(opened.written(), file);
  }
}

std::string refusalOf(std::string_view file) {
  try {
    open(file);
  } catch (const errors::DocumentError& error) {
    return std::string(errors::nameOf(error.problem())) + ": " + error.what();
  }
  return "";
}

TEST(RtfFormat, RefusesWhatIsNoWholeDocument) {
  const struct {
    std::string file;
    const char* says;
  } cases[] = {
      {"{\\rtf1 a{\\b b", ""},
      {"\xEF\xBB\xBF \r\n{\\rtf1 a}{\\rtf1 b", ""},
      {"{\\rtx a}", "damaged: .*does not begin"},
      {"{\\rtf1{\\fonttbl a", "damaged: .*not text"},
      {"{\\rtf1{\\pict\\bin9 a}}", "damaged: .*binary"},
      {"{\\rtf1{\\pict\\bin99999999999999 a}}", "damaged: .*binary"},
      {"{\\rtf1\\bin2}", "damaged: .*binary"},
      {"{\\rtf1" + std::string(20'000, '{'), "damaged: .*10,000 deep"},
      {"{\\rtf1{\\*\\x" + std::string(20'000, '{') + std::string(20'000, '}') + "}a}", ""},
  };
  for (const auto& [file, says] : cases)
    EXPECT_THAT(refusalOf(file), testing::ContainsRegex(says)) << file.substr(0, 60);
  std::string fields = "{\\rtf1";
  for (int i = 0; i < 1001; ++i) fields += "{\\field{\\*\\fldinst ";
  EXPECT_THAT(refusalOf(fields), testing::ContainsRegex("damaged: .*fields"));
}

TEST(RtfFormat, ReadsOrRefusesEveryBeginningOfADocument) {
  const std::string whole =
      head() + R"(a\par\'e9{\f2\'83\'41}\u1046?{\field{\*\fldinst A}{\fldrslt {\b B}}}\trowd\cellx9)"
               R"(\intbl c\cell\row\pard{\footnote n}{\*\atnid i}{\*\annotation n}{\upr{x}{\*\ud y}})"
               R"({\pict\bin3 }}}}{\*\shppict{\pict}}{\nonshppict}{\header h}{\info{\title t}}d\par})";
  for (std::size_t size = 5 + 1; size <= whole.size(); ++size) {
    const std::string part = whole.substr(0, size);
    try {
      const formats::OpenedFile opened = open(part);
      EXPECT_EQ(opened.written(), part);
      EXPECT_EQ(notation::damageOf(opened.model), "");
      EXPECT_EQ(opened.source->appearance().front().length(), opened.model.length());
    } catch (const errors::DocumentError&) {
      EXPECT_LT(size, whole.size());
    }
  }
}

TEST(RtfFormat, TellsProtectionAndItsPassword) {
  const std::string hash =
      "{\\*\\passwordhash 01000000"
      "4c000000"
      "01000000"
      "04800000"
      "00000000"
      "14000000"
      "00000000"
      "00000000"
      "00000000"
      "00000000"
      "00000000000000000000000000000000000000"
      "00}";
  const std::string forChanging = "{\\*\\writereserv" + hash.substr(std::string("{\\*\\password").size());
  const struct {
    const char* words;
    int type;  ///< -1 for none
    bool lifts;
    bool isReserved = false;
  } cases[] = {
      {"\\formprot", 2, true},
      {"\\annotprot\\readprot\\enforceprot1", 3, true},
      {"\\revprot\\enforceprot0", -1, true},
      {"\\formprot0", -1, true},
      {"\\readonlyrecommended", -1, true, true},
      {"\\readonlyrecommended0", -1, true},
      {"\\formprot\\readonlyrecommended", 2, true, true},
      {"{\\info{\\*\\password 147A83AF}}\\annotprot", 1, true},
      {"{\\info{\\*\\password AF837A14}}\\annotprot", 1, true},
      {"{\\info{\\*\\password 00000000}}\\annotprot", 1, true},
      {"{\\info{\\*\\password 147A83AE}}\\annotprot", 1, false},
      {"{\\info{\\*\\password 147A83AF}}", -1, true},
      {"{\\*\\writereservation 147A83AF}", -1, true, true},
      {"\\readonlyrecommended{\\*\\writereservation AF837A14}", -1, true, true},
      {"{\\*\\writereservation 147A83AE}", -1, false, true},
      {forChanging.c_str(), -1, false, true},
      {"{\\info{\\*\\password 147A83AF}}\\annotprot{\\*\\writereservation 147A83AF}", 1, true, true},
      {hash.c_str(), -1, true},
  };
  for (const auto& [words, type, lifts, isReserved] : cases) {
    SCOPED_TRACE(words);
    const formats::OpenedFile opened = open(std::string("{\\rtf1") + words + " a}");
    ASSERT_EQ(opened.protection ? static_cast<int>(opened.protection->type) : -1, type);
    ASSERT_EQ(opened.reservation.has_value(), isReserved);
    const auto check = [lifts = lifts](const auto& asking) {
      if (!asking) return;
      const auto& asked = asking->isLiftedBy;
      EXPECT_EQ(!asked || asked(u"password"), lifts);
      EXPECT_FALSE(asked && asked(u"another"));
    };
    check(opened.protection);
    check(opened.reservation);
  }
  const formats::OpenedFile opened = open("{\\rtf1\\readprot" + hash + " a}");
  EXPECT_FALSE(opened.protection->isLiftedBy(u""));
}

/// Takes down the events: the number of a kind and the text.
class Told final : public formats::OtherTexts {
 public:
  void story(formats::OtherStory kind, document::Content content) override {
    const document::Story story(std::move(content));
    add("story " + std::to_string(static_cast<int>(kind)), notation::print(story));
  }
  using OtherTexts::unreached;
  void unreached(formats::Unreached kind, std::u16string_view text) override {
    add(kind == formats::Unreached::fieldCodes     ? "code"
        : kind == formats::Unreached::pictureTexts ? "picture"
        : kind == formats::Unreached::wordArt      ? "art"
        : kind == formats::Unreached::people       ? "people"
                                                   : "other",
        base::utf8(text));
  }
  void notLookedInto(formats::Opaque /*kind*/) override { all += "opaque\n"; }
  void damaged(std::string_view part, std::string_view /*why*/) override {
    add("damaged", std::string(part));
  }

  std::string all;

 private:
  void add(const std::string& kind, const std::string& text) { all += kind + ": " + text + "\n"; }
};

TEST(RtfFormat, TellsTextsBesideMainText) {
  const formats::OpenedFile opened =
      open(head() +
           "{\\*\\revtbl{Unknown;}{A B;}}{\\info{\\title T}}{\\header h\\par}{\\xe{x}}{\\*\\docvar{n}{v}}"
           "{\\*\\userprops{\\propname N}\\proptype30{\\staticval P}}{\\*\\other{\\b o}}"
           "{\\field{\\*\\fldinst FORMTEXT{\\*\\formfield{\\fftype0{\\*\\ffdeftext d}}}}{\\fldrslt r}}"
           "{\\*\\atnid id}{\\*\\atnauthor A}\\chatn{\\*\\annotation{\\*\\atndate 1}c}"
           "{\\shp{\\*\\shpinst{\\sp{\\sn gtextUNICODE}{\\sv art}}{\\shptxt b{\\footnote in}\\par}}}"
           "{\\*\\shppict{\\pict{\\*\\picprop{\\sp{\\sn wzDescription}{\\sv d\\u1046?}}}00}}\\par}");
  Told told;
  opened.source->tellOtherTexts(opened.model, told);
  EXPECT_EQ(told.all,
            "people: Unknown;A B;\nother: T\nstory 0: h¶\ncode: x\nother: v\nother: N\nother: P\nother: o\n"
            "other: d\npeople: id\npeople: A\nstory 4: c¶\nart: art\nstory 5: b\x02¶\n"
            "story 2: in¶\nopaque\nopaque\npicture: dЖ\n");
}

}  // namespace
}  // namespace pluvo::rtf
