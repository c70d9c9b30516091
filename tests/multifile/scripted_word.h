#pragma once

#include "base/names.h"
#include "base/utf.h"
#include "errors/fault.h"
#include "memory/application.h"
#include "support/notation.h"
#include "word/faults.h"
#include "word/word_processor.h"

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::multifile {

/// What a test says of a file.
struct ScriptedFile {
  std::string text = "A¶";
  bool readOnly = false;
  word::WdProtectionType protection = word::wdNoProtection;
  std::string password = {};
  bool unsaved = false;  ///< the user has it open, with changes
};

class ScriptedDocument;

/// What a word processor is told to do, written into a story, and what it refuses.
struct Script {
  std::vector<std::string>& story;
  /// The numbers with which the next calls are refused ("open a", "path a", "close a" …); 0 lets one through.
  std::map<std::string, std::deque<std::int32_t>> refusals = {};
  std::vector<std::shared_ptr<ScriptedDocument>> open = {};

  /// Refused where the test says so; else told.
  void called(const std::string& call, const std::string& more = {}, bool told = true) {
    auto& numbers = refusals[call];
    std::int32_t number = 0;
    if (!numbers.empty()) {
      number = numbers.front();
      numbers.pop_front();
    }
    if (told || number != 0) story.push_back(call + (number == 0 ? more : ": " + std::to_string(number)));
    if (number != 0) throw errors::Fault(number, u"Refused.");
  }
};

/// A document of ScriptedWord. The text is a document in memory; the rest is as the test says.
class ScriptedDocument : public word::Document, public std::enable_shared_from_this<ScriptedDocument> {
 public:
  ScriptedDocument(Script& script, std::string path, ScriptedFile& file)
      : script_(script), path_(std::move(path)), file_(file), sample_(file.text) {
    alone_.add(sample_.document);
  }

  std::shared_ptr<word::Range> Range(std::int32_t start, std::int32_t end) override {
    return sample_.document->Range(start, end);
  }
  std::shared_ptr<word::Window> ActiveWindow() override { return sample_.document->ActiveWindow(); }
  std::u16string Name() override { return base::nameText(name()); }
  std::u16string Path() override {
    read("path");
    return base::nameText(path_.substr(0, path_.rfind('\\')));
  }
  void Activate() override {
    called("activate");
    std::erase(script_.open, shared_from_this());
    script_.open.push_back(shared_from_this());
  }
  bool ReadOnly() override { return read("readonly"), file_.readOnly; }
  void WritePassword(const std::u16string& password) override { called("clear", base::utf8(password)); }
  word::WdProtectionType ProtectionType() override { return read("protection"), file_.protection; }
  void Unprotect(const std::u16string& password) override {
    called("unprotect", base::utf8(password));
    if (base::utf8(password) != file_.password)
      throw errors::Fault(word::kProtectionPasswordWrong, u"The password is incorrect.");
    file_.protection = word::wdNoProtection;
  }
  void Protect(word::WdProtectionType type, const std::u16string& password) override {
    called("protect", std::to_string(type) + ' ' + base::utf8(password));
    file_.protection = type;
  }
  std::shared_ptr<word::Range> StoryRanges(word::WdStoryType story) override {
    called("story", std::to_string(story));
    return sample_.document->StoryRanges(story);
  }
  bool Saved() override { return !file_.unsaved && !sample_.mainText().changed(); }
  void Saved(bool saved) override {
    called("saved", saved ? "true" : "false");
    file_.unsaved = !saved;
  }
  void Close(bool saveChanges) override {
    called("close", saveChanges ? "saving" : "");
    if (saveChanges) file_.text = sample_.print();
    std::erase(script_.open, shared_from_this());
  }

  std::string name() const { return path_.substr(path_.rfind('\\') + 1); }
  std::shared_ptr<word::Selection> selection() { return alone_.Selection(); }

 private:
  void called(const std::string& verb, const std::string& more = {}) {
    script_.called(verb + ' ' + name(), more.empty() ? "" : ' ' + more);
  }
  void read(const std::string& property) { script_.called(property + ' ' + name(), {}, false); }

  Script& script_;
  std::string path_;
  ScriptedFile& file_;
  notation::Sample sample_;
  memory::MemoryApplication alone_;  ///< for the selection
};

/// A word processor over files that a test describes, by full path.
class ScriptedWord : public word::Application, public word::Documents, public Script {
 public:
  explicit ScriptedWord(std::vector<std::string>& told) : Script{told} {}

  std::map<std::string, ScriptedFile> files;

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
    const std::string path = base::nameBytes(fileName);
    called("open " + path.substr(path.rfind('\\') + 1));
    const auto file = files.find(path);
    if (file == files.end()) throw errors::Fault(word::kFileNotFound, u"There is no such file.");
    open.push_back(std::make_shared<ScriptedDocument>(*this, path, file->second));
    return open.back();
  }

 private:
  std::shared_ptr<ScriptedDocument> active() const {
    if (open.empty()) throw errors::Fault(word::kNoDocument, u"No document is open.");
    return open.back();
  }
};

}  // namespace pluvo::multifile
