#pragma once

#include "base/utf.h"
#include "document/content_builder.h"
#include "support/notation.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::notation {

/// Takes a notation apart, and has a builder with the calls of ContentBuilder make something of it.
template <class Builder>
class Parser {
 public:
  explicit Parser(std::string_view notation, Builder& builder)
      : builder_(builder), rest_(base::utf16(notation)) {}

  Ranges parse() {
    while (next_ < rest_.size()) step();
    require(looks_.size() == 1 && builder_.openFields() == 0 && builder_.openTables() == 0,
            "something is open");
    if (!endsInMark_) builder_.append(text::kParagraphMark);
    return std::move(ranges_);
  }

 private:
  void step() {
    const char16_t unit = rest_[next_++];
    if (isName(unit) && peek() == u']') {
      ++next_;
      ranges_[static_cast<char>(unit)].to = builder_.length();
      return;
    }
    if (unit == u'[' || unit == u'<' || unit == u'>') {
      mark(unit);
      return;
    }
    endsInMark_ = unit == u'¶';
    put(unit);
  }

  void mark(char16_t unit) {
    if (unit == u'[') {
      require(isName(peek()), "a range has no name");
      ranges_[static_cast<char>(rest_[next_++])] = {builder_.length(), builder_.length()};
    } else if (unit == u'<') {
      beginLook();
    } else {
      require(looks_.size() > 1, "a look ends that did not begin");
      looks_.pop_back();
    }
  }

  void beginLook() {
    const std::size_t colon = rest_.find(u':', next_);
    require(colon != rest_.npos, "a look has no colon");
    document::Look look = looks_.back();
    int colour = 0;
    for (; next_ < colon; ++next_) {
      if (rest_[next_] == u'h') {
        look.hidden = true;
      } else {
        colour = colour * 10 + rest_[next_] - u'0';
        look.highlight = static_cast<std::uint8_t>(colour);
      }
    }
    ++next_;
    looks_.push_back(look);
  }

  void put(char16_t unit) {
    const document::Look look = looks_.back();
    switch (unit) {
      case u'¶':
        return builder_.append(text::kParagraphMark, look);
      case u'{':
        builder_.beginField(look);
        return;
      case u'|':
        return require(builder_.separateField(look), "a separator has no field");
      case u'}':
        return require(builder_.endField(look), "a field ends that did not begin");
      case u'⟦':
        return builder_.beginTable();
      case u'¦':
        return builder_.cellMark(look);
      case u'‖':
        return builder_.rowMark(look);
      case u'⟧':
        return builder_.endTable();
      case u'§':
        return builder_.sectionMark(look);
      case u'\\':
        return builder_.append(rest_.at(next_++), look);
      default:
        return builder_.append(unit, look);
    }
  }

  char16_t peek() const { return next_ < rest_.size() ? rest_[next_] : u'\0'; }

  static bool isName(char16_t unit) { return unit >= u'a' && unit <= u'z'; }

  static void require(bool condition, const char* message) {
    if (!condition) throw std::invalid_argument(message);
  }

  Builder& builder_;
  std::u16string rest_;
  std::size_t next_ = 0;
  Ranges ranges_;
  std::vector<document::Look> looks_ = {document::Look{}};
  bool endsInMark_ = false;
};

}  // namespace pluvo::notation
