#pragma once

#include "base/utf.h"
#include "objects.h"
#include "word_com/application.h"

#include <objbase.h>

#include <memory>
#include <string>

namespace pluvo::stand_in {

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
  std::shared_ptr<word::Application> word(const word_com::Manner& manner = {}) const {
    return word_com::applicationOf(application_.Get(), manner);
  }

  static World& world() { return World::instance(); }
  static CallBook& calls() { return world().calls; }
  /// What Word was asked, a line a call.
  static std::vector<std::string> lines() {
    std::vector<std::string> all;
    for (const auto& line : calls().lines()) all.push_back(base::utf8(line));
    return all;
  }
  static std::string log() {
    std::string all;
    for (const auto& line : lines()) all += line + "\n";
    return all;
  }
  static Document document(const std::u16string& text) {
    return world().add(u"C:\\Letters\\document.txt", {.text = text});
  }

 private:
  Apartment apartment_;
  Handle application_ = application();
};

}  // namespace pluvo::stand_in
