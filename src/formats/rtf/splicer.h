#pragma once

#include "document/story.h"
#include "new_document.h"
#include "walker.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// The place of one story's writers in the walk over it. It knows the open groups, the highlight that new
/// bytes have in each, and the bytes still to be written.
class Splicer {
 public:
  /// An open brace, in the old bytes as in the new.
  struct Level {
    std::size_t begin = 0;
    text::Position position = 0;
    State before;
    std::uint8_t highlight = 0;  ///< in force in the new bytes
  };

  Splicer(std::string_view file, NewDocument& out, const Walker& walker, const document::Story& story)
      : file_(file), out_(out), walker_(walker), story_(story), levels_(1) {}

  const document::Story& story() const { return story_; }
  const Walker& walker() const { return walker_; }
  NewDocument& out() { return out_; }
  std::string_view bytes(Extent extent) const {
    return file_.substr(extent.begin, extent.end - extent.begin);
  }

  void copyTo(std::size_t at);
  void leaveOut(Extent bytes);

  // Groups.
  void open(std::size_t begin, text::Position position);
  Level close();
  Level& level() { return levels_.back(); }
  const std::vector<Level>& levels() const { return levels_; }
  std::size_t depth() const { return levels_.size() - 1; }
  /// Those deeper than that, until they are given back: for text that goes in front of them.
  std::vector<Level> setAside(std::size_t depth);
  void giveBack(std::vector<Level>& inner);
  /// A group of the new bytes alone.
  void openNew(std::string_view words);
  void closeNew();
  /// Text in the code page that stands for text at hand: emptied where that is edited.
  void alternative(Extent bytes) { alternatives_.push_back({bytes, levels_.size()}); }

  // Highlight.
  std::uint8_t wanted(text::Position at);
  /// Where that of the position asked for last ends.
  text::Position wantedTo() const { return wanted_.to; }
  /// Lets a colour hold from here on.
  void highlightTo(std::uint8_t colour);
  /// The same before old bytes that begin there, if another holds.
  void highlightTo(std::uint8_t colour, std::size_t at);

  // What should stand after a numbered character, and would be taken from the text that comes.
  void lacksFallback(std::uint16_t count, Extent at);
  void fillFallback(std::size_t at);

 private:
  struct Alternative {
    Extent bytes;
    std::size_t depth = 0;
  };

  std::string_view file_;
  NewDocument& out_;
  const Walker& walker_;
  const document::Story& story_;
  std::vector<Level> levels_;
  std::vector<Alternative> alternatives_;
  std::uint16_t missingFallback_ = 0;
  Extent missingAt_;
  text::RunMap<std::uint8_t>::Run wanted_;  ///< the one looked up last
};

}  // namespace pluvo::rtf
