#include "errors/fault.h"
#include "formats/media/edits.h"
#include "memory/application.h"
#include "word/faults.h"

#include <gtest/gtest.h>

namespace pluvo::memory {
namespace {

using namespace formats;
using notation::Sample;

TEST(Range, SetsItsEnds) {
  Sample sample("0123456789[aa]¶");
  word::Range& a = sample.range('a');
  const auto span = [&] { return text::Span{a.Start(), a.End()}; };
  a.SetRange(3, 7);
  EXPECT_EQ(span(), (text::Span{3, 7}));
  a.Start(8);
  EXPECT_EQ(span(), (text::Span{8, 8}));
  a.End(5);
  EXPECT_EQ(span(), (text::Span{5, 5}));
  a.SetRange(9, 4);
  EXPECT_EQ(span(), (text::Span{4, 4}));
  a.SetRange(0, 11);
  EXPECT_EQ(a.Text(), u"0123456789\r");
}

TEST(Selections, HaveTheTextTheyShow) {
  struct Case {
    std::string_view notation;
    std::int32_t from, to;
    std::u16string text;
    std::int32_t characters;
  };
  const Case cases[] = {
      {"one two¶", 4, 7, u"two", 3}, {"one two¶", 4, 4, u"t", 1},  // an insertion point
      {"one¶", 3, 3, u"\r", 1},                                    // before the last mark
      {"a¶b¶", 0, 3, u"a\rb", 3},    {"a{code|result}b¶", 0, 15, u"aresultb", 8},
  };
  for (const Case& it : cases) {
    const notation::Sample sample(it.notation);
    MemoryApplication application;
    application.add(sample.document);
    const auto selection = application.Selection();
    selection->SetRange(it.from, it.to);
    EXPECT_EQ(selection->Text(), it.text) << it.notation;
    EXPECT_EQ(selection->Characters().Count(), it.characters) << it.notation;
  }
}

TEST(Edits, TakeLineEndsOfAnyKind) {
  expectEdits({{"x[ay\\\na]¶", setText(u"1\r\n2\n3\r4\n\r"), "x[a1¶2¶3¶4¶¶a]¶"},
               {"x[aya]¶", insertAfter(u"\t\v\f\x0E"),
                "x[ay\t\v\f\x0E"
                "a]¶"},
               {"x[ay\x1E\x1F"
                "a]¶",
                insertAfter(u"\x1F\x1E"),
                "x[ay\x1E\x1F\x1F\x1E"
                "a]¶"}});
}

TEST(Edits, InheritFromTheCharacterBeside) {
  expectEdits({{"<7:a>[ab<4:c>a]<3:d>", insertBefore(u"1"), "<7:a>[a1b<4:c>a]<3:d>¶"},
               {"<7:a>[ab<4:c>a]<3:d>", insertAfter(u"1"), "<7:a>[ab<4:c1>a]<3:d>¶"},
               {"<7:a>[a<4:b>ca]<3:d>", setText(u"1"), "<7:a>[a<4:1>a]<3:d>¶"},
               {"x[a<h7:b>a]c", insertAfter(u"1"), "x[a<h7:b1>a]c¶"},
               {"<7:x>[aa]<4:c>", setText(u"1"), "<7:x[a1>a]<4:c>¶"},
               {"x¶[aa]<4:c>", setText(u"1"), "x¶[a<4:1>a]<4:c>¶"}});
}

TEST(Edits, KeepFieldsWhole) {
  expectEdits({// Covered wholly, a field goes with its contents.
               {"a[ab{X|c}da]e", remove, "a[aa]e¶"},
               {"a[a{X {Y|1}|c{Z|2}}a]e", setText(u"n"), "a[ana]e¶"},
               // Covered partly, it loses the text that is shown.
               {"a[ab{X|ca]d}e", setText(u"n"), "a[ana]{X|d}e¶"},
               {"a{X|b[ac}da]e", remove, "a{X|b[a}a]e¶"},
               {"a{X|b[ac}da]e", setText(u"n"), "a{X|b[ana]}e¶"},
               {"a{X[a|ba]c}e", setText(u"n"), "a{X|[ana]c}e¶"},
               {"a[ab{X {Y|1}|c{Z|2}<h:h>a]d}e", remove, "a[a{X {Y|1}|<h:h>a]d}e¶"},
               {"a[ab{X|{Y|1a]2}3}e", remove, "a[a{X|{Y|a]2}3}e¶"},
               {"a{X|b{Y|[a1}2a]}e", remove, "a{X|b{Y|[a}a]}e¶"},
               // Beside its marks, text lies where the place beside the character is.
               {"a{X|[aba]}e", insertBefore(u"1"), "a{X|[a1ba]}e¶"},
               {"a{X|[aba]}e", insertAfter(u"1"), "a{X|[ab1a]}e¶"},
               {"a[a{X|b}a]e", insertBefore(u"1"), "a[a1{X|b}a]e¶"},
               {"a[a{X|b}a]e", insertAfter(u"1"), "a[a{X|b}1a]e¶"},
               {"a{X|[a{Y|b}a]}e", insertAfter(u"1"), "a{X|[a{Y|b}1a]}e¶"},
               {"a{X|b[a}a]e", setText(u"1"), "a{X|b[a1a]}e¶"},
               {"a[a{a]X|b}e", setText(u"1"), "a[a1a]{X|b}e¶"},
               {"a{[aXa]|b}e", insertAfter(u"1"), "a{[aX1a]|b}e¶"},
               {"<h:a[a{X|b}a]>e", insertAfter(u"1"), "<h:a[a{X|b}1a]>e¶"}});
}

TEST(Edits, SeeCodesWhereTheyAreShown) {
  Sample sample("a[ab{X{Y|1}|ca]d}e");
  sample.document->ActiveWindow()->View()->ShowFieldCodes(true);
  EXPECT_EQ(sample.range('a').Text(), u"b\x13X\x13Y\x15");
  sample.range('a').Delete();
  EXPECT_EQ(sample.print(), "a[a{|ca]d}e¶");
}

TEST(Edits, KeepTables) {
  expectEdits({// Covered wholly, a table goes; covered partly, its contents go and its marks stay.
               {"a[ab¶⟦x¦y¦‖⟧ca]d", remove, "a[aa]d¶"},
               {"a¶[a⟦x¦y¦‖⟧a]d", setText(u"n"), "a¶[ana]d¶"},
               {"⟦x[ay¶z¦v¦‖w¦ua]t¦‖⟧", setText(u"n"), "⟦x[ana]¦¦‖¦t¦‖⟧¶"},
               {"⟦x[ay¶⟦n¦‖⟧z¦v¦‖a]w¦u¦‖⟧", remove, "⟦x[a¦¦‖a]w¦u¦‖⟧¶"},
               {"⟦x¦y[az¶⟦n¦m¦‖⟧va]w¦‖⟧", remove, "⟦x¦y[aa]w¦‖⟧¶"},
               {"⟦x¦y[az¶⟦n¦ma]k¦‖⟧vw¦‖⟧", remove, "⟦x¦y[a¶⟦¦a]k¦‖⟧vw¦‖⟧¶"},
               {"⟦x[a¦‖⟧a]y", setText(u"n"), "⟦x[ana]¦‖⟧y¶"},
               // No text runs into a table.
               {"ab[ac¶d¶⟦xa]y¦‖⟧", remove, "ab[a¶⟦a]y¦‖⟧¶"},
               {"ab[ac¶a]⟦xy¦‖⟧", setText(u"n"), "ab[ana]¶⟦xy¦‖⟧¶"},
               {"ab[a¶a]⟦xy¦‖⟧", setText(u"n"), "ab[ana]¶⟦xy¦‖⟧¶"},
               {"ab[ac§a]⟦xy¦‖⟧", remove, "ab[a§a]⟦xy¦‖⟧¶"},
               {"a¶[ab¶c¶⟦xa]y¦‖⟧", remove, "a¶[a⟦a]y¦‖⟧¶"},
               {"a¶[ab¶c¶⟦xa]y¦‖⟧", setText(u"n"), "a¶[ana]¶⟦y¦‖⟧¶"},
               {"a¶[ab¶c¶⟦xa]y¦‖⟧", setText(u"n\n"), "a¶[an¶a]⟦y¦‖⟧¶"},
               {"a[a¶⟦x¦‖⟧b¶a]⟦y¦‖⟧", remove, "a[a¶a]⟦y¦‖⟧¶"},
               // Nor one table into another.
               {"⟦x[a¦‖⟧b¶c¶⟦ya]z¦‖⟧", remove, "⟦x[a¦‖⟧¶⟦a]z¦‖⟧¶"},
               {"⟦x¦‖⟧[ab¶a]⟦y¦‖⟧", remove, "⟦x¦‖⟧[a¶a]⟦y¦‖⟧¶"},
               {"⟦x¦‖⟧[ab¶a]⟦y¦‖⟧", setText(u"n\n"), "⟦x¦‖⟧[an¶a]⟦y¦‖⟧¶"},
               {"⟦x¦‖⟧[ab¶⟦z¦‖⟧a]⟦y¦‖⟧", remove, "⟦x¦‖⟧[a¶a]⟦y¦‖⟧¶"},
               {"⟦x¦‖⟧¶[ab¶a]⟦y¦‖⟧", remove, "⟦x¦‖⟧¶[aa]⟦y¦‖⟧¶"},
               {"⟦x[a¦a]y¦‖⟧", remove, "⟦x[a¦a]y¦‖⟧¶"},
               {"a[a§b¶a]c", remove, "a[aa]c¶"}});
}

TEST(Edits, PutTextWhereTablesLeaveRoom) {
  expectEdits({{"⟦[ax¦a]y¦‖⟧", insertAfter(u"1"), "⟦[ax1¦a]y¦‖⟧¶"},
               {"⟦[ax¦y¦a]‖⟧", insertAfter(u"1"), "⟦[ax¦y1¦a]‖⟧¶"},
               {"⟦x¦[a¦a]‖⟧", insertAfter(u"1"), "⟦x¦[a1¦a]‖⟧¶"},
               {"⟦x¦[a‖a]⟧", insertBefore(u"1"), "⟦x[a1¦‖a]⟧¶"},
               {"⟦x¦‖[aa]y¦‖⟧", insertAfter(u"1"), "⟦x¦‖[a1a]y¦‖⟧¶"},
               {"⟦[ax¦‖a]<7:y>¦‖⟧", insertAfter(u"1"), "⟦[ax¦‖<7:1a]y>¦‖⟧¶"},
               {"[a⟦x¦‖⟧a]y", insertAfter(u"1"), "[a⟦x¦‖⟧1a]y¶"},
               {"[ax¶a]<7:⟦y>¦‖⟧", insertAfter(u"1"), "[ax¶<7:⟦1a]y>¦‖⟧¶"},
               {"[ax¶a]<7:⟦y>¦‖⟧", insertAfter(u"1\n"), "[ax¶1¶a]<7:⟦y>¦‖⟧¶"},
               {"x¶[a⟦y¦‖⟧a]", insertBefore(u"1"), "x¶⟦[a1y¦‖⟧a]¶"}});
}

TEST(Edits, ThatChangeNothingLeaveTheDocumentUnchanged) {
  const struct {
    const char* before;
    Edit edit;
    bool changes;
  } cases[] = {{"x[ay¶za]", setText(u"y\r\nz"), false},
               {"x[aya]", setText(u"z"), true},
               {"x[aa]y", remove, false},
               {"⟦x[a¦a]y¦‖⟧", remove, false},
               {"x[a¶a]", remove, false},
               {"x[aya]", insertBefore(u""), false},
               {"x[aya]", insertAfter(u""), false},
               {"x<7:[aya]>z", highlight(7), false},
               {"x[aa]z", highlight(7), false},
               {"⟦<7:x[ay¦>‖a]⟧", highlight(7), false},
               // The text is the same, but what stood between its parts is gone.
               {"{X|[ay}za]", setText(u"y"), true}};
  for (const auto& [before, edit, changes] : cases) {
    SCOPED_TRACE(before);
    Sample sample(before);
    const auto stamp = sample.mainText().stamp();
    edit(sample);
    EXPECT_EQ(sample.mainText().changed(), changes);
    EXPECT_EQ(sample.mainText().stamp() == stamp, !changes);
  }
}

/// A file that holds letters only, and no highlighting.
class Letters : public document::Medium {
 public:
  std::optional<std::string> refusesText(std::u16string_view text) const override {
    if (text.find_first_of(u"0123456789\n") == text.npos) return std::nullopt;
    return "No digits – not here.";
  }
  bool holdsHighlight() const override { return false; }
};

std::int32_t faultOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const errors::Fault& fault) {
    return fault.number;
  }
  return 0;
}

TEST(Faults, HaveTheWordProcessorsNumbers) {
  Sample sample("abc[adefa]ghi");
  word::Range& a = sample.range('a');
  MemoryDocument& document = *sample.document;
  const std::u16string reserved = u"\x01\x02\x05\x07\x08\x13\x14\x15";
  const std::vector<std::pair<std::int32_t, std::function<void()>>> cases = {
      {word::kValueOutOfRange, [&] { a.Start(-1); }},
      {word::kValueOutOfRange, [&] { a.End(11); }},
      {word::kValueOutOfRange, [&] { a.SetRange(2, 11); }},
      {word::kValueOutOfRange, [&] { document.Range(-1, 2); }},
      {word::kValueOutOfRange,
       [&] {
         document.select({0, 11});
       }},
      {word::kParameterOutOfRange, [&] { a.HighlightColorIndex(17); }},
      {word::kParameterOutOfRange, [&] { a.HighlightColorIndex(-1); }},
      {word::kParameterOutOfRange, [&] { a.Find()->MatchWildcards(true); }},
      {word::kStringTooLong, [&] { a.Find()->Text(std::u16string(256, u'x')); }},
      {0, [&] { a.Find()->Text(std::u16string(255, u'x')); }},
      {0, [&] { a.SetRange(0, 10); }}};
  for (std::size_t i = 0; i < cases.size(); ++i) EXPECT_EQ(faultOf(cases[i].second), cases[i].first) << i;
  for (const char16_t unit : reserved) {
    EXPECT_EQ(faultOf([&] { a.InsertAfter({u'x', unit}); }), word::kParameterOutOfRange) << int{unit};
  }
  document.protect(word::wdAllowOnlyReading);
  for (const Edit& edit :
       {setText(u"x"), insertAfter(u"x"), insertBefore(u"x"), Edit(remove), highlight(7)}) {
    EXPECT_EQ(faultOf([&] { edit(sample); }), word::kProtectedSelection);
  }
  EXPECT_FALSE(sample.mainText().changed());

  document.close();
  EXPECT_EQ(faultOf([&] { a.Start(); }), word::kObjectDeleted);
  EXPECT_EQ(faultOf([&] { a.Find()->Execute(); }), word::kObjectDeleted);
  EXPECT_EQ(faultOf([&] { document.Range(0, 0); }), word::kObjectDeleted);
}

TEST(Faults, SayWhatTheFileCannotHold) {
  Sample sample("abc[adefa]ghi", std::make_shared<Letters>());
  try {
    sample.range('a').Text(u"x1");
    FAIL() << "a digit was taken";
  } catch (const errors::Fault& fault) {
    EXPECT_EQ(fault.number, word::kParameterOutOfRange);
    EXPECT_EQ(fault.description, u"No digits \u2013 not here.");
  }
  EXPECT_EQ(faultOf([&] { sample.range('a').HighlightColorIndex(7); }), word::kNotAvailable);
  EXPECT_FALSE(sample.mainText().changed());
  EXPECT_EQ(faultOf([&] { sample.range('a').Text(u"x\n"); }), 0);  // a line feed comes in as a paragraph mark
}

}  // namespace
}  // namespace pluvo::memory
