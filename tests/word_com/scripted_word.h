#pragma once

#include "range.h"
#include "scripted_object.h"
#include "word_com/application.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>

namespace pluvo::word_com {

/// A Word with one document that has one range and one find, which finds what the test says.
class ScriptedWord {
 public:
  std::u16string text;
  Span range;
  /// What the find's executions find, one after the other, then nothing. Each may look at the range.
  std::deque<Span> matches;

  std::shared_ptr<CallLog> log = std::make_shared<CallLog>();
  Microsoft::WRL::ComPtr<ScriptedObject> application = make("Application");
  Microsoft::WRL::ComPtr<ScriptedObject> document = make("Document");
  Microsoft::WRL::ComPtr<ScriptedObject> rangeObject = make("Range");
  Microsoft::WRL::ComPtr<ScriptedObject> find = make("Find");

  ScriptedWord();

  std::shared_ptr<word::Application> connected() const { return applicationOf(application.Get()); }
  /// The document's range over that span.
  std::shared_ptr<word::Range> rangeOver(std::int32_t start, std::int32_t end);
  /// The calls of that member, in their order.
  CallLog calls(const std::string& member) const;

 private:
  Microsoft::WRL::ComPtr<ScriptedObject> make(const char* name) { return ScriptedObject::make(name, log); }
  std::wstring textAt(Span span) const;
  void scriptRange();
  void scriptFind();

  /// Ranges handed out behind the first, which only have a text.
  std::vector<Microsoft::WRL::ComPtr<ScriptedObject>> others_;
};

}  // namespace pluvo::word_com
