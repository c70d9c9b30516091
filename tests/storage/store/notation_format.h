#pragma once

#include "base/utf.h"
#include "errors/document_error.h"
#include "formats/format.h"
#include "support/notation.h"

#include <functional>
#include <string>

namespace pluvo::store {

/// Documents in notation (.note), a story a line: main text, then notes. One that begins with "K" is
/// encrypted.
class NotationFormat final : public formats::Format {
 public:
  using Spoil = std::function<std::string(std::string)>;
  /// A written text goes through this.
  explicit NotationFormat(int& derivations, Spoil spoil)
      : derivations_(derivations), spoil_(std::move(spoil)) {}

  std::string_view name() const override { return "note"; }
  bool recognises(base::ByteSpan, std::string_view extension) const override { return extension == "note"; }
  using formats::Format::read;
  formats::Opened read(base::Bytes bytes, const formats::Hint& hint) const override {
    std::string text(bytes.view.begin(), bytes.view.end());
    formats::Opened opened;
    opened.again.key = text.starts_with('K') ? derived(hint.key) : nullptr;
    text = changed(std::move(text), opened.again.key);
    for (std::size_t at = 0; at <= text.size();) {
      const std::size_t end = std::min(text.find('\n', at), text.size());
      opened.stories.push_back(notation::parse(std::string_view(text).substr(at, end - at)).content);
      if (at > 0) opened.stories.back().kind = word::wdFootnotesStory;
      at = end + 1;
    }
    opened.source = std::make_unique<Source>(opened.again.key, spoil_);
    return opened;
  }

  /// Both ways.
  static std::string changed(std::string text, const formats::SharedKey& key) {
    if (key == nullptr) return text;
    const std::uint8_t mask = std::get<base::SecretBytes>(*key).text().front();
    for (std::size_t i = 1; i < text.size(); ++i) text[i] = static_cast<char>(text[i] ^ mask);
    if (text.starts_with('K')) return text.substr(1);
    text.front() = static_cast<char>(text.front() ^ mask);
    return "K" + text;
  }

 private:
  class Source final : public formats::Source {
   public:
    Source(formats::SharedKey key, Spoil spoil) : key_(std::move(key)), spoil_(std::move(spoil)) {}
    std::optional<std::string> refusesText(std::u16string_view) const override { return std::nullopt; }
    bool holdsHighlight() const override { return true; }
    void write(const document::Document& document, base::Output& out) const override {
      std::string all;
      for (std::size_t i = 0; i < document.count(); ++i)
        all += (i > 0 ? "\n" : "") + notation::print(document.story(i));
      all = changed(spoil_(all), key_);
      out.write({reinterpret_cast<const std::uint8_t*>(all.data()), all.size()});
    }

   private:
    formats::SharedKey key_;
    Spoil spoil_;
  };

  formats::SharedKey derived(const formats::SharedKey& key) const {
    if (key != nullptr && std::holds_alternative<base::SecretBytes>(*key)) return key;
    if (key == nullptr || std::get<base::SecretText>(*key).text() != u"open")
      throw errors::DocumentError(errors::Problem::password, "The document is encrypted.");
    ++derivations_;
    return std::make_shared<formats::Key>(base::SecretBytes(std::vector<std::uint8_t>{0x55}));
  }

  int& derivations_;
  Spoil spoil_;
};

}  // namespace pluvo::store
