#pragma once

#include "documents/support/notation.h"
#include "errors/fault.h"
#include "errors/text.h"
#include "memory/application.h"
#include "word/faults.h"
#include "word/word_processor.h"

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::multifile {

class ScriptedWord;

/// What a test says of a file.
struct ScriptedFile {
  std::string text = "A¶";
  bool readOnly = false;
  word::WdProtectionType protection = word::wdNoProtection;
  std::string password = {};
};

/// A document of ScriptedWord. The text is a document in memory; the rest is as the test says.
class ScriptedDocument : public word::Document, public std::enable_shared_from_this<ScriptedDocument> {
 public:
  ScriptedDocument(ScriptedWord& word, std::string path, ScriptedFile& file)
      : word_(word), path_(std::move(path)), file_(file), sample_(file.text) {
    alone_.add(sample_.document);
  }

  std::shared_ptr<word::Range> Range(std::int32_t start, std::int32_t end) override {
    return sample_.document->Range(start, end);
  }
  std::shared_ptr<word::Window> ActiveWindow() override { return sample_.document->ActiveWindow(); }
  std::u16string Name() override { return errors::nameText(name()); }
  std::u16string Path() override;
  void Activate() override;
  bool ReadOnly() override;
  void WritePassword(const std::u16string& password) override;
  word::WdProtectionType ProtectionType() override;
  void Unprotect(const std::u16string& password) override;
  void Protect(word::WdProtectionType type, const std::u16string& password) override;
  std::shared_ptr<word::Range> StoryRanges(word::WdStoryType story) override;
  bool Saved() override { return !sample_.model().changed(); }
  void Close(bool saveChanges) override;

  std::string name() const { return path_.substr(path_.rfind('\\') + 1); }
  std::shared_ptr<word::Selection> selection() { return alone_.Selection(); }

 private:
  /// As called of the word processor, about this document.
  void called(const std::string& verb, const std::string& more = {});

  ScriptedWord& word_;
  std::string path_;
  ScriptedFile& file_;
  notation::Sample sample_;
  /// For the selection.
  memory::MemoryApplication alone_;
};

/// A word processor over files that a test describes. It writes into a story what it is told to do, and
/// refuses a call as often and with the numbers that the test has written down.
class ScriptedWord : public word::Application, public word::Documents {
 public:
  explicit ScriptedWord(std::vector<std::string>& story) : story_(story) {}

  /// The numbers with which the next calls are refused ("open a", "path a", "close a" …); 0 lets one through.
  std::map<std::string, std::deque<std::int32_t>> refusals;
  /// By full path.
  std::map<std::string, ScriptedFile> files;
  std::vector<std::shared_ptr<ScriptedDocument>> open;

  std::string openNames() const {
    std::string names;
    for (const auto& document : open) names += (names.empty() ? "" : " ") + document->name();
    return names;
  }

  std::shared_ptr<word::Document> ActiveDocument() override { return active(); }
  std::shared_ptr<word::Selection> Selection() override { return active()->selection(); }
  /// Itself, owned by the test.
  std::shared_ptr<word::Documents> Documents() override { return {std::shared_ptr<void>(), this}; }
  std::shared_ptr<word::Options> Options() override {
    throw errors::Fault(word::kNotAvailable, u"Not in this test.");
  }
  std::u16string PathSeparator() override { return u"\\"; }

  std::int32_t Count() override { return static_cast<std::int32_t>(open.size()); }
  std::shared_ptr<word::Document> Item(std::int32_t index) override {
    return open.at(static_cast<std::size_t>(index) - 1);
  }
  std::shared_ptr<word::Document> Open(const std::u16string& fileName) override {
    const std::string path = errors::nameBytes(fileName);
    called("open " + path.substr(path.rfind('\\') + 1));
    const auto file = files.find(path);
    if (file == files.end()) throw errors::Fault(word::kFileNotFound, u"There is no such file.");
    open.push_back(std::make_shared<ScriptedDocument>(*this, path, file->second));
    return open.back();
  }

  /// Refused where the test says so; else told.
  void called(const std::string& call, const std::string& more = {}, bool told = true) {
    auto& numbers = refusals[call];
    std::int32_t number = 0;
    if (!numbers.empty()) {
      number = numbers.front();
      numbers.pop_front();
    }
    if (told || number != 0) story_.push_back(call + (number == 0 ? more : ": " + std::to_string(number)));
    if (number != 0) throw errors::Fault(number, u"Refused.");
  }

 private:
  std::shared_ptr<ScriptedDocument> active() const {
    if (open.empty()) throw errors::Fault(word::kNoDocument, u"No document is open.");
    return open.back();
  }

  std::vector<std::string>& story_;
};

inline void ScriptedDocument::called(const std::string& verb, const std::string& more) {
  const bool isReading = verb == "path" || verb == "readonly" || verb == "protection";
  word_.called(verb + ' ' + name(), more.empty() ? "" : ' ' + more, !isReading);
}
inline std::u16string ScriptedDocument::Path() {
  called("path");
  return errors::nameText(path_.substr(0, path_.rfind('\\')));
}
inline void ScriptedDocument::Activate() {
  called("activate");
  std::erase(word_.open, shared_from_this());
  word_.open.push_back(shared_from_this());
}
inline bool ScriptedDocument::ReadOnly() {
  called("readonly");
  return file_.readOnly;
}
inline void ScriptedDocument::WritePassword(const std::u16string& password) {
  called("clear", errors::utf8(password));
}
inline word::WdProtectionType ScriptedDocument::ProtectionType() {
  called("protection");
  return file_.protection;
}
inline void ScriptedDocument::Unprotect(const std::u16string& password) {
  called("unprotect", errors::utf8(password));
  if (errors::utf8(password) != file_.password)
    throw errors::Fault(word::kProtectionPasswordWrong, u"The password is incorrect.");
  file_.protection = word::wdNoProtection;
}
inline void ScriptedDocument::Protect(word::WdProtectionType type, const std::u16string& password) {
  called("protect", std::to_string(type) + ' ' + errors::utf8(password));
  file_.protection = type;
}
inline std::shared_ptr<word::Range> ScriptedDocument::StoryRanges(word::WdStoryType story) {
  called("story", std::to_string(story));
  return sample_.document->StoryRanges(story);
}
inline void ScriptedDocument::Close(bool saveChanges) {
  called("close", saveChanges ? "saving" : "");
  if (saveChanges) file_.text = sample_.print();
  std::erase(word_.open, shared_from_this());
}

}  // namespace pluvo::multifile
