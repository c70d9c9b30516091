#pragma once

#include "document/content.h"
#include "document/content_builder.h"
#include "protection.h"
#include "walker.h"

#include <cstdint>
#include <map>
#include <optional>
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

/// The facts about a text that its writer needs.
struct TextMap {
  /// Of each row, by where they end.
  std::vector<text::Span> rows;
  std::vector<Oddity> oddities;
  /// Where comments stand, by their numbers.
  std::multimap<text::Position, std::int32_t> comments;
  /// An end of a bookmark, the character that it stands before, and the bytes of its name.
  struct Bookmark {
    bool isEnd = false;
    text::Position position = 0;
    Extent name;
  };
  std::vector<Bookmark> bookmarks;
  /// The last mark stands for no bytes.
  bool endsWithoutBytes = false;
};

/// A group that a text skips, which may hold text that is to be told: other stories, a formula, properties.
/// Of objects the first is one.
struct GroupInText {
  SkippedGroup group;
  std::uint16_t fallback = 1;  ///< in force there
  /// Of the character that it is; none where it goes with no character.
  std::optional<text::Position> anchor = std::nullopt;
};

struct ReadText {
  document::Content content;
  TextMap map;
  std::vector<GroupInText> groups;  ///< as many as kMostGroups …
  bool hasMoreGroups = false;       ///< … of more
};
inline constexpr std::size_t kMostGroups = 65'535;
/// The texts of form fields and of other programs' groups.
inline constexpr std::size_t kMostMinorGroups = 4'096;

/// The purpose of reading a text.
struct ReadFor {
  std::size_t size = 0;          ///< of its bytes, about
  std::size_t uncolouredTo = 0;  ///< text in front of that place takes no other highlight
};

/// Builds a text from the events of a walk. Which table a paragraph lies in is known only at the table's end:
/// a row is kept until then.
class TextReader final : public Events {
 public:
  TextReader(std::string_view bytes, const ReadFor& what);
  void follow(const Walker& walker) { walker_ = &walker; }

  void text(Extent bytes) override;
  void character(const Character& character) override;
  void word(const Token& token) override;
  void group(const SkippedGroup& group) override;
  void end(std::size_t at) override;

  const ProtectionReader& protection() const { return protection_; }
  /// Where the first character stands.
  std::size_t firstAt() const { return firstAt_; }
  ReadText finish() { return {builder_.finish(), std::move(map_), std::move(groups_), hasMoreGroups_}; }

 private:
  /// Characters that look the same, or one that is a mark.
  struct Piece {
    Character::Kind kind = Character::Kind::ordinary;
    document::Look look;
    std::uint16_t depth = 0;  ///< of marks that end a paragraph
    std::size_t from = 0;     ///< in units_; of a mark the place of its token
    std::size_t count = 0;
    /// It is no character, but an end of a bookmark of that number.
    std::optional<std::size_t> bookmark = std::nullopt;
  };

  document::Look lookAt(std::size_t begin);
  bool isTold(Word group);
  void add(std::u16string_view units, const document::Look& look);
  void addPiece(const Character& character);
  void handOn();
  void decideMarks();
  void lock();
  std::int8_t lockFor(std::int8_t& restriction, const char* sentence);
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
  ReadFor what_;
  std::int8_t colourless_ = document::kNone;
  // Of places that nothing can be done at:
  std::int8_t rows_ = document::kNone;
  std::int8_t fillsStory_ = document::kNone;
  ProtectionReader protection_{bytes_};
  const Walker* walker_ = nullptr;
  document::ContentBuilder builder_;
  TextMap map_;
  std::vector<Piece> pieces_;  ///< of the row, or the paragraph, at hand
  std::u16string units_;
  /// Values that wait for the position of a kept character.
  struct Waiting {
    std::size_t unit = 0;
    std::optional<std::int32_t> comment = std::nullopt;
    std::size_t group = 0;  ///< or that one's number
  };
  std::vector<Waiting> waiting_;
  std::size_t nextWaiting_ = 0;
  std::vector<GroupInText> groups_;
  bool hasMoreGroups_ = false;
  std::size_t minorGroups_ = 0;
  bool hasObject_ = false;
  std::vector<Level> levels_;
  bool endsInMark_ = false;
  std::size_t length_ = 0;  ///< of the whole text
  std::size_t firstAt_ = static_cast<std::size_t>(-1);
};

}  // namespace pluvo::rtf
