#pragma once

#include "document/content_builder.h"
#include "reader.h"

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

namespace pluvo::docx {

/// Builds the text of one story from a walk, and the way back to its bytes.
class ContentReader : public BodyEvents {
 public:
  using Purpose = document::Purpose;
  /// For a part, or an element, of so many bytes. The styles outlive this.
  ContentReader(std::size_t size, const Styles& styles, Purpose purpose = Purpose::edit);
  /// Whose walk it is told of; to be called before that begins.
  void follow(const BodyWalker& walker) { walker_ = &walker; }

  /// The content, after the container of the text has closed.
  ReadBody finish();

  void open(const Tag& tag) override;
  void control(const ControlProperties& properties) override;
  void close(const Tag& tag, Extent) override;
  void properties(Name kind, const Properties& properties) override;
  void aside(Offset place) override { map_.asides.push_back(place); }
  void marker(const Marker& marker) override;
  void nextRun(const Tag&, Extent, const Tag&, const Properties* properties) override;
  void nextText(const TextWay& way, std::string_view ascii) override;
  void text(const TextElement& element) override;
  void character(char16_t unit, Extent, Name name, std::string_view reference) override;
  void formula(const Formula& formula) override;
  void simpleField(const Tag&, std::u16string_view instruction) override;
  void endSimpleField(Extent) override;
  void paragraphMark(Extent) override;
  void missingParagraph(Name container, Extent) override;
  void rowMark(Extent) override;

 private:
  document::Look lookOf(const RunLook& look) const;
  document::Look plainLook() const;
  /// Of a simple field's code and marks, which have no run to be highlighted in.
  document::Look inAttribute();
  /// A control within a paragraph takes line breaks, since a mark would divide it.
  void openControl(bool isGuided);
  void flushMark();
  void gather(std::string_view ascii, bool isHidden);
  document::ContentBuilder& builder() {
    if (gatheredSize_ > 0) addGathered();
    return builder_;
  }
  void addGathered();
  void add(std::string_view ascii, bool isHidden);

  const Styles& styles_;
  const BodyWalker* walker_ = nullptr;
  document::ContentBuilder builder_;  ///< reached by builder() alone
  /// For a search: texts and marks that the builder is not told yet, all of them hidden or none.
  std::array<char, 1024> gathered_;
  std::size_t gatheredSize_ = 0;
  bool gatheredIsHidden_ = false;
  BodyMap map_;
  Properties paragraph_;
  document::Look look_;
  document::Look markLook_;
  bool markPending_ = false;
  bool inParagraph_ = false;
  bool hidesGuided_ = false;
  int deletions_ = 0;
  std::int32_t control_ = document::kNone;  ///< the innermost open one
  std::int8_t inAttribute_ = document::kNone;
  std::vector<std::size_t> openTables_;
  std::unordered_map<std::string, std::size_t> openBookmarks_;
};

}  // namespace pluvo::docx
