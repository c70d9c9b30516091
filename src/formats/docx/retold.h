#pragma once

#include "formats/other_texts.h"

#include <string>
#include <string_view>

namespace pluvo::docx {

using formats::Opaque;
using formats::Unreached;

/// Tells whatever it is told as texts of one kind.
class AsOneKind : public formats::OtherTexts {
 public:
  /// The damage lies in the part "within", where that is not empty.
  AsOneKind(Unreached kind, formats::OtherTexts& texts, std::string_view within = {})
      : kind_(kind), texts_(texts), within_(within) {}
  void story(formats::OtherStory /*kind*/, document::Content content) override {
    texts_.unreached(kind_, content.text.stretch(0, content.text.length()));
  }
  void unreached(Unreached /*kind*/, std::u16string_view text) override { texts_.unreached(kind_, text); }
  void unreached(Unreached /*kind*/, const text::Stretch& text) override { texts_.unreached(kind_, text); }
  void notLookedInto(Opaque kind) override { texts_.notLookedInto(kind); }
  void damaged(std::string_view part, std::string_view why) override {
    texts_.damaged(within_.empty() ? std::string(part) : within_ + "/" + std::string(part), why);
  }

 private:
  Unreached kind_;
  formats::OtherTexts& texts_;
  std::string within_;
};

/// Keeps the texts it is told.
class Gathered : public formats::OtherTexts {
 public:
  void story(formats::OtherStory, document::Content) override {}
  void unreached(Unreached, std::u16string_view text) override { text_ += text; }
  void notLookedInto(Opaque) override {}
  void damaged(std::string_view, std::string_view) override {}
  const std::u16string& text() const { return text_; }

 private:
  std::u16string text_;
};

}  // namespace pluvo::docx
