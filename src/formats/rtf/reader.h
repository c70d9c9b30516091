#pragma once

#include "document/content.h"
#include "document/content_builder.h"
#include "protection.h"
#include "walker.h"

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// Where the text is not what its tokens say one by one.
struct Oddity {
  enum class Kind : std::uint8_t {
    noRow,     ///< the end of a row without cells, which is no character
    cellEnds,  ///< the end of a row that ends its last cell, too: two characters
  };
  std::size_t token = 0;  ///< where it begins
  Kind kind = Kind::noRow;
};

/// What is to be known of a text besides it when it is written.
struct TextMap {
  /// Of each row, by where they end.
  std::vector<text::Span> rows;
  std::vector<Oddity> oddities;
  /// Where comments stand, by their numbers.
  std::multimap<text::Position, std::int32_t> comments;
  /// The last mark stands for no bytes.
  bool endsWithoutBytes = false;
};

struct ReadText {
  document::Content content;
  TextMap map;
};

/// Builds a text from what a walk over it meets. What is in a table, and in which, is known only at its end:
/// a row is kept until then.
class TextReader final : public Events {
 public:
  /// Of a text of so many bytes.
  TextReader(std::string_view bytes, std::size_t size);
  void follow(const Walker& walker) { walker_ = &walker; }

  void text(Extent bytes) override;
  void character(const Character& character) override;
  void word(const Token& token) override;
  void group(const SkippedGroup& group) override;
  void end(std::size_t at) override;

  std::optional<formats::Protection> protection() const { return protection_.finish(); }
  ReadText finish() { return {builder_.finish(), std::move(map_)}; }

 private:
  /// Characters that look the same, or one that is a mark.
  struct Piece {
    Character::Kind kind = Character::Kind::ordinary;
    document::Look look;
    std::uint16_t depth = 0;  ///< of marks that end a paragraph
    std::size_t from = 0;     ///< in units_; of a mark the place of its token
    std::size_t count = 0;
  };

  document::Look look() const;
  void add(std::u16string_view units, const document::Look& look);
  void addPiece(Character::Kind kind, std::size_t place, std::uint16_t depth);
  void settle();
  void settleMarks();
  void play();
  void play(const Piece& piece);
  void goToDepth(std::size_t depth);
  void count(std::size_t units);
  void playMark(const Piece& piece);
  void playRowMark(const Piece& piece);

  /// A table that is open.
  struct Level {
    text::Position rowFrom = 0;
    bool hasCell = false;     ///< in the row at hand
    bool hasContent = false;  ///< after the last cell
  };

  std::string_view bytes_;
  ProtectionReader protection_{bytes_};
  const Walker* walker_ = nullptr;
  document::ContentBuilder builder_;
  TextMap map_;
  std::vector<Piece> pieces_;  ///< of the row, or the paragraph, at hand
  std::u16string units_;
  struct CommentPlace {
    std::size_t unit = 0;
    std::int32_t number = 0;
  };
  std::vector<CommentPlace> comments_;
  std::size_t nextComment_ = 0;
  std::vector<Level> levels_;
  bool endsInMark_ = false;
  std::size_t length_ = 0;  ///< of the whole text
};

struct ReadDocument {
  document::Content content;
  TextMap map;
  Tables tables;
  std::optional<formats::Protection> protection;
};

/// Reads main text, and what the document says of all its texts.
ReadDocument readDocument(std::string_view bytes);

}  // namespace pluvo::rtf
