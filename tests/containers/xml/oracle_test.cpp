#include "containers/xml/events.h"
#include "storage/files/as_text.h"
#include "storage/store/corpus.h"
#include "xml/encoding.h"
#include "zip/archive.h"

#include <gtest/gtest.h>

#include <random>

/// The scanner against expat, an independent reader.
namespace pluvo::xml {
namespace {

/// Random documents from pieces that are sound in most places and fatal in some.
class Maker {
 public:
  explicit Maker(unsigned seed) : random_(seed) {}

  std::string document() {
    std::string text = one({"", "", "<?xml version=\"1.0\"?>", "<!-- - -->", "\n"});
    element(text, 0);
    text += one({"", "", "\n", "<?p q?>", "<!--x-->", "<a/>", "x"});
    return text;
  }

 private:
  std::size_t below(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random_); }
  std::string one(std::initializer_list<const char*> choices) {
    return choices.begin()[below(choices.size())];
  }

  std::string name() {
    return one({"a", "zZ", "b", "p:a", "p:b", "q:a", "long-name.of_20:x", "w:abcdefgh", "xml:a"});
  }

  void element(std::string& text, int depth) {
    const std::string tag = name();
    text += "<" + tag;
    if (depth == 0) text += " xmlns:p='u' xmlns:q='v' xmlns:w='w' xmlns:long-name.of_20='l'";
    for (std::size_t i = below(4); i > 0; --i) {
      text += one({" ", "\n", "  "}) + one({"xmlns", "xmlns:p", "xmlns:q"}) + "=" +
              one({"'u'", "\"v\"", "'w&amp;'"});
      if (below(2) == 0) break;
    }
    for (std::size_t i = below(4); i > 0; --i) {
      text += " " + name() + one({"=", " = "}) +
              one({"''", "'x\ty'", "\"'&#9;'\"", "'&lt;'", "\"long value here\""});
    }
    if (below(4) == 0) {
      text += "/>";
      return;
    }
    text += one({">", " >"});
    for (std::size_t i = below(6); i > 0; --i) content(text, depth);
    text += "</" + (below(200) == 0 ? name() : tag) + one({">", "\n>"});
  }

  void content(std::string& text, int depth) {
    if (depth < 6 && below(3) != 0) return element(text, depth + 1);
    text += one({"text", "\r\n", "\r", "a]]b", "&amp;", "&#65;", "&#x1F600;", "&#xaAfF;", "<![CDATA[<&]]]]>",
                 "<!--c-->", "<?d e ?>", " ", "plain words in a longer stretch of text"});
    if (below(300) == 0) text += one({"&", "]]>", "&x;", "<", "\x01", "<!-- -- -->"});
  }

  std::mt19937 random_;
};

TEST(Oracle, AgreesOnRandomDocuments) {
  std::size_t sound = 0;
  for (unsigned seed = 0; seed < 4000; ++seed) {
    const std::string text = Maker(seed).document();
    const auto ours = eventsOfScanner(text);
    ASSERT_EQ(ours, eventsOfExpat(text)) << "seed " << seed << "\n" << text;
    if (ours) ++sound;
  }
  EXPECT_GT(sound, 400U);
  EXPECT_LT(sound, 3600U);
}

TEST(Oracle, AgreesOnEveryPartOfRealDocuments) {
  const auto corpus = store::wordCorpus();
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  std::size_t parts = 0;
  for (const auto& file : corpus) {
    try {
      const auto opened = zip::Archive::open(store::bytesOf(file));
      for (const zip::Member& member : opened.members()) {
        if (!member.name.ends_with(".xml") && !member.name.ends_with(".rels")) continue;
        const std::string text = files::textOf(toUtf8(opened.read(member), member.name).utf8.view);
        const auto ours = eventsOfScanner(text);
        const bool agrees = ours == eventsOfExpat(text);
        EXPECT_TRUE(agrees || (!ours && mayDiffer(text))) << file << " " << member.name;
        if (agrees) ++parts;
      }
    } catch (const errors::DocumentError&) {
      continue;  // what opening refuses is the archive's matter
    }
  }
  EXPECT_GT(parts, corpus.size());
}

}  // namespace
}  // namespace pluvo::xml
