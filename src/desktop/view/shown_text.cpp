#include "shown_text.h"

#include <algorithm>

namespace pluvo::view {

namespace {

constexpr char16_t kReplacement = 0xFFFD;

/// The character on screen for one of the document.
char16_t glyphOf(char16_t unit) {
  switch (unit) {
    case text::kTab:
      return unit;
    case text::kPicture:
    case text::kFloatingPicture:
      return 0x25A3;
    case text::kNoteReference:
      return 0x2020;
    case text::kLineBreak:
    case text::kPageBreak:
    case text::kColumnBreak:
    case u'\n':
    case 0x2029:
      return 0x2028;
    case text::kFieldBegin:
      return u'{';
    case text::kFieldSeparator:
      return u'|';
    case text::kFieldEnd:
      return u'}';
    case text::kNonBreakingHyphen:
      return 0x2011;
    case text::kOptionalHyphen:
      return 0x00AD;
    default:
      return unit < u' ' ? kReplacement : unit;
  }
}

}  // namespace

ShownText::ShownText(const document::Story& story, Span span, text::View view) {
  end_ = span.to;
  if (!span.empty() && story.endsParagraph(span.to - 1)) end_ = span.to - 1;
  text::forEachVisibleStretch(story.text(), story.visibility(), view, span.from, end_,
                              [&](Position at, const text::Stretch& stretch) {
                                parts_.push_back({static_cast<int>(text_.size()), at, stretch.length});
                                for (Position i = 0; i < stretch.length; ++i)
                                  text_.append(QChar(glyphOf(stretch[i])));
                                return true;
                              });
}

Position ShownText::position(int shown) const {
  const auto after = std::upper_bound(parts_.begin(), parts_.end(), shown,
                                      [](int place, const Part& part) { return place < part.shown; });
  if (after == parts_.begin()) return end_;
  const Part& part = *std::prev(after);
  const int within = shown - part.shown;
  return within < part.length ? part.position + within : end_;
}

int ShownText::shown(Position position) const {
  for (const Part& part : parts_) {
    if (position < part.position) return part.shown;
    if (position < part.position + part.length) return part.shown + (position - part.position);
  }
  return static_cast<int>(text_.size());
}

void ShownText::moveBy(Position growth) {
  for (Part& part : parts_) part.position += growth;
  end_ += growth;
}

QString spokenText(const document::Story& story, Span span, text::View view) {
  constexpr char16_t kNoWidth = 0x200B;
  QString spoken(span.length(), QChar(kNoWidth));
  text::forEachVisibleStretch(
      story.text(), story.visibility(), view, span.from, span.to,
      [&](Position at, const text::Stretch& stretch) {
        for (Position i = 0; i < stretch.length; ++i) {
          const char16_t glyph = glyphOf(stretch[i]);
          const bool ends = story.endsParagraph(at + i);
          const bool endsCell = ends && stretch[i] == text::kCellMark;
          const bool isTab = endsCell && !story.isRowMark(at + i);
          spoken[at + i - span.from] = QChar(isTab ? u'\t' : ends || glyph == 0x2028 ? u'\n' : glyph);
        }
        return true;
      });
  return spoken;
}

QString copiedText(const document::Story& story, Span span, text::View view) {
  QString copied;
  text::forEachVisibleStretch(
      story.text(), story.visibility(), view, span.from, span.to,
      [&](Position at, const text::Stretch& stretch) {
        for (Position i = 0; i < stretch.length; ++i) {
          const char16_t unit = stretch[i];
          if (unit == text::kCellMark && story.endsParagraph(at + i)) {
            if (story.isRowMark(at + i)) {
              if (copied.endsWith(u'\t')) copied.chop(1);
              copied += u'\n';
            } else {
              copied += u'\t';
            }
          } else if (unit == text::kParagraphMark || (unit < u' ' && glyphOf(unit) == 0x2028)) {
            copied += u'\n';
          } else {
            copied += QChar(glyphOf(unit));
          }
        }
        return true;
      });
  return copied;
}

}  // namespace pluvo::view
