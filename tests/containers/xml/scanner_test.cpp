#include "xml/scanner.h"

#include "storage/files/as_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pluvo::xml {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr NamespaceId kUrnW = 2;
constexpr KnownNamespace kNamespaces[] = {{"urn:w", kUrnW}, {"urn:w-strict", kUrnW}};
constexpr KnownName kNames[] = {
    {kUrnW, "p", 1}, {kUrnW, "val", 2}, {kNoNamespace, "val", 3}, {kXmlNamespace, "space", 4}};

const Vocabulary& vocabulary() {
  static const Vocabulary made(kNamespaces, kNames);
  return made;
}

Scanner scannerOf(std::string_view text) {
  return {{reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, vocabulary(), "part.xml"};
}

/// Each token as its kind and its bytes, names with their numbers: "start<a>", "end:1</w:p>".
std::vector<std::string> tokensOf(std::string_view text) {
  static constexpr const char* kKinds[] = {"start", "empty",   "end",         "text",  "reference",
                                           "cdata", "comment", "instruction", "finish"};
  std::vector<std::string> tokens;
  Scanner scanner = scannerOf(text);
  for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
    std::string shown = kKinds[static_cast<std::size_t>(token)];
    if (token <= Token::end && scanner.name() != kOtherName) shown += ":" + std::to_string(scanner.name());
    shown += scanner.bytes(scanner.begin(), scanner.end());
    if (token == Token::reference) shown += std::to_string(static_cast<unsigned>(scanner.codePoint()));
    tokens.push_back(shown);
  }
  return tokens;
}

std::string refusal(std::string_view text) {
  return files::refusalOf([&] {
    Scanner scanner = scannerOf(text);
    while (scanner.next() != Token::finish) {
    }
  });
}

TEST(Scanner, KnowsNamesByNamespaceWhateverThePrefix) {
  EXPECT_THAT(
      tokensOf(
          "<w:p xmlns:w='urn:w'><p/><x:p xmlns:x='urn:w-strict'/><p xmlns='urn:w'><w:p xmlns:w='urn:v'/><p "
          "xmlns=''/></p><w:p/></w:p>"),
      testing::ElementsAre("start:1<w:p xmlns:w='urn:w'>", "empty<p/>",
                           "empty:1<x:p xmlns:x='urn:w-strict'/>", "start:1<p xmlns='urn:w'>",
                           "empty<w:p xmlns:w='urn:v'/>", "empty<p xmlns=''/>", "end:1</p>", "empty:1<w:p/>",
                           "end:1</w:p>"));
  EXPECT_THAT(tokensOf("<a xmlns:w='urn:&#119;'><w:p/></a>"), testing::Contains("empty:1<w:p/>"));
}

TEST(Scanner, GivesAttributesWithPlacesAndValues) {
  const std::string text =
      "<w:p xmlns:w='urn:w' val=\"a\" w:val='&lt;\r\n\t\"' xml:space = \"preserve\" w:p=''/>";
  Scanner scanner = scannerOf(text);
  ASSERT_EQ(scanner.next(), Token::empty);
  ASSERT_EQ(scanner.attributes().size(), 5U);
  const Attribute* bare = scanner.attribute(3);
  const Attribute* known = scanner.attribute(2);
  const Attribute* space = scanner.attribute(4);
  ASSERT_TRUE(bare != nullptr && known != nullptr && space != nullptr);
  EXPECT_EQ(text.substr(bare->nameBegin, bare->valueEnd - bare->nameBegin), "val=\"a");
  EXPECT_TRUE(bare->plain);
  EXPECT_FALSE(known->plain);
  EXPECT_EQ(known->space, kUrnW);
  EXPECT_EQ(known->prefixLength, 1U);
  EXPECT_EQ(scanner.rawValue(*known), "&lt;\r\n\t\"");
  EXPECT_EQ(scanner.value(*known), "<  \"");
  EXPECT_EQ(scanner.value(*space), "preserve");
  EXPECT_EQ(scanner.attribute(1)->valueBegin, scanner.attribute(1)->valueEnd);
}

TEST(Scanner, ReadsAValueToItsEndWhateverBecameOfTheBytes) {
  std::string text = "<a b='x&amp;y'/>";
  Scanner scanner = scannerOf(text);
  ASSERT_EQ(scanner.next(), Token::empty);
  text.replace(text.find(';'), 1, "&");  // as in a mapped file that somebody writes into
  EXPECT_EQ(scanner.value(scanner.attributes()[0]).size(), 7U);
}

TEST(Scanner, DeclarationsHoldUntilTheTokenAfterTheirElement) {
  const auto meaning = [](const Scanner& scanner) {
    return std::vector<NamespaceId>{scanner.namespaceOf("w"), scanner.namespaceOf("")};
  };
  using Meaning = std::vector<NamespaceId>;
  Scanner scanner = scannerOf("<a><b xmlns:w='urn:w'>c</b><b xmlns='urn:w'/><d/></a>");
  EXPECT_EQ((scanner.next(), meaning(scanner)), (Meaning{kOtherNamespace, kNoNamespace}));
  EXPECT_EQ((scanner.next(), meaning(scanner)), (Meaning{kUrnW, kNoNamespace}));
  scanner.next();
  EXPECT_EQ((scanner.next(), meaning(scanner)), (Meaning{kUrnW, kNoNamespace}));
  EXPECT_EQ((scanner.next(), meaning(scanner)), (Meaning{kOtherNamespace, kUrnW}));
  EXPECT_EQ((scanner.next(), meaning(scanner)), (Meaning{kOtherNamespace, kNoNamespace}));
}

TEST(Scanner, SkipsElementsFromTheirStartOnly) {
  Scanner scanner = scannerOf("<a><a><a/>b</a><!-- c --><d/>e</a>");
  scanner.next();
  scanner.next();
  EXPECT_EQ(scanner.depth(), 2U);
  scanner.skipElement();
  EXPECT_EQ(scanner.depth(), 1U);
  EXPECT_EQ(scanner.end(), 15U);
  for (const Token token : {Token::comment, Token::empty, Token::text}) {
    EXPECT_EQ(scanner.next(), token);
    scanner.skipElement();
    EXPECT_EQ(scanner.depth(), 1U);
  }
}

TEST(Scanner, SkipsNothingFromATextInAnElement) {
  Scanner scanner = scannerOf("<a>b<c/></a>");
  scanner.next();
  scanner.next();
  scanner.skipElement();
  EXPECT_EQ(scanner.next(), Token::empty);
}

TEST(Scanner, SaysWhatIsWrongAndWhere) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "part \"part.xml\" is damaged at byte 0: it has no element; let a"},
      {"<!-- a -->", "no element"},
      {"<a>", "ends within the element <a>"},
      {"<a><b></a>", "<b> is not closed"},
      {"<a></ab>", "not closed by its own"},
      {"<a></a", "not closed"},
      {"<a></a?</a>", "byte 6: an end tag is not closed"},
      {"</a>", "closes nothing"},
      {"<a/><b/>", "second outermost"},
      {"<a/>b", "text outside"},
      {"&#32;<a/>", "text outside"},
      {"<a/><![CDATA[]]>", "text outside"},
      {"<a b='c' b='d'/>", "byte 9: an attribute is repeated"},
      {"<a xmlns:p='u' xmlns:q='u' p:b='' q:b=''/>", "repeated"},
      {"<a xmlns:p='u' xmlns:p='v'/>", "repeated"},
      {"<a b='c'd='e'/>", "other than a name and attributes"},
      {"<a b/>", "no value"},
      {"<a b=c/>", "not in quotes"},
      {"<a b='<'/>", "'<' in an attribute"},
      {"<a b='c", ": an attribute's value is not closed"},
      {"<a b='c'", "tag is not closed"},
      {"<a/ >", "tag is not closed"},
      {"< a/>", "begins no markup"},
      {"<1/>", "characters that names"},
      {"<a:b:c xmlns:a='u'/>", "characters that names"},
      {"<a:/>", "characters that names"},
      {"<a \xC3\x97='b'/>", "byte 3: a name has characters that names"},
      {"<p:a/>", "declared nowhere"},
      {"<a><b xmlns:p='u'/><p:c/></a>", "byte 19: a name has a prefix"},
      {"<a xmlns:p=''/>", "without a namespace"},
      {"<a xmlns:xml='u'/>", "reserved"},
      {"<a xmlns:p='http://www.w3.org/XML/1998/namespace'/>", "reserved"},
      {"<xmlns:a/>", "reserved"},
      {"<a>&b;</a>", "begins no character reference"},
      {"<a>&#0;</a>", "begins no character reference"},
      {"<a>&#x@;</a>", "begins no character reference"},
      {"<a>&#1a;</a>", "begins no character reference"},
      {"<a>&#:;</a>", "begins no character reference"},
      {"<a>&#xg;</a>", "begins no character reference"},
      {"<a>&#xD800;</a>", "begins no character reference"},
      {"<a>&#x110000;</a>", "begins no character reference"},
      {"<a>&#99999999999999999999;</a>", "begins no character reference"},
      {"<a b='&amp'/>", "begins no character reference"},
      {"<a>]]></a>", "]]>"},
      {"<a><!-- -- --></a>", "\"--\" in a comment"},
      {"<a><!-- b", "comment is not closed"},
      {"<a><![CDATA[ b", "CDATA section is not closed"},
      {"<a><?b", ": a processing instruction is not closed"},
      {"<a><? b?></a>", "instruction has no name"},
      {"<a><!b></a>", "markup that XML does not know"},
      {" <?xml version='1.0'?><a/>", "not at the beginning"},
      {"<?xml version='2.0'?><a/>", "declaration is not one"},
      {"<?xml encoding='UTF-8'?><a/>", "declaration is not one"},
      {"<?xml version \"1.0\"?><a/>", "declaration is not one"},
      {"<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>", "document type"},
      {"<a>\x01</a>", "byte 3: there is a byte"},
      {"<a>\xC0\xAF</a>", "byte 3"},
      {"<a>\xED\xA0\x80</a>", "byte 3"},
      {"<a>\xEF\xBF\xBF</a>", "byte 3"},
      {std::string(70, ' ') + "<a>\xE2\x82", "byte 73"}};
  for (const auto& [text, said] : cases)
    EXPECT_THAT(refusal(text), AllOf(StartsWith("damaged: "), HasSubstr(said))) << text;
}

TEST(Scanner, TakesNamesAsTheStandardHasThem) {
  for (const std::string name : {"À", "Ö", "Ø", "ö", "ø", "Ͱ", "ͽ", "Ϳ", "\u1FFF", "、", "\uFFFD",
                                 "\U00010000", "a·", "a\u0300", "a\u036F", "a‿", "xal"})
    EXPECT_EQ(refusal("<?" + name + " b?><" + name + "/>"), "") << name;
  for (const std::string name : {"×", "÷", "·", "\u0300", ";", "\u2000", "\u3000", "\uE000", "a\u2041"})
    EXPECT_THAT(refusal("<" + name + "/>"), StartsWith("damaged: ")) << name;
}

TEST(Scanner, LooksAtEveryCharacterWhereverItStands) {
  const std::string bad[] = {"\x01",         "\x80",     "\xC0\x80",     "\xC1\xBF",    "\xD0",
                             "\xE0\x80\x80", "\xE4\xB8", "\xED\xA0\x80", "\xEF\xBF\xBE"};
  for (const std::string filler : {"a", "д", "中"}) {
    std::string before = "<a>";
    for (int i = 0; i < 70; ++i, before += filler) {
      for (const std::string& each : bad)
        EXPECT_THAT(refusal(before + each + filler + filler + "</a>"),
                    HasSubstr("byte " + std::to_string(before.size()) + ":"));
      EXPECT_EQ(refusal(before + "é\x7F\xEF\xBF\xBD😀" + filler + "</a>"), "");
    }
  }
}

TEST(Scanner, KeepsItsLimits) {
  const auto nested = [](std::size_t depth) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i) text += "<a>";
    for (std::size_t i = 0; i < depth; ++i) text += "</a>";
    return text;
  };
  EXPECT_EQ(refusal(nested(2048)), "");
  EXPECT_THAT(refusal(nested(2049)), AllOf(StartsWith("too-large: "), HasSubstr("nested 2048 deep")));
  EXPECT_THAT(refusal(nested(1'000'000)), AllOf(StartsWith("too-large: "), HasSubstr("nested")));

  const auto wide = [](const std::string& name, std::size_t count) {
    std::string text = "<a";
    for (std::size_t i = 0; i < count; ++i) text += " " + name + std::to_string(i) + "='u'";
    return text + "/>";
  };
  EXPECT_EQ(refusal(wide("b", 1024)), "");
  EXPECT_THAT(refusal(wide("b", 1025)), AllOf(StartsWith("too-large: "), HasSubstr("attributes")));
  EXPECT_EQ(refusal(wide("xmlns:b", 200)), "");
  EXPECT_THAT(refusal(wide("xmlns:b", 300)), AllOf(StartsWith("too-large: "), HasSubstr("namespaces")));
  std::string many = wide("c", 20);
  many.resize(many.size() - 2);
  EXPECT_THAT(refusal(many + " c3=''/>"), HasSubstr("repeated"));
  EXPECT_THAT(refusal(many + " xmlns:p='u' xmlns:q='u' p:b='' q:b=''/>"), HasSubstr("repeated"));
  EXPECT_EQ(refusal(many + " xmlns:p='u' xmlns:q='v' p:b='' q:b=''/>"), "");
}

}  // namespace
}  // namespace pluvo::xml
