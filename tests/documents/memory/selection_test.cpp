#include "documents/support/notation.h"
#include "errors/fault.h"
#include "memory/application.h"
#include "word/faults.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace pluvo::memory {
namespace {

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

TEST(DefaultFolders, AreThoseSet) {
  MemoryApplication application;
  application.defaultFilePath(word::wdUserTemplatesPath, u"/templates");
  EXPECT_EQ(application.Options()->DefaultFilePath(word::wdUserTemplatesPath), u"/templates");
  try {
    application.Options()->DefaultFilePath(word::wdDocumentsPath);
    ADD_FAILURE() << "a folder that nobody set";
  } catch (const errors::Fault& fault) {
    EXPECT_EQ(fault.number, word::kNotAvailable);
  }
}

}  // namespace
}  // namespace pluvo::memory
