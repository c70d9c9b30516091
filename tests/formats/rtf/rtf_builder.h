#pragma once

#include "formats/rtf/rtf_document.h"
#include "support/notation_parser.h"

#include <string>
#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// Makes a notation the text of a document: has the calls of document::ContentBuilder.
class TextBuilder {
 public:
  using Look = document::Look;

  void append(char16_t unit, Look look = {}) {
    begin(look);
    static const char* const kWords[] = {"\\tab ", "\\par ", "\\line ", "\\page ", "\\par ", "\\column "};
    if (unit >= 9 && unit <= 14) {
      text_ += kWords[unit - 9];
    } else if (unit == u'\\' || unit == u'{' || unit == u'}') {
      text_ += {'\\', static_cast<char>(unit)};
    } else if (unit >= 0x20 && unit < 0x7F) {
      text_ += static_cast<char>(unit);
    } else {
      text_ += "\\u" + std::to_string(static_cast<std::int16_t>(unit)) + "?";
    }
    if (unit == text::kParagraphMark) inParagraph_ = false;
  }
  bool beginField(Look look) {
    begin(look);
    text_ += "{\\field{\\*\\fldinst ";
    looks_.push_back(looks_.back());
    looks_.push_back(looks_.back());
    ++fields_;
    return true;
  }
  bool separateField(Look look) {
    begin(look);
    text_ += "}{\\fldrslt ";
    looks_.back() = looks_[looks_.size() - 2];
    return true;
  }
  bool endField(Look look) {
    begin(look);
    text_ += "}}";
    looks_.resize(looks_.size() - 2);
    --fields_;
    return true;
  }
  void beginTable() {
    const bool awaited = awaitsRow_;
    ++tables_;
    beginRow();
    awaitsRow_ = awaitsRow_ || awaited;
  }
  void cellMark(Look look) {
    begin(look);
    text_ += tables_ == 1 ? "\\cell " : "\\nestcell ";
    inParagraph_ = false;
  }
  void rowMark(Look) {
    ++length_;
    text_ += tables_ == 1 ? "\\row " : "{\\*\\nesttableprops\\trowd\\cellx9\\nestrow}{\\nonesttables\\par}";
    beginRow();
  }
  void endTable() {
    --tables_;
    awaitsRow_ = false;
  }
  void sectionMark(Look look) {
    begin(look);
    text_ += "\\sect\\sectd ";
    inParagraph_ = false;
  }

  text::Position length() const { return length_; }
  std::size_t openFields() const { return fields_; }
  std::size_t openTables() const { return tables_; }
  std::string file() const { return head() + text_ + "}"; }

 private:
  void beginRow() {
    awaitsRow_ = tables_ == 1;
    inParagraph_ = false;
  }

  /// The properties of a paragraph, and a character's look.
  void begin(Look look) {
    ++length_;
    if (!inParagraph_) {
      if (awaitsRow_) text_ += "\\trowd\\cellx9\\cellx20 ";
      awaitsRow_ = false;
      text_ += "\\pard";
      if (tables_ > 0) text_ += "\\intbl";
      if (tables_ > 1) text_ += "\\itap" + std::to_string(tables_);
      text_ += ' ';
      inParagraph_ = true;
    }
    Look& now = looks_.back();
    if (now.hidden != look.hidden) text_ += look.hidden ? "\\v " : "\\v0 ";
    if (now.highlight != look.highlight) text_ += "\\highlight" + std::to_string(look.highlight) + " ";
    now = look;
  }

  static std::string head() {
    return "{\\rtf1\\ansi{\\fonttbl{\\f0 A;}}{\\colortbl;\\red0\\green0\\blue0;\\red0\\green0\\blue255;"
           "\\red0\\green255\\blue255;\\red0\\green255\\blue0;\\red255\\green0\\blue255;"
           "\\red255\\green0\\blue0;"
           "\\red255\\green255\\blue0;}";
  }

  std::string text_;
  std::vector<Look> looks_ = {Look{}};
  text::Position length_ = 0;
  std::size_t fields_ = 0;
  std::size_t tables_ = 0;
  bool awaitsRow_ = false;
  bool inParagraph_ = false;
};

/// A document of a notation, which also says where its ranges lie.
inline base::Bytes fileOf(std::string_view notation, notation::Ranges& ranges) {
  TextBuilder builder;
  ranges = notation::Parser(notation, builder).parse();
  return formats::bytesOf(builder.file());
}

}  // namespace pluvo::rtf
