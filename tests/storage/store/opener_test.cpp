#include "store/opener.h"

#include "notation_format.h"
#include "storage/files/scratch.h"
#include "word/faults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace pluvo::store {
namespace {

using errors::DocumentError;
using errors::Problem;
using files::Scratch;
using testing::HasSubstr;

/// Documents in notation that ask for something, as their first letter says: L and H for a password, which
/// costs many hashes for H; C for one to change it; R whether it is only to be read; E for an encoding. P is
/// protected, X for good.
class AskingFormat final : public formats::Format {
 public:
  class Lock final : public formats::Lock {
   public:
    explicit Lock(std::uint64_t hashes) : hashes_(hashes) {}
    std::uint64_t hashes() const override { return hashes_; }
    formats::SharedKey keyBy(const base::SecretText& password) const override {
      return password.text() == u"open" ? std::make_shared<formats::Key>(base::SecretBytes({1})) : nullptr;
    }

   private:
    std::uint64_t hashes_;
  };

  std::string_view name() const override { return "note"; }
  bool recognises(base::ByteSpan, std::string_view extension) const override { return extension == "note"; }
  using formats::Format::read;
  formats::Opened read(base::Bytes bytes, const formats::Hint& hint) const override {
    const char first = static_cast<char>(bytes.view[0]);
    formats::Opened opened =
        NotationFormat(derivations_, [](std::string all) { return all; }).read(bytes, {});
    if (first == 'L' || first == 'H')
      opened.again.key = formats::keyOf(Lock(first == 'H' ? 20'000'000 : 10), hint.key, hint.findKey);
    const auto isChange = [](const std::u16string& password) { return password == u"change"; };
    if (first == 'C') opened.reservation = {isChange, 10, {}};
    if (first == 'R') opened.reservation.emplace();
    if (first == 'P') opened.protection = {word::wdAllowOnlyComments, isChange, 10, {}};
    if (first == 'X') opened.protection = {word::wdAllowOnlyReading, {}, 0, "No password lifts it."};
    if (first == 'E' && (hint.encoding != "KOI8-R" || !hint.certain))
      throw DocumentError(Problem::encoding, "It tells no encoding.", "Give --encoding.");
    if (first == 'E') opened.again = hint;
    return opened;
  }

 private:
  mutable int derivations_ = 0;
};

Store askingStore() {
  auto registry = std::make_shared<formats::Registry>();
  registry->add(std::make_unique<AskingFormat>());
  return Store(files::machineFileSystem(), registry);
}

using Answer = std::optional<std::u16string>;

/// Questions to the user, and the effects of the answers; one user over all rows, in their order.
TEST(Opener, AsksWhatADocumentWants) {
  const struct {
    std::string file;
    std::vector<Answer> answers;
    std::string asked;
    std::int32_t fault;  ///< of opening it, or else of saving it
    std::string said;
  } cases[] = {
      {"one¶", {}, "", 0, ""},
      {"L¶", {u"no"}, "opening ", word::kOpenPasswordWrong, "~a.note: The password is incorrect."},
      {"L¶", {Answer()}, "opening ", word::kCommandFailed, "~a.note: No password was given."},
      {"L¶", {u"open"}, "opening ", 0, ""},
      {"L¶", {}, "", 0, ""},
      {"H¶", {u"open"}, "opening ", 0, ""},
      {"C¶",
       {u"no"},
       "changing ",
       word::kOpenPasswordWrong,
       "~a.note: The password for changing it is incorrect."},
      {"C¶", {Answer()}, "changing ", word::kFileReadOnly, "~a.note: The document is reserved"},
      {"C¶", {u"change"}, "changing ", 0, ""},
      {"C¶", {}, "", 0, ""},
      {"L¶", {}, "", 0, ""},
      {"R¶", {u"read"}, "reading ", word::kFileReadOnly, "~a.note: The document was opened to be read only"},
      {"R¶", {Answer()}, "reading ", 0, ""},
      {"E¶", {u"x", u"KOI8-R"}, "It tells no encoding. It tells no encoding. ", 0, ""},
      {"E¶",
       {Answer()},
       "It tells no encoding. ",
       word::kFileCorrupted,
       "It tells no encoding. Open it by itself"},
      {"P¶", {}, "", 0, ""},
      {"X¶", {}, "", 0, ""}};
  const Scratch scratch;
  std::vector<Answer> answers;
  std::string asked;
  const auto next = [&](const std::string& question) {
    asked += question + " ";
    const Answer answer = answers.at(0);
    answers.erase(answers.begin());
    return answer;
  };
  StoreOpener opener(askingStore(), nullptr);
  opener.passwordChooser([&](const std::string&, PasswordFor what) -> std::optional<base::SecretText> {
    const Answer answer = next(what == PasswordFor::opening ? "opening" : "changing");
    return answer ? std::optional(base::SecretText(std::u16string(*answer))) : std::nullopt;
  });
  opener.readingChooser([&](const std::string&) { return next("reading").has_value(); });
  opener.encodingChooser([&](const std::string&, const std::string& why) -> std::optional<std::string> {
    const Answer answer = next(why);
    return answer ? std::optional(base::utf8(*answer)) : std::nullopt;
  });
  for (const auto& it : cases) {
    SCOPED_TRACE(it.file + " " + it.asked + it.said);
    const std::string path = scratch.put("~a.note", it.file);
    answers = it.answers;
    asked.clear();
    errors::Fault fault;
    try {
      const memory::OpenedFile opened = opener.open(path);
      EXPECT_EQ(opened.file->readOnly(), it.fault != 0);
      opened.document->mainText().insertBefore(1, u" new");
      opened.file->save();
    } catch (const errors::Fault& raised) {
      fault = raised;
    }
    EXPECT_EQ(asked, it.asked);
    EXPECT_EQ(fault.number, it.fault);
    EXPECT_THAT(base::utf8(fault.description), HasSubstr(it.said));
    EXPECT_EQ(scratch.get("~a.note").find(" new") != std::string::npos, it.fault == 0);
  }
}

TEST(Opener, WithoutAUserSaysWhatIsMissing) {
  const struct {
    std::string file;
    std::int32_t fault;
    std::string said;
  } cases[] = {{"L¶", word::kNotAvailable, "password"},
               {"E¶", word::kFileCorrupted, "It tells no encoding. Open it by itself"},
               {"", word::kFileNotFound, "a.note"},
               {"R¶", 0, ""}};
  for (const auto& [file, number, said] : cases) {
    const Scratch scratch;
    StoreOpener opener(askingStore(), nullptr);
    errors::Fault fault;
    try {
      if (!file.empty()) scratch.put("a.note", file);
      EXPECT_FALSE(opener.open(scratch.path("a.note")).file->readOnly());
    } catch (const errors::Fault& raised) {
      fault = raised;
    }
    EXPECT_EQ(fault.number, number) << file;
    EXPECT_THAT(base::utf8(fault.description), HasSubstr(said));
  }
}

TEST(Opener, LiftsProtectionByItsPasswordAlone) {
  const Scratch scratch;
  StoreOpener opener(askingStore(), nullptr);
  const auto protectedBy = opener.open(scratch.put("a.note", "P¶")).document;
  EXPECT_EQ(protectedBy->ProtectionType(), word::wdAllowOnlyComments);
  EXPECT_THROW(protectedBy->Unprotect(u"no"), errors::Fault);
  protectedBy->Unprotect(u"change");
  EXPECT_EQ(protectedBy->ProtectionType(), word::wdNoProtection);
  const auto forGood = opener.open(scratch.put("b.note", "X¶")).document;
  EXPECT_THROW(forGood->Unprotect(u""), errors::Fault);
  EXPECT_EQ(forGood->ProtectionType(), word::wdAllowOnlyReading);
  EXPECT_THAT(
      [&] { (void)askingStore().open(scratch.path("a.note")); },
      testing::ThrowsMessage<DocumentError>(HasSubstr("protected against editing; lift the protection")));
  EXPECT_THAT([&] { (void)askingStore().open(scratch.path("b.note"), {.protectedDocuments = true}); },
              testing::ThrowsMessage<DocumentError>("No password lifts it."));
  const auto read = askingStore().open(scratch.path("b.note"), {.forReading = true})->document();
  EXPECT_EQ(read->ProtectionType(), word::wdNoProtection);
}

TEST(Opener, SavesElsewhereWhatMayNotBeSaved) {
  const Scratch scratch;
  Answer elsewhere;
  StoreOpener opener(askingStore(), [&](const std::string&) -> std::optional<std::string> {
    return elsewhere ? std::optional(scratch.path(base::utf8(*elsewhere))) : std::nullopt;
  });
  opener.readingChooser([](const std::string&) { return true; });
  opener.passwordChooser([](const std::string&, PasswordFor) { return std::optional<base::SecretText>(); });
  const memory::OpenedFile opened = opener.open(scratch.put("a.note", "R¶"));
  auto& file = dynamic_cast<StoredFile&>(*opened.file);
  opened.document->mainText().insertBefore(1, u" new");
  EXPECT_THROW(file.save(), errors::Fault);
  elsewhere = u"b.note";
  file.save();
  EXPECT_EQ(scratch.get("b.note"), "R new¶");
  EXPECT_EQ(scratch.get("a.note"), "R¶");
  file.saveAs(scratch.path("c.note"));
  EXPECT_FALSE(file.readOnly());
  EXPECT_EQ(opened.document->Name(), u"c.note");

  const memory::OpenedFile reserved = opener.open(scratch.put("d.note", "C¶"));
  EXPECT_TRUE(reserved.file->readOnly());
  dynamic_cast<StoredFile&>(*reserved.file).saveAs(scratch.path("e.note"));
  EXPECT_FALSE(reserved.file->readOnly());

  scratch.put("c.note", "of another program");
  opened.document->mainText().insertBefore(1, u" more");
  try {
    file.save();
    FAIL();
  } catch (const errors::Fault& fault) {
    EXPECT_EQ(fault.number, word::kCannotSave);
    EXPECT_THAT(base::utf8(fault.description), testing::StartsWith("c.note: "));
  }
  EXPECT_EQ(scratch.get("c.note"), "of another program");
}

}  // namespace
}  // namespace pluvo::store
