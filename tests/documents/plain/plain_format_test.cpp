#include "plain/plain_format.h"

#include "documents/files/as_text.h"
#include "documents/support/dice.h"
#include "errors/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace pluvo::plain {
namespace {

using files::bytesOf;
using formats::Opened;
using model::Model;
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
};

const std::vector<Kind>& kinds() {
  const auto utf8 = [](std::u16string_view c) { return errors::utf8(c); };
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
      {"Windows-1252, Latin-1 part", "", latin, false, u"Grüße \u00FFx", u"ü"},
      {"Windows-1252", "", windows, false, u"Grüße € \u0081 x", u"”"}};
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

std::u16string textOf(const Model& model) { return model.text().substring(0, model.length()); }
std::u16string textOf(const std::string& file) {
  return textOf(Model(PlainFormat().read(bytesOf(file)).content));
}

std::string written(const Opened& opened, const Model& model) {
  files::MemoryOutput out;
  opened.source->write(model, out);
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
  return kind.mark.empty() && kind.encode(u"a").size() == 1 && kind.name.find("Windows") == std::string::npos
             ? "\n"
             : "\r\n";
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
        const Opened opened = PlainFormat().read(bytesOf(file));
        Model model(opened.content);
        ASSERT_EQ(textOf(model), sample.text + u'\r');
        ASSERT_EQ(written(opened, model), file);

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
        const std::string saved = written(opened, model);
        ASSERT_EQ(saved, joined(kind, sample.cells));
        EXPECT_EQ(textOf(saved), textOf(model)) << "read back";
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
               {"\xE2\x82", u"\u00E2\u201A\r"},            // a sequence cut off is Windows-1252
               {"\xED\xA0\x80", u"\u00ED\u00A0\u20AC\r"},  // so are surrogates in UTF-8
               {"\xC0\xAF\xF5", u"\u00C0\u00AF\u00F5\r"},
               {"\xC1\xA1", u"\u00C1\u00A1\r"},  // and over-long sequences
               {std::string("a\0b", 3), std::u16string(u"a\0b\r", 4)},
               {std::string("a\0b\0", 4), std::u16string(u"a\0b\0\r", 5)},
               {std::string("n\0o\0t\0 \0", 8), u"not \r"}};
  for (const auto& [bytes, text] : cases) {
    const Opened opened = PlainFormat().read(bytesOf(bytes));
    Model model(opened.content);
    EXPECT_EQ(textOf(model), text) << testing::PrintToString(bytes);
    EXPECT_EQ(written(opened, model), bytes);
    model.insertBefore(0, u"X");
    EXPECT_EQ(textOf(written(opened, model)), u"X" + text) << testing::PrintToString(bytes);
  }
}

TEST(PlainFormat, TextWithoutPlaceIsRefused) {
  const struct {
    std::string file;
    std::u16string text;
    std::string said;  ///< empty: accepted
  } cases[] = {{"\xFC", u"→", "U+2192"},      {"\xFC", u"\U0001F4DC", "U+1F4DC"},
               {"\xFC", u"€\u0081ü", ""},     {"\xFC", u"\u0080", "U+0080"},
               {"abc", u"→\U0001F4DC", ""},   {"abc", u"\xD800", "U+D800"},
               {"abc", u"a\xDC00", "U+DC00"}, {"\xFF\xFE", u"\xD800", ""}};
  for (const auto& [file, text, said] : cases) {
    const Opened opened = PlainFormat().read(bytesOf(file));
    const auto refusal = opened.source->refusesText(text);
    EXPECT_EQ(refusal.has_value(), !said.empty()) << said;
    if (refusal) {
      EXPECT_THAT(*refusal, testing::HasSubstr(said));
    }
  }
}

TEST(PlainFormat, ACharacterCutInTwoIsRefusedUnlessItsHalvesMeetAgain) {
  const Opened opened = PlainFormat().read(bytesOf("a\U0001F4DC\U0001F58Bz"));
  const std::u16string text = u"a\U0001F4DC\U0001F58Bz";
  Model cut(opened.content);
  cut.replace({1, 2}, u"", text::View::results);
  EXPECT_THROW(written(opened, cut), files::DocumentError);
  Model last(opened.content);
  last.replace({4, 6}, u"", text::View::results);
  EXPECT_THROW(written(opened, last), files::DocumentError);
  Model met(opened.content);
  met.replace({2, 4}, u"", text::View::results);  // the first half of one, the second of the other
  EXPECT_EQ(textOf(written(opened, met)), u"a" + text.substr(1, 1) + text.substr(4, 1) + u"z\r");
}

TEST(PlainFormat, UnsuitableFilesAreRefused) {
  const struct {
    const char* bytes;
    const char* extension;
    bool recognised;
  } cases[] = {{"text", "txt", true},     {"", "txt", true},       {"PK is not a zip", "txt", true},
               {"text", "", true},        {"text", "docx", false}, {"PK\x03\x04", "txt", false},
               {"%PDF-1.7", "txt", false}};
  for (const auto& it : cases)
    EXPECT_EQ(PlainFormat().recognises(bytesOf(it.bytes).view, it.extension), it.recognised) << it.bytes;
  for (const std::string& utf32 :
       {std::string("\xFF\xFE\0\0a\0\0\0", 8), std::string("\0\0\xFE\xFF\0\0\0a", 8)})
    EXPECT_THROW(PlainFormat().read(bytesOf(utf32)), files::DocumentError);
}

}  // namespace
}  // namespace pluvo::plain
