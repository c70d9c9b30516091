#pragma once

#include "document/content.h"

#include <string>
#include <string_view>
#include <vector>

namespace pluvo::document {

/// How a reader's text looks.
struct Look {
  bool hidden = false;
  std::uint8_t highlight = 0;  ///< Word's colour index, 0 for none
  bool deleted = false;        ///< in a tracked deletion
  std::int32_t control = kNone;
  std::int8_t restriction = kNone;
};

/// The use of a text: it is edited, or searched and then let go.
enum class Purpose : bool { edit, search };

/// Builds a document front to back for the readers of structured formats. Every call that adds characters
/// adds them at length(), so that a reader can note there which bytes they came from.
///
/// Decides which view shows which characters. The view with codes shows a field's code and the marks 19 and
/// 21. So no match runs from a code into the text beside it. The view with results shows its result. No view
/// shows the separator. Each shows only what the text around the field shows.
class ContentBuilder {
 public:
  /// For a search there are no highlight, controls, deletions and restrictions, which no search asks for.
  explicit ContentBuilder(Purpose purpose = Purpose::edit) : purpose_(purpose) {}

  /// How many characters may come at most, so far as that is known.
  void expect(std::size_t most) { text_.expect(most); }

  text::Position length() const { return static_cast<text::Position>(text_.size()); }

  void append(std::u16string_view units, Look look = {});
  void appendAscii(std::string_view text, Look look = {});
  void append(char16_t unit, Look look = {}) { append(std::u16string_view(&unit, 1), look); }

  /// Characters 19, 20 and 21. A separator or an end without a field that waits for it adds nothing and
  /// returns false. A field left open reaches to the end of the text and is never wholly deleted.
  void beginField(Look look = {});
  bool separateField(Look look = {});
  bool endField(Look look = {});
  std::size_t openFields() const { return fields_.size(); }
  /// An edit costs as much as fields and tables are deep: a reader refuses more than this.
  static constexpr std::size_t kDeepest = 1000;

  /// A table: for each row its cells, each ended by its mark, then the row's mark. A reader gives each row at
  /// least one cell.
  void beginTable();
  void cellMark(Look look = {});
  void rowMark(Look look = {});
  void endTable();
  std::size_t openTables() const { return tables_.size(); }

  /// A control; it takes from its parent what holds for all within. A look says which character
  /// lies in it.
  std::int32_t addControl(Control control);
  /// For what becomes known of a control before anything in it is added.
  Control& control(std::int32_t index) { return content_.nesting.controls[static_cast<std::size_t>(index)]; }

  /// For looks; there are 127 at the most.
  std::int8_t addRestriction(Restriction restriction);

  /// Character 12 that ends a section.
  void sectionMark(Look look = {});

  /// The document; the builder is empty afterwards. A text that does not end with a paragraph mark outside
  /// tables, or that is over-long, is the reader's mistake.
  Content finish();

 private:
  struct OpenField {
    std::int32_t field;
    bool inResult;
  };

  text::Visibility here() const;
  Structure structureHere(const Look& look) const;
  void add(std::u16string_view units, Look look, text::Visibility shown, const Structure& structure);
  void addLayers(std::size_t length, Look look, text::Visibility shown, const Structure& structure);
  bool isAlike(text::Visibility shown) const;
  void addAlike(text::Position length, text::Visibility shown, const Structure& structure);
  void endAlike();

  Purpose purpose_;
  text::OriginalTextBuilder text_;
  /// For a search: the last characters, so far as all of them are alike, are not in the layers yet.
  text::Position alike_ = 0;
  text::Visibility alikeShown_ = text::kEverywhere;
  Structure alikeStructure_;
  Content content_;
  std::vector<OpenField> fields_;
  std::vector<std::int32_t> tables_;
};

}  // namespace pluvo::document
