#include "document/document.h"
#include "errors/fault.h"

#include <gtest/gtest.h>

namespace pluvo::document {
namespace {

/// Every edit that would bring in one more part is refused, and nothing has happened.
TEST(Bounds, OfPartsRefuseFurtherEdits) {
  const auto content = [] { return plainContent(text::OriginalText(std::u16string(u"a b c d e\r"))); };
  PartCount count{4};
  Story model(content(), nullptr, &count);
  Story other(content(), nullptr, &count);
  other.replace({0, 2}, u"", text::View::results);
  other.replace({2, 3}, u"y", text::View::results);
  model.replace({0, 1}, u"x", text::View::results);
  model.replace({2, 3}, u"x", text::View::results);
  const auto numberOf = [](const auto& edit) {
    try {
      edit();
    } catch (const errors::Fault& fault) {
      return fault.number;
    }
    return 0;
  };
  EXPECT_EQ(numberOf([&] { model.replace({4, 5}, u"x", text::View::results); }), errors::kOutOfMemory);
  EXPECT_EQ(numberOf([&] { model.insertBehind(4, u"x"); }), errors::kOutOfMemory);
  EXPECT_EQ(numberOf([&] { model.highlight({4, 5}, 7); }), errors::kOutOfMemory);
  EXPECT_EQ(model.text().substring(0, model.length()), u"x x c d e\r");
  EXPECT_EQ(model.highlight().runCount(), 1U);
}

}  // namespace
}  // namespace pluvo::document
