#include "looks.h"

#include <algorithm>
#include <array>

namespace pluvo::view {

namespace {

/// Headings beside the text, by level.
constexpr std::array kHeadingScale = {1.0, 1.7, 1.4, 1.2, 1.1};

void put(QTextCharFormat& format, const formats::Appearance& look) {
  if (look.bold) format.setFontWeight(QFont::Bold);
  if (look.italic) format.setFontItalic(true);
  if (look.underlined) format.setFontUnderline(true);
  if (look.struck) format.setFontStrikeOut(true);
}

}  // namespace

formats::Appearance Looks::of(const document::Story& story, Position position) const {
  if (appearance.length() == 0 || position >= story.length()) return {};
  const text::Piece piece = story.text().pieceAt(position);
  const Position original = piece.isNew() ? piece.anchor : piece.original;
  if (original < 0 || original >= appearance.length()) return {};
  return appearance.valueAt(original);
}

QFont Looks::paragraphFont(const formats::Appearance& paragraph) const {
  QFont result = font;
  const auto level = std::min<std::size_t>(paragraph.heading, kHeadingScale.size() - 1);
  result.setPointSizeF(font.pointSizeF() * kHeadingScale[level]);
  if (paragraph.heading != 0) result.setBold(true);
  return result;
}

QList<QTextLayout::FormatRange> Looks::formats(const document::Story& story, const ShownText& shown,
                                               const formats::Appearance& paragraph) const {
  QList<QTextLayout::FormatRange> ranges;
  const auto add = [&](int from, int length, const QTextCharFormat& format) {
    if (!format.isEmpty()) ranges.push_back({from, length, format});
  };
  for (const ShownText::Part& part : shown.parts()) {
    const Position end = part.position + part.length;
    for (Position at = part.position; at < end && appearance.length() != 0;) {
      const text::Piece piece = story.text().pieceAt(at);
      const Position original = piece.isNew() ? piece.anchor : piece.original;
      if (original < 0 || original >= appearance.length()) {
        at += piece.length;
        continue;
      }
      const auto run = appearance.runAt(original);
      const Position reach = piece.isNew() ? piece.length : std::min(piece.length, run.to - original);
      const Position to = std::min(end, at + reach);
      QTextCharFormat format;
      formats::Appearance look = run.value;
      look.bold = look.bold && paragraph.heading == 0;  // headings are bold anyway
      put(format, look);
      if (look.inserted) {
        format.setFontUnderline(true);
        format.setForeground(inserted);
      }
      add(part.shown + (at - part.position), to - at, format);
      at = to;
    }
    // Later ones count: an insertion that was deleted looks deleted, under highlight of its own.
    for (const auto& run : story.structure().runs(part.position, end)) {
      if (!run.value.deleted) continue;
      QTextCharFormat format;
      format.setFontStrikeOut(true);
      format.setForeground(deleted);
      add(part.shown + (run.from - part.position), run.to - run.from, format);
    }
    for (const auto& run : story.highlight().runs(part.position, end)) {
      const QColor colour = highlightColour(run.value);
      if (!colour.isValid()) continue;
      QTextCharFormat format;
      format.setBackground(colour);
      format.setForeground(readableOn(colour));
      add(part.shown + (run.from - part.position), run.to - run.from, format);
    }
  }
  return ranges;
}

QColor highlightColour(int index) {
  constexpr std::array<QRgb, 17> kColours = {0,        0x000000, 0x0000FF, 0x00FFFF, 0x00FF00, 0xFF00FF,
                                             0xFF0000, 0xFFFF00, 0xFFFFFF, 0x000080, 0x008080, 0x008000,
                                             0x800080, 0x800000, 0x808000, 0x808080, 0xC0C0C0};
  if (index < 1 || index >= static_cast<int>(kColours.size())) return {};
  return QColor(kColours[static_cast<std::size_t>(index)]);
}

void colourChanges(Looks& looks, const QColor& background) {
  const bool dark = readableOn(background) == Qt::white;
  looks.deleted = dark ? QColor(0xFF8A80) : QColor(0xB3261E);
  looks.inserted = dark ? QColor(0x7FD99A) : QColor(0x1B6E37);
}

QColor readableOn(const QColor& background) {
  const double brightness =
      0.299 * background.redF() + 0.587 * background.greenF() + 0.114 * background.blueF();
  return brightness > 0.5 ? QColor(Qt::black) : QColor(Qt::white);
}

}  // namespace pluvo::view
