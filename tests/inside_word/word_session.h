#pragma once

#include "engine/workplace.h"
#include "errors/text.h"
#include "word_com/application.h"
#include "word_stand_in/word_objects.h"

#include <objbase.h>

#include <memory>
#include <string>
#include <vector>

namespace pluvo::inside_word {

struct Apartment {
  Apartment() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() { CoUninitialize(); }
};

/// Word, as its stand-in in this process.
class WordSession {
 public:
  WordSession() { world().reset(); }
  ~WordSession() { world().reset(); }
  WordSession(const WordSession&) = delete;
  WordSession& operator=(const WordSession&) = delete;

  /// What an engine works with.
  std::shared_ptr<word::Application> word() const { return word_com::applicationOf(application_.get()); }

  static stand_in::World& world() { return stand_in::World::instance(); }
  /// What Word was asked, a line a call.
  static std::string log() {
    std::string all;
    for (const auto& line : world().calls.lines()) all += errors::utf8(line) + "\n";
    return all;
  }
  static std::shared_ptr<stand_in::OpenDocument> document(const std::u16string& text) {
    stand_in::StoredFile file;
    file.text = text;
    return world().add(u"C:\\Letters\\document.txt", file);
  }

 private:
  Apartment apartment_;
  stand_in::Held<stand_in::ApplicationObject> application_ = stand_in::ApplicationObject::instance();
};

}  // namespace pluvo::inside_word
