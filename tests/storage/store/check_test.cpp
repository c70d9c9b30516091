#include "notation_format.h"
#include "storage/files/as_text.h"
#include "storage/files/scratch.h"
#include "store/store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pluvo::store {
namespace {

using files::refusalOf;
using files::Scratch;
using testing::StartsWith;

Store storeOf(int& derivations, NotationFormat::Spoil spoil) {
  auto registry = std::make_shared<formats::Registry>();
  registry->add(std::make_unique<NotationFormat>(derivations, std::move(spoil)));
  return Store(files::machineFileSystem(), registry);
}

/// A writer that goes wrong in any layer of any story is found out, and the file stays.
TEST(Check, ReadsEveryLayerOfEveryStoryAnew) {
  const std::string file = "one <7:two> {code|result} <h:hidden> ⟦a¦‖⟧⟦b¦‖⟧¶\nnote {x|y}¶";
  const struct {
    std::string written;
    std::string instead;
    std::string differs;
  } cases[] = {{"two", "two", ""},
               {"two", "twO", "text"},
               {"<7:", "<6:", "highlighting"},
               {"<7:two>", "two", "highlighting"},
               {"⟧⟦", "", "structure"},
               {"note", "Note", "text"},
               {"{x|y}", "\\{x\\|y\\}", "text"},
               {"\nnote {x|y}¶", "", "parts"}};
  for (const auto& [written, instead, differs] : cases) {
    SCOPED_TRACE(written + " / " + instead);
    const Scratch scratch;
    int none = 0;
    const auto opened = storeOf(none, [&, from = written, to = instead](std::string all) {
                          return all.replace(all.find(from), from.size(), to);
                        }).open(scratch.put("a.note", file));
    opened->document()->mainText().insertBefore(0, u"new ");
    const std::string refusal = refusalOf([&] { opened->save(); });
    EXPECT_EQ(refusal.empty(), differs.empty()) << refusal;
    if (!differs.empty()) {
      EXPECT_THAT(refusal, testing::HasSubstr("would not have the same " + differs + " as"));
    }
    EXPECT_EQ(scratch.get("a.note"), (differs.empty() ? "new " : "") + file);
  }
}

TEST(Check, OpensAnEncryptedVersionWithTheKeyThatOneDerivationMade) {
  const Scratch scratch;
  int derivations = 0;
  const Store store = storeOf(derivations, [](std::string all) { return all; });
  const auto keyOf = [](std::u16string password) {
    return std::make_shared<formats::Key>(base::SecretText(std::move(password)));
  };
  const auto mask = std::make_shared<formats::Key>(base::SecretBytes(std::vector<std::uint8_t>{0x55}));
  const std::string path = scratch.put("a.note", NotationFormat::changed("one¶", mask));
  EXPECT_THAT(refusalOf([&] { store.open(path); }), StartsWith("password: "));
  EXPECT_THAT(refusalOf([&] { store.open(path, {.hint = {.key = keyOf(u"shut")}}); }),
              StartsWith("password: "));

  const auto opened = store.open(path, {.hint = {.key = keyOf(u"open")}});
  opened->document()->mainText().insertBefore(0, u"new ");
  opened->save();
  EXPECT_EQ(scratch.get("a.note"), NotationFormat::changed("new one¶", mask));
  EXPECT_EQ(derivations, 1);
}

}  // namespace
}  // namespace pluvo::store
