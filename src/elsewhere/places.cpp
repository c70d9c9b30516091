#include "places.h"

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::elsewhere {

using text::Position;
using text::Visibility;

namespace {

/// The marks of fields, and the anchors of comments.
bool isMark(char16_t unit) {
  return unit == text::kCommentReference || (unit >= text::kFieldBegin && unit <= text::kFieldEnd);
}

/// Looks at each unit, since that can be done for many at a time.
template <class Unit>
bool holdsMark(const Unit* units, Position length) {
  constexpr Unit kFieldMarks = text::kFieldEnd - text::kFieldBegin;
  Unit any = 0;
  for (Position i = 0; i < length; ++i) {
    const auto fromBegin = static_cast<Unit>(units[i] - text::kFieldBegin);
    any |=
        static_cast<Unit>(units[i] == text::kCommentReference) | static_cast<Unit>(fromBegin <= kFieldMarks);
  }
  return any != 0;
}
bool holdsMark(const text::Stretch& stretch) {
  return stretch.wide != nullptr ? holdsMark(stretch.wide, stretch.length)
                                 : holdsMark(stretch.narrow, stretch.length);
}

/// Tells from a field's code, character by character, where text begins that Word shows. It begins after the
/// name of the macro, or of the place, that a press on the text leads to.
class ButtonCode {
 public:
  /// How many of the units are read before that place; all, where it is not reached.
  std::size_t read(std::u16string_view units) {
    std::size_t i = 0;
    for (; i < units.size() && (state_ == State::keyword || state_ == State::name); ++i) take(units[i]);
    return state_ == State::shown ? i : units.size();
  }

 private:
  enum class State : std::uint8_t { keyword, name, shown, other };

  void take(char16_t unit) {
    constexpr std::size_t kLongest = 11;
    const bool blank = unit == u' ' || unit == text::kTab;
    if (!blank) {
      if (state_ == State::keyword && word_.size() == kLongest) state_ = State::other;
      if (state_ == State::keyword || word_.empty()) word_.push_back(unit);
      return;
    }
    if (word_.empty()) return;
    if (state_ == State::keyword) {
      const bool button = isWord("MACROBUTTON") || isWord("GOTOBUTTON");
      state_ = button ? State::name : State::other;
      word_.clear();
    } else {
      state_ = State::shown;
    }
  }

  bool isWord(std::string_view keyword) const {
    if (word_.size() != keyword.size()) return false;
    for (std::size_t i = 0; i < word_.size(); ++i) {
      const char16_t upper =
          word_[i] >= u'a' && word_[i] <= u'z' ? static_cast<char16_t>(word_[i] - 32) : word_[i];
      if (upper != static_cast<unsigned char>(keyword[i])) return false;
    }
    return true;
  }

  State state_ = State::keyword;
  std::u16string word_;
};

class PlaceReader {
 public:
  PlaceReader(const document::Story& story, text::View view)
      : story_(story), view_(view), fields_(story.fields().size()) {}

  text::RunMap<Place> read() {
    for (const auto& run : story_.structure().runs()) {
      if (run.value.field == document::kNone) {
        readOutside(run.from, run.to);
      } else {
        readField(static_cast<std::size_t>(run.value.field), run.from, run.to);
      }
    }
    return std::move(places_);
  }

 private:
  struct Field {
    bool met = false;
    bool inResult = false;
    /// The views that show the place where it stands, were nothing hidden.
    Visibility around = text::kEverywhere;
    ButtonCode code;
    Visibility here() const {
      return static_cast<Visibility>(around & (inResult ? text::kInResults : text::kInCodes));
    }
  };

  void readOutside(Position from, Position to) {
    for (const auto& run : story_.visibility().runs(from, to)) {
      if (text::isVisible(run.value, view_)) {
        append(run.from, run.to, Place::shown);
      } else {
        readBetweenMarks(run.from, run.to,
                         [&](Position begin, Position end) { append(begin, end, Place::hidden); });
      }
    }
  }

  void readField(std::size_t index, Position from, Position to) {
    Field& field = fields_[index];
    if (!field.met) {
      field.met = true;
      const std::int32_t parent = story_.fields()[index].parent;
      if (parent != document::kNone) field.around = fields_[static_cast<std::size_t>(parent)].here();
    }
    readBetweenMarks(
        from, to, [&](Position begin, Position end) { readFieldText(field, begin, end); },
        [&](char16_t mark) { field.inResult = field.inResult || mark == text::kFieldSeparator; });
  }

  void readFieldText(Field& field, Position from, Position to) {
    if (!field.inResult && view_ == text::View::results) {
      const Position name = from + static_cast<Position>(field.code.read(story_.text().substring(from, to)));
      readSide(field, from, name, Place::otherSide);
      readSide(field, name, to, Place::computed);
    } else {
      readSide(field, from, to, Place::otherSide);
    }
  }

  void readSide(const Field& field, Position from, Position to, Place side) {
    for (const auto& run : story_.visibility().runs(from, to)) {
      const bool hidden = run.value == text::kNowhere && field.here() != text::kNowhere;
      append(run.from, run.to,
             text::isVisible(run.value, view_) ? Place::shown
             : hidden                          ? Place::hidden
                                               : side);
    }
  }

  template <class Text, class Mark>
  void readBetweenMarks(Position from, Position to, Text text, Mark mark) {
    Position reached = from;
    const auto met = [&](Position place, char16_t unit) {
      if (place > reached) text(reached, place);
      mark(unit);
      append(place, place + 1,
             text::isVisible(story_.visibility().valueAt(place), view_) ? Place::shown : Place::mark);
      reached = place + 1;
    };
    story_.text().forEachStretch(from, to, [&](Position start, const text::Stretch& stretch) {
      if (!holdsMark(stretch)) return true;
      for (Position i = 0; i < stretch.length; ++i) {
        const char16_t unit = stretch.wide != nullptr ? stretch.wide[i] : stretch.narrow[i];
        if (isMark(unit)) met(start + i, unit);
      }
      return true;
    });
    if (to > reached) text(reached, to);
  }
  template <class Text>
  void readBetweenMarks(Position from, Position to, Text text) {
    readBetweenMarks(from, to, text, [](char16_t) {});
  }

  void append(Position from, Position to, Place place) {
    if (to > from) places_.append(to - from, place);
  }

  const document::Story& story_;
  text::View view_;
  std::vector<Field> fields_;
  text::RunMap<Place> places_;
};

}  // namespace

bool hasMarks(const document::Story& story) {
  if (!story.fields().empty()) return true;
  constexpr char16_t kAnchor = text::kCommentReference;
  bool any = false;
  story.text().forEachStretch(0, story.length(), [&](Position, const text::Stretch& stretch) {
    const auto length = static_cast<std::size_t>(stretch.length);
    any = stretch.wide != nullptr
              ? std::u16string_view(stretch.wide, length).find(kAnchor) != std::u16string_view::npos
              : length > 0 && std::memchr(stretch.narrow, kAnchor, length) != nullptr;
    return !any;
  });
  return any;
}

text::RunMap<Place> placesOf(const document::Story& story, text::View view) {
  return PlaceReader(story, view).read();
}

}  // namespace pluvo::elsewhere
