#include "support/notation.h"

#include "base/utf.h"
#include "document/content_builder.h"
#include "support/notation_parser.h"

#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace pluvo::notation {

using document::Story;
using text::Position;

namespace {

constexpr std::u16string_view kSpecial = u"¶{|}⟦¦‖⟧§<>[]\\";

class Printer {
 public:
  Printer(const Story& model, const Ranges& ranges) : model_(model), ranges_(ranges) {}

  std::string print() {
    for (Position position = 0; position < model_.length(); ++position) {
      endRanges(position);
      changeLook(lookAt(position));
      changeTable(model_.structure().valueAt(position).table);
      beginRanges(position);
      character(position);
    }
    endRanges(model_.length());
    changeLook({});
    changeTable(document::kNone);
    beginRanges(model_.length());
    return base::utf8(out_);
  }

 private:
  struct Look {
    bool hidden = false;
    bool deleted = false;
    int colour = 0;
    bool operator==(const Look&) const = default;
  };

  /// Hidden: shown nowhere although the fields around would let it be shown somewhere.
  Look lookAt(Position position) const {
    const bool nowhere = model_.visibility().valueAt(position) == text::kNowhere;
    return {nowhere && mayBeShown(position).value_or(look_.hidden),
            model_.structure().valueAt(position).deleted, model_.highlight().valueAt(position)};
  }

  /// Nothing for a separator, which is never shown.
  std::optional<bool> mayBeShown(Position position) const {
    int views = text::kEverywhere;
    std::size_t depth = parts_.size();
    if (model_.isFieldMark(position)) {
      const char16_t mark = model_.text().at(position);
      if (mark == text::kFieldSeparator) return std::nullopt;
      if (mark == text::kFieldEnd) --depth;
      views = text::kInCodes;
    }
    for (std::size_t i = 0; i < depth; ++i) views &= parts_[i];
    return views != 0;
  }

  void changeLook(Look look) {
    if (look == look_) return;
    if (look_ != Look()) out_ += u'>';
    look_ = look;
    if (look == Look()) return;
    out_ += u'<';
    if (look.hidden) out_ += u'h';
    if (look.deleted) out_ += u'd';
    if (look.colour != 0) out_ += base::utf16(std::to_string(look.colour));
    out_ += u':';
  }

  void changeTable(std::int32_t table) {
    const auto parentOf = [&](std::int32_t inner) {
      return model_.tables()[static_cast<std::size_t>(inner)].parent;
    };
    std::vector<std::int32_t> opened;
    std::int32_t closed = table_;
    std::int32_t open = table;
    while (closed != open) {
      if (closed > open) {
        out_ += u'⟧';
        closed = parentOf(closed);
      } else {
        opened.push_back(open);
        open = parentOf(open);
      }
    }
    out_.append(opened.size(), u'⟦');
    table_ = table;
  }

  void character(Position position) {
    const char16_t unit = model_.text().at(position);
    const auto structure = model_.structure().valueAt(position);
    if (model_.isFieldMark(position)) {
      fieldMark(unit);
    } else if (unit == text::kParagraphMark) {
      out_ += u'¶';
    } else if (model_.endsParagraph(position)) {
      out_ += structure.sectionMark ? u'§' : structure.rowMark ? u'‖' : u'¦';
    } else {
      if (kSpecial.find(unit) != kSpecial.npos) out_ += u'\\';
      out_ += unit;
    }
  }

  void fieldMark(char16_t unit) {
    if (unit == text::kFieldBegin) {
      parts_.push_back(text::kInCodes);
      out_ += u'{';
    } else if (unit == text::kFieldSeparator) {
      if (!parts_.empty()) parts_.back() = text::kInResults;
      out_ += u'|';
    } else {
      if (!parts_.empty()) parts_.pop_back();
      out_ += u'}';
    }
  }

  void endRanges(Position position) {
    for (const auto& [name, span] : ranges_) {
      if (span.to == position && span.from < position) (out_ += static_cast<char16_t>(name)) += u']';
    }
  }

  void beginRanges(Position position) {
    for (const auto& [name, span] : ranges_) {
      if (span.from != position) continue;
      (out_ += u'[') += static_cast<char16_t>(name);
      if (span.to == position) (out_ += static_cast<char16_t>(name)) += u']';
    }
  }

  const Story& model_;
  const Ranges& ranges_;
  std::u16string out_;
  Look look_;
  std::int32_t table_ = document::kNone;
  std::vector<text::Visibility> parts_;
};

}  // namespace

Parsed parse(std::string_view notation) {
  document::ContentBuilder builder;
  Ranges ranges = Parser(notation, builder).parse();
  return {builder.finish(), std::move(ranges)};
}

std::string print(const Story& model, const Ranges& ranges) { return Printer(model, ranges).print(); }

Sample::Sample(std::string_view notation, std::shared_ptr<const document::Medium> medium)
    : Sample(parse(notation), std::move(medium)) {}

Sample::Sample(Parsed parsed, std::shared_ptr<const document::Medium> medium) {
  document = memory::MemoryDocument::create(std::move(parsed.content), std::move(medium), u"sample");
  for (const auto& [name, span] : parsed.ranges) ranges[name] = document->Range(span.from, span.to);
}

Sample::Sample(std::vector<document::Content> stories, document::Place place, const Ranges& positions,
               std::shared_ptr<const document::Medium> medium) {
  while (number < stories.size() && document::placeOf(stories[number].kind) != place) ++number;
  if (number == stories.size()) throw std::invalid_argument("the document has no such story");
  document = memory::MemoryDocument::create(std::move(stories), std::move(medium), u"sample");
  for (const auto& [name, span] : positions) ranges[name] = rangeAt(span);
}

std::shared_ptr<word::Range> Sample::rangeAt(text::Span span) {
  const auto range = document->StoryRanges(story().kind());
  range->SetRange(span.from, span.to);
  return range;
}

std::string Sample::print() {
  Ranges spans;
  for (const auto& [name, range] : ranges) spans[name] = {range->Start(), range->End()};
  return notation::print(story(), spans);
}

}  // namespace pluvo::notation
