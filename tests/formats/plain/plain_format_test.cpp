#include "plain/plain_format.h"

#include "base/utf.h"
#include "plain/encodings.h"
#include "storage/files/as_text.h"
#include "support/dice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace pluvo::plain {
namespace {

using document::Story;
using files::bytesOf;
using formats::Opened;
using text::Position;

/// What a file holds for each unit of its text; written in the plainest way, to compare with.
using Cells = std::vector<std::string>;

struct Kind {
  std::string name;
  std::string mark;
  /// Of one character, or one half of a pair where the encoding has them.
  std::function<std::string(std::u16string_view)> encode;
  bool halves = false;    ///< the halves of a pair have bytes of their own
  std::u16string sample;  ///< characters that tell this encoding from others
  std::u16string beside;  ///< a text that can be inserted
  std::string hint = {};  ///< the encoding, where the bytes do not tell it
};

const std::vector<Kind>& kinds() {
  const auto utf8 = [](std::u16string_view c) { return base::utf8(c); };
  const auto little = [](std::u16string_view c) {
    return std::string{static_cast<char>(c[0] & 0xFF), static_cast<char>(c[0] >> 8)};
  };
  const auto big = [=](std::u16string_view c) {
    const std::string turned = little(c);
    return std::string(turned.rbegin(), turned.rend());
  };
  const auto latin = [](std::u16string_view c) { return std::string{static_cast<char>(c[0])}; };
  const auto windows = [=](std::u16string_view c) {
    return c == u"€" ? "\x80" : c == u"”" ? "\x94" : latin(c);
  };
  // A backslash is the second byte of 表 and ソ; 汉 and 𠀀 have two and four bytes.
  const auto several = [=](std::u16string_view c) {
    static const std::map<std::u16string, std::string, std::less<>> bytes = {
        {u"表", "\x95\x5C"}, {u"ソ", "\x83\x5C"}, {u"ｱ", "\xB1"},
        {u"汉", "\xBA\xBA"}, {u"é", "\xA8\xA6"},  {u"\U00020000", "\x95\x32\x82\x36"}};
    const auto known = bytes.find(c);
    return known == bytes.end() ? latin(c) : known->second;
  };
  const auto stray = [=](std::u16string_view c) { return c[0] == 0xDCFF ? "\xFF" : utf8(c); };
  static const std::vector<Kind> all = {
      {"ASCII", "", utf8, false, u"plain text\t\x0C\x0B\x01\x07\x13\x14\x15\x1F.", u"new"},
      {"UTF-8, all below 256", "", utf8, false, u"Grüße, naïve\u00A0", u"é"},
      {"UTF-8", "", utf8, false, u"“Grüße” → \U0001F4DC and \uFB01 \U00010000", u"→\U0001F58B"},
      {"UTF-8 with mark", "\xEF\xBB\xBF", utf8, false, u"“Grüße” \U0001F4DC", u"\U0001F58B"},
      {"ASCII with mark", "\xEF\xBB\xBF", utf8, false, u"plain", u"new"},
      {"UTF-16 little", "\xFF\xFE", little, true, u"“Grüße” \U0001F4DC \xD800 \xDC00\x0A0D\x0D0A",
       u"→\U0001F58B"},
      {"UTF-16 big, narrow", "\xFE\xFF", big, true, u"Grüße", u"→"},
      {"UTF-16 little without mark", "", little, true, u"Mostly Latin Grüße → \U0001F4DC", u"ü"},
      {"UTF-16 big without mark", "", big, true, u"Mostly Latin Grüße →", u"ü"},
      {"UTF-8 with stray bytes", "", stray, false,
       u"Große Köche äßen Grütze übers Maß, fünf Bögen müßten völlig genügen\xDCFF!", u"é"},
      {"Windows-1252, Latin-1 part", "", latin, false, u"Grüße \u00FFx", u"ü", "Windows-1252"},
      {"Windows-1252", "", windows, false, u"Grüße € \u0081 x", u"”", "Windows-1252"},
      {"Shift_JIS", "", several, false, u"表ソ\\ｱx", u"ソ表", "Shift_JIS"},
      {"GB18030", "", several, false, u"汉\U00020000é x", u"\U00020000", "GB18030"}};
  return all;
}

bool isFirstHalf(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }

/// The first half of a pair has its bytes, the second none, where halves have none of their own.
Cells cellsOf(const Kind& kind, std::u16string_view text) {
  Cells cells;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = !kind.halves && isFirstHalf(text[i]);
    cells.push_back(kind.encode(text.substr(i, pair ? 2 : 1)));
    if (!pair) continue;
    cells.emplace_back();
    ++i;
  }
  return cells;
}

std::string lineEnd(const Kind& kind, std::string_view end) {
  std::string bytes;
  for (const char c : end) bytes += kind.encode(std::u16string(1, static_cast<char16_t>(c)));
  return bytes;
}

std::string joined(const Kind& kind, const Cells& cells) {
  const std::string feed = lineEnd(kind, "\n");
  std::string all = kind.mark;
  for (std::size_t i = 0; i < cells.size(); ++i)
    all += (i > 0 && cells[i] == feed && cells[i - 1] == lineEnd(kind, "\r") ? feed : "") + cells[i];
  return all;
}

std::u16string textOf(const Story& model) { return model.text().substring(0, model.length()); }
std::u16string textOf(const std::string& file, const formats::Hint& hint) {
  return textOf(Story(PlainFormat().read(bytesOf(file), hint).stories.front()));
}

std::string written(const Opened& opened, const document::Document& document) {
  base::MemoryOutput out;
  opened.source->write(document, out);
  return files::textOf(out.bytes());
}

struct Ends {
  std::string name;
  std::vector<std::string> ends;  ///< of the lines in turn
  std::string inserted;           ///< what a new mark becomes; empty: what it is without any to follow
};

const std::vector<Ends>& lineEnds() {
  static const std::vector<Ends> all = {{"LF", {"\n"}, "\n"},
                                        {"CR LF", {"\r\n"}, "\r\n"},
                                        {"CR", {"\r"}, "\r"},
                                        {"mostly CR LF", {"\r\n", "\n", "\r\n", "\r"}, "\r\n"},
                                        {"LF and CR", {"\r", "\n", "\n"}, "\n"},
                                        {"CR and LF", {"\r", "\n", "\r"}, "\r"},
                                        {"none", {}, ""}};
  return all;
}

struct Sample {
  Cells cells;
  std::u16string text;  ///< without the last mark
};

/// Long enough for several notes of where positions lie.
Sample sampleOf(const Kind& kind, const Ends& ends, bool endsWithLine) {
  Sample sample;
  for (int line = 0; line < 200; ++line) {
    const std::u16string words = kind.sample + std::u16string(static_cast<std::size_t>(line % 7), u'x');
    const Cells cells = cellsOf(kind, words);
    sample.cells.insert(sample.cells.end(), cells.begin(), cells.end());
    sample.text += words;
    if (ends.ends.empty() || (line == 199 && !endsWithLine)) continue;
    sample.cells.push_back(lineEnd(kind, ends.ends[static_cast<std::size_t>(line) % ends.ends.size()]));
    sample.text += u'\r';
  }
  return sample;
}

std::string insertedEnd(const Kind& kind, const Ends& ends) {
  if (!ends.inserted.empty()) return ends.inserted;
  return kind.mark.empty() && kind.encode(u"a").size() == 1 && kind.hint.empty() ? "\n" : "\r\n";
}

TEST(PlainFormat, EveryEncodingAndLineEndSurvivesEdits) {
  Dice dice(7);
  const auto upTo = [&](std::size_t n) {
    return static_cast<std::size_t>(dice.upTo(static_cast<Position>(n)));
  };
  for (const Kind& kind : kinds()) {
    for (const Ends& ends : lineEnds()) {
      for (const bool endsWithLine : {false, true}) {
        SCOPED_TRACE(kind.name + ", " + ends.name);
        Sample sample = sampleOf(kind, ends, endsWithLine);
        const std::string file = joined(kind, sample.cells);
        const Opened opened = PlainFormat().read(bytesOf(file), {kind.hint});
        document::Document document(opened.stories);
        Story& model = document.mainText();
        ASSERT_EQ(textOf(model), sample.text + u'\r');
        ASSERT_EQ(written(opened, document), file);

        const std::u16string fresh = kind.beside + u"\r" + kind.beside;
        Cells freshCells = cellsOf(kind, kind.beside);
        freshCells.push_back(lineEnd(kind, insertedEnd(kind, ends)));
        const Cells again = cellsOf(kind, kind.beside);
        freshCells.insert(freshCells.end(), again.begin(), again.end());
        ASSERT_FALSE(opened.source->refusesText(fresh));
        for (int edit = 0; edit < 30; ++edit) {
          std::size_t from = upTo(sample.text.size());
          std::size_t to = std::min(from + upTo(20), sample.text.size());
          const auto splitsPair = [&](std::size_t at) {
            return at > 0 && at < sample.text.size() && isFirstHalf(sample.text[at - 1]);
          };
          if (splitsPair(from)) --from;
          if (splitsPair(to)) ++to;
          const bool insert = edit % 3 != 0;
          model.replace({static_cast<Position>(from), static_cast<Position>(to)}, insert ? fresh : u"",
                        text::View::results);
          const auto at = [](auto& sequence, std::size_t i) {
            return sequence.begin() + static_cast<std::ptrdiff_t>(i);
          };
          sample.cells.erase(at(sample.cells, from), at(sample.cells, to));
          sample.text.erase(from, to - from);
          if (!insert) continue;
          sample.cells.insert(at(sample.cells, from), freshCells.begin(), freshCells.end());
          sample.text.insert(from, fresh);
        }
        ASSERT_EQ(textOf(model), sample.text + u'\r');
        const std::string saved = written(opened, document);
        ASSERT_EQ(saved, joined(kind, sample.cells));
        EXPECT_EQ(textOf(saved, opened.again), textOf(model)) << "read back";
      }
    }
  }
}

TEST(PlainFormat, ShortFiles) {
  const struct {
    std::string bytes;
    std::u16string text;
  } cases[] = {{"", u"\r"},
               {"\n", u"\r\r"},
               {"\r\n", u"\r\r"},
               {"\r\r\n\n", u"\r\r\r\r"},
               {"\xEF\xBB\xBF", u"\r"},
               {"\xFF\xFE", u"\r"},
               {"\xFF\xFEz", u"\r"},  // half of a unit
               {std::string("\xFF\xFE\r\0\n\0!", 7), u"\r\r"},
               {"\xEF\xBB\xBF\xE2\x82", u"\xDCE2\xDC82\r"},            // a sequence cut off is stray bytes
               {"\xEF\xBB\xBF\xED\xA0\x80", u"\xDCED\xDCA0\xDC80\r"},  // so are surrogates in UTF-8
               {"\xEF\xBB\xBF\xC1\xA1\xF5", u"\xDCC1\xDCA1\xDCF5\r"},  // and over-long sequences
               {std::string("a\0b", 3), std::u16string(u"a\0b\r", 4)},
               {std::string("a\0b\0", 4), std::u16string(u"a\0b\0\r", 5)},
               {std::string("n\0o\0t\0 \0", 8), u"not \r"}};
  for (const auto& [bytes, text] : cases) {
    const Opened opened = PlainFormat().read(bytesOf(bytes));
    document::Document document(opened.stories);
    Story& model = document.mainText();
    EXPECT_EQ(textOf(model), text) << testing::PrintToString(bytes);
    EXPECT_EQ(written(opened, document), bytes);
    model.insertBefore(0, u"X");
    EXPECT_EQ(textOf(written(opened, document), opened.again), u"X" + text) << testing::PrintToString(bytes);
  }
}

TEST(PlainFormat, TellsTheEncodingOrRefuses) {
  const std::string german = "Müller kündigt fünf Verträge über größere Gebäude. ";
  const auto latin = [](std::u16string_view text) { return std::string(text.begin(), text.end()); };
  const std::string japanese = "\x96\x7B\x8C\x5F\x96\xF1\x82\xCD\x81\x41\x8F\x90\x96\xBC\x82\xCC\x93\xFA";
  const std::string cp1251 =
      "\xC4\xEE\xE3\xEE\xE2\xEE\xF0 \xE2\xF1\xF2\xF3\xEF\xE0\xE5\xF2 \xE2 \xF1\xE8\xEB\xF3";
  const struct {
    std::string bytes;
    formats::Hint hint;
    std::string told;  ///< after "!", what the refusal says
  } cases[] = {{"plain", {}, "UTF-8"},
               {"plain", {"koi8r"}, "KOI8-R"},
               {german, {}, "UTF-8"},
               {german, {"Windows-1251"}, "UTF-8"},  // a folder may hold both
               {german, {"Windows-1251", true}, "Windows-1251"},
               {german + german + "\xE9", {}, "UTF-8"},
               {german + german + "\xE9", {"Windows-1252"}, "UTF-8"},
               {german + "\xE9\xE9\xE9",
                {},
                "!is partly UTF-8"},  // too many to be stray, too few to be another encoding
               {german + "\xE9\xE9\xE9", {"UTF-8"}, "UTF-8"},
               {"\xEF\xBB\xBF\xE9", {"KOI8-R", true}, "UTF-8"},
               {latin(u"Die Verträge der Müllers"), {}, "Windows-1252"},
               {"the tenant\x92s deposit of \xA3"
                "450",
                {},
                "Windows-1252"},
               {japanese, {}, "Shift_JIS"},
               {"\n" + japanese, {"EUC-JP"}, "!is not EUC-JP: line 2 holds a byte that means nothing"},
               {japanese + "\x81", {"SJIS"}, "!"},
               {cp1251, {}, "Windows-1251"},
               {cp1251, {"CP866"}, "CP866"},
               {"a letter \xC6 is too little", {}, "!cannot be told for certain"},
               {std::string("zeros\0 and \xE9", 12), {}, "!cannot be told for certain"},
               {german, {"UTF-16LE"}, "UTF-8"},
               {latin(u"Übergabe der Wohnung"), {}, "Windows-1252"},
               {std::string("\x42\x30\0a", 4), {"UTF-16LE"}, "UTF-16LE"},
               {"\x1B$B4A\x1B(B kanji", {}, "!"},  // without a byte over 127
               {"\x1B$B4A\x1B(B kanji", {"ascii"}, "ASCII"},
               {"\x1B$)C\x0E\x30\x21\x0F", {}, "!"},
               {"\x1B(I1\x1B(B", {}, "!ISO-2022"},
               {"in ~{VPND~} HZ", {}, "!HZ"},
               {"in ~{!~~} HZ", {}, "!HZ"},
               {"\x1B[31mred\x1B[0m\x1B(B, figures~{\\em 3} and~{4}, 5~}", {}, "UTF-8"},
               {"plain", {"UTF-16"}, "!"},
               {"plain", {"ISO-2022-JP"}, "!"},
               {"plain", {"HZ"}, "!"},
               {"plain", {"utf-7"}, "!"},
               {"plain", {"IBM930"}, "!"},  // by what its bytes do
               {"plain", {"UTF-32LE"}, "!"},
               {"plain", {"UTF-8//IGNORE"}, "!"},
               {"plain", {"no such"}, "!"}};
  for (const auto& [bytes, hint, told] : cases) {
    SCOPED_TRACE(testing::PrintToString(bytes) + " " + hint.encoding);
    try {
      const Opened opened = PlainFormat().read(bytesOf(bytes), hint);
      EXPECT_EQ(opened.encoding, told);
      EXPECT_EQ(written(opened, document::Document(opened.stories)), bytes);
    } catch (const errors::DocumentError& refused) {
      EXPECT_EQ(refused.problem(), errors::Problem::encoding);
      ASSERT_TRUE(told.starts_with("!")) << refused.what();
      EXPECT_THAT(refused.what(), testing::HasSubstr(told.substr(1)));
    }
  }
}

TEST(PlainFormat, ReadsAndWritesEveryByteOfWindows1252) {
  std::string bytes;
  for (unsigned byte = 0x80; byte <= 0xA0; ++byte) bytes += static_cast<char>(byte);
  const std::u16string text = u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ\u00A0";
  const Opened opened = PlainFormat().read(bytesOf(bytes), {"CP1252", true});
  document::Document document(opened.stories);
  EXPECT_EQ(textOf(document.mainText()), text + u"\r");
  document.mainText().insertBefore(0, text);
  EXPECT_EQ(written(opened, document), bytes + bytes);
}

TEST(PlainFormat, TellsEncodingsByTheirLanguages) {
  const struct {
    std::string encoding;
    std::u16string text;
  } cases[] = {
      {"KOI8-R", u"Договор вступает в силу со дня его подписания сторонами."},
      {"IBM866", u"Договор вступает в силу со дня его подписания сторонами."},
      {"ISO-8859-5", u"Договор вступает в силу со дня его подписания сторонами."},
      {"Windows-1253", u"Άρθρο πρώτο: η «σύμβαση» αρχίζει να ισχύει από την ημέρα της υπογραφής της."},
      {"ISO-8859-7", u"Η σύμβαση αρχίζει να ισχύει από την ημέρα της υπογραφής της."},
      {"Windows-1255", u"ההסכם ייכנס לתוקפו ביום חתימתו על ידי שני הצדדים."},
      {"Windows-1256", u"يبدأ العمل بهذه الاتفاقية من تاريخ التوقيع عليها من الطرفين."},
      {"Windows-874", u"สัญญานี้มีผลบังคับใช้ตั้งแต่วันที่ลงนามเป็นต้นไป"},
      {"EUC-JP", u"本契約は署名の日から効力を生じるものとする。"},
      {"GBK", u"本合同自双方签字之日起生效，未尽事宜由双方协商解决。"},
      {"Big5", u"本合約自雙方簽字之日起生效，未盡事宜由雙方協商解決。"},
      {"EUC-KR", u"이 계약은 양 당사자가 서명한 날부터 효력이 발생한다."},
      {"Windows-1250", u"Příliš žluťoučký kůň úpěl ďábelské ódy, smlouva končí."},
      {"ISO-8859-2", u"Umowa wchodzi w życie z dniem jej podpisania, także załączniki są ważne."},
      {"Windows-1254", u"Sözleşme imzalandığı gün yürürlüğe girer ve iki yıl geçerlidir."}};
  for (const auto& [encoding, text] : cases) {
    SCOPED_TRACE(encoding);
    const Opened empty = PlainFormat().read(bytesOf("\n"), {encoding, true});
    document::Document document(empty.stories);
    document.mainText().insertBefore(0, text);
    EXPECT_EQ(PlainFormat().read(bytesOf(written(empty, document))).encoding, encoding);
  }
  for (const LikelyEncoding& likely : likelyEncodings()) EXPECT_EQ(encodingNamed(likely.name), likely.name);
}

TEST(PlainFormat, TextWithoutPlaceIsRefused) {
  const struct {
    std::string file;
    std::string hint;
    std::u16string text;
    std::string said;  ///< empty: accepted
  } cases[] = {{"\xFC", "CP1252", u"→", "U+2192"},
               {"\xFC", "CP1252", u"\U0001F4DC", "U+1F4DC"},
               {"\xFC", "CP1252", u"€\u0081ü\r\n", ""},
               {"\xFC", "CP1252", u"\u0080", "U+0080"},
               {"abc", "", u"→\U0001F4DC", ""},
               {"abc", "", u"\xD800", "U+D800"},
               {"abc", "", u"a\xDC00", "U+DC00"},
               {"\xEF\xBB\xBF\xFF", "", u"\xDCFF", "U+DCFF"},  // else it would be a stray byte
               {"\xFF\xFE", "", u"\xD800", ""},
               {"abc", "Shift_JIS", u"表é", "U+00E9"},
               {"abc", "Shift_JIS", u"\xDC81", "U+DC81"},
               {"abc", "GB18030", u"é→\U0001F4DC\r", ""},
               {"abc", "KOI8-R", u"Дé", "U+00E9"}};
  for (const auto& [file, hint, text, said] : cases) {
    const Opened opened = PlainFormat().read(bytesOf(file), {hint});
    const auto refusal = opened.source->refusesText(text);
    EXPECT_EQ(refusal.has_value(), !said.empty()) << said;
    if (refusal) {
      EXPECT_THAT(*refusal, testing::HasSubstr(said));
    }
  }
}

TEST(PlainFormat, HalvesOfTwoCharactersMayMeet) {
  const Opened opened = PlainFormat().read(bytesOf("a\U0001F4DC\U0001F58Bz"));
  document::Document met(opened.stories);
  met.mainText().replace({2, 4}, u"", text::View::results);
  EXPECT_EQ(textOf(written(opened, met), {}), u"a\U0001F58Bz\r");
}

TEST(PlainFormat, UnsuitableFilesAreRefused) {
  const struct {
    const char* bytes;
    const char* extension;
    bool recognised;
  } cases[] = {{"text", "txt", true},      {"", "txt", true},           {"PK is not a zip", "txt", true},
               {"text", "", true},         {"text", "docx", false},     {"PK\x03\x04", "txt", false},
               {"%PDF-1.7", "txt", false}, {"text\t\x1A", "doc", true}, {"", "doc", false},
               {"a\x08", "dot", false},    {"\x0Et", "doc", false},     {"\xFE\xFF\x01", "dot", true}};
  for (const auto& it : cases)
    EXPECT_EQ(PlainFormat().recognises(bytesOf(it.bytes).view, it.extension), it.recognised) << it.bytes;
  for (const std::string& utf32 :
       {std::string("\xFF\xFE\0\0a\0\0\0", 8), std::string("\0\0\xFE\xFF\0\0\0a", 8)})
    EXPECT_THROW(PlainFormat().read(bytesOf(utf32)), errors::DocumentError);
}

}  // namespace
}  // namespace pluvo::plain
