#include "document_writer.h"

#include "zip/rewrite.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace pluvo::docx {

namespace {

std::string_view viewOf(base::ByteSpan bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

base::ByteSpan spanOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string joined(const std::vector<base::ByteSpan>& pieces) {
  std::size_t size = 0;
  for (const base::ByteSpan piece : pieces) size += piece.size();
  std::string bytes;
  bytes.reserve(size);
  for (const base::ByteSpan piece : pieces) bytes += viewOf(piece);
  return bytes;
}

bool isSame(const text::RunMap<std::uint8_t>& a, const text::RunMap<std::uint8_t>& b) {
  if (a.length() != b.length() || a.runCount() != b.runCount()) return false;
  const auto others = b.runs();
  auto other = others.begin();
  const auto runs = a.runs();
  for (const auto& run : runs) {
    if (run != *other) return false;
    ++other;
  }
  return true;
}

}  // namespace

DocumentWriter::DocumentWriter(const Package& package, const Stories& stories,
                               const document::Document& document,
                               std::function<std::string()> placeholderStyle)
    : package_(package),
      stories_(stories),
      document_(document),
      placeholderStyle_(std::move(placeholderStyle)),
      firstSites_(document.count()) {
  for (const StoryPart& part : stories_.parts)
    for (const Site& site : part.sites)
      if (site.story != Site::kNone && firstSites_[site.story] == nullptr) firstSites_[site.story] = &site;
}

bool DocumentWriter::isEdited(std::size_t number) const {
  const document::Story& story = document_.story(number);
  const text::PieceText& text = story.text();
  const bool isOriginal =
      text.pieceCount() == 1 && !text.piece(0).isNew() && text.length() == text.original().length();
  return !isOriginal || !isSame(story.highlight(), firstSites_[number]->highlight);
}

/// A marker goes with its comment, wherever it stands.
bool DocumentWriter::isToBeWritten(const Site& site) const {
  if (isEdited(site.story)) return true;
  const auto& markers = site.map.commentMarkers;
  return !notes_.comments.empty() && std::any_of(markers.begin(), markers.end(), [&](const auto& marker) {
    return notes_.comments.contains(marker.id);
  });
}

/// Changed parts are gathered in memory, new text included.
void DocumentWriter::requireRoomInMemory() const {
  constexpr std::int64_t kMost = std::int64_t{128} << 20U;
  std::int64_t added = 0;
  for (std::size_t i = 0; i < document_.count(); ++i) added += document_.story(i).length();
  if (added <= kMost) return;
  added = 0;
  for (std::size_t i = 0; i < document_.count(); ++i) {
    document_.story(i).text().forEachPiece([&](const text::Piece& piece, std::u16string_view) {
      if (piece.isNew()) added += piece.length;
    });
  }
  if (added <= kMost) return;
  throw errors::DocumentError(
      errors::Problem::tooLarge,
      "The changes would put " + std::to_string(added >> 20U) +
          " million characters into the document, which takes 128 million at most; put in "
          "a shorter text, or divide the document.");
}

const document::Dropped& DocumentWriter::dropped(std::size_t story) {
  const auto [place, isNew] = dropped_.try_emplace(story);
  if (isNew) place->second = document::Dropped(EditScript(document_.story(story)));
  return place->second;
}

const BookmarkReferences& DocumentWriter::references() {
  if (!references_) references_.emplace(package_, stories_.parts.front().part.utf8.view);
  return *references_;
}

void DocumentWriter::findNotes() {
  const auto refers = [&](std::size_t i) { return !firstSites_[i]->map.references.empty(); };
  bool mayGo = false;
  for (std::size_t i = 0; i < document_.count() && !mayGo; ++i) mayGo = refers(i) && isEdited(i);
  if (!mayGo) return;
  NoteFates fates;
  for (std::size_t i = 0; i < document_.count(); ++i) {
    if (!refers(i)) continue;
    if (document_.isGone(i)) {
      fates.addGone(firstSites_[i]->map);
    } else {
      fates.add(firstSites_[i]->map, dropped(i));
    }
  }
  notes_ = fates.departed();
}

void DocumentWriter::write(base::Output& out) {
  requireRoomInMemory();
  findNotes();
  writeParts();
  removeDeparted(package_, notes_, changed_);

  std::vector<zip::Change> changes;
  std::vector<std::vector<std::uint8_t>> encoded;
  encoded.reserve(changed_.size() + 1);
  const auto isAsItIs = [](const xml::Encoding& encoding) {
    return encoding.isUtf8() && encoding.mark.empty();
  };
  if (const StoryPart& main = stories_.parts.front(); !mainPieces_.empty()) {
    if (isAsItIs(main.part.encoding)) {
      changes.push_back({main.name, std::move(mainPieces_)});
    } else {
      const std::string utf8 = joined(mainPieces_);
      encoded.push_back(xml::fromUtf8(spanOf(utf8), main.part.encoding));
      changes.push_back({main.name, {base::ByteSpan(encoded.back())}});
    }
  }
  for (const auto& [name, part] : changed_) {
    if (isAsItIs(part.encoding)) {
      changes.push_back({name, {spanOf(part.utf8)}});
    } else {
      encoded.push_back(xml::fromUtf8(spanOf(part.utf8), part.encoding));
      changes.push_back({name, {base::ByteSpan(encoded.back())}});
    }
  }
  zip::rewrite(package_.archive, changes, out);
}

void DocumentWriter::writeParts() {
  for (const StoryPart& part : stories_.parts) {
    const bool stays = std::none_of(part.sites.begin(), part.sites.end(), [&](const Site& site) {
      return site.story != Site::kNone && isToBeWritten(site);
    });
    if (stays) continue;
    identifiers_.emplace(part.part.utf8.view, part.name);
    within_.assign(part.sites.size() + 1, {});
    for (std::size_t i = 0; i < part.sites.size(); ++i) within_[part.sites[i].around + 1].push_back(i);
    if (&part == &stories_.parts.front()) {
      writeMainPart();
      continue;
    }
    const Extent whole{0, static_cast<Offset>(part.part.utf8.view.size())};
    std::string bytes;
    Offset copied = whole.begin;
    for (const Exchange& exchange : exchangesIn(part, Site::kNone)) {
      bytes += viewOf(part.part.utf8.view).substr(copied, exchange.old.begin - copied);
      bytes += exchange.bytes;
      copied = exchange.old.end;
    }
    bytes += viewOf(part.part.utf8.view).substr(copied);
    changed_[part.name] = {std::move(bytes), part.part.encoding};
  }
}

void DocumentWriter::writeMainPart() {
  const StoryPart& part = stories_.parts.front();
  const Site& site = part.sites.front();
  const std::vector<Exchange> exchanges = exchangesIn(part, 0);
  mainPieces_ = rewrite(part, site, exchanges, main_);
}

std::vector<DocumentWriter::Exchange> DocumentWriter::exchangesIn(const StoryPart& part, std::size_t around) {
  std::vector<Exchange> exchanges;
  for (const std::size_t at : within_[around + 1]) {
    const Site& site = part.sites[at];
    if (site.story == Site::kNone || document_.isGone(site.story)) continue;
    if (std::optional<std::string> bytes = rewritten(part, at))
      exchanges.push_back({site.extent, std::move(*bytes)});
  }
  return exchanges;
}

std::optional<std::string> DocumentWriter::rewritten(const StoryPart& part, std::size_t at) {
  const Site& site = part.sites[at];
  const std::vector<Exchange> exchanges = exchangesIn(part, at);
  if (exchanges.empty() && !isToBeWritten(site)) return std::nullopt;
  Edited edited;
  const std::string bytes = joined(rewrite(part, site, exchanges, edited));
  return bytes.substr(site.scope->size(), bytes.size() - site.scope->size() - kScopeEnd.size());
}

std::vector<base::ByteSpan> DocumentWriter::rewrite(const StoryPart& part, const Site& site,
                                                    const std::vector<Exchange>& exchanges, Edited& edited) {
  const std::string_view source = viewOf(part.part.utf8.view);
  const BodyMap* map = &site.map;
  base::ByteSpan bytes = part.part.utf8.view;
  if (site.scope != nullptr || !exchanges.empty()) {
    if (site.scope != nullptr) edited.bytes = *site.scope;
    // Where the bytes that are kept begin, and where they have come to.
    std::vector<std::pair<Offset, Offset>> moved;
    Offset copied = site.extent.begin;
    const auto copyTo = [&](Offset end) {
      moved.emplace_back(copied, static_cast<Offset>(edited.bytes.size()));
      edited.bytes += source.substr(copied, end - copied);
    };
    for (const Exchange& exchange : exchanges) {
      copyTo(exchange.old.begin);
      edited.bytes += exchange.bytes;
      copied = exchange.old.end;
    }
    copyTo(site.extent.end);
    if (site.scope != nullptr) edited.bytes += kScopeEnd;
    edited.map = site.map;
    edited.map.moveOffsets([&](Offset offset) {
      const auto after = std::upper_bound(moved.begin(), moved.end(), offset,
                                          [](Offset at, const auto& stretch) { return at < stretch.first; });
      const auto& [from, to] = *(after == moved.begin() ? after : after - 1);
      return to + (offset - from);
    });
    if (document_.story(site.story).kind() == word::wdCommentsStory)
      edited.map.lastParagraph = edited.map.places.before(text::kMaxLength).offset;
    bytes = spanOf(edited.bytes);
    map = &edited.map;
  }
  if (!isToBeWritten(site)) return {bytes};
  const document::Story& story = document_.story(site.story);
  const document::Dropped nothing;
  const bool hasMarkers = !map->bookmarks.empty() || !map->commentMarkers.empty();
  edited.departed =
      std::make_unique<const Departed>(*map, hasMarkers ? dropped(site.story) : nothing, notes_,
                                       [this]() -> const BookmarkReferences& { return references(); });
  const auto make = [&](Identifiers& identifiers) {
    return std::make_unique<Rewriter>(
        bytes, part.name, site.scope == nullptr ? Reach::mainText : Reach::oneStory, *map, story,
        site.highlight, *edited.departed, placeholderStyle_, EditScript(story), identifiers);
  };
  return edited.rewriter.rewrite(make, *identifiers_);
}

}  // namespace pluvo::docx
