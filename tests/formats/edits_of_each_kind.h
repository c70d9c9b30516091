#pragma once

#include "document/document.h"
#include "formats/left.h"
#include "storage/store/corpus.h"
#include "word/enums.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::formats {

/// Letters at the beginning, in the middle and at the end of a text, so far as it has any.
inline std::vector<text::Position> lettersIn(const document::Story& story) {
  std::vector<text::Position> all;
  for (text::Position i = 0; i < story.length(); ++i) {
    const char16_t unit = story.text().at(i);
    const bool isLetter = (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
    const std::int8_t restriction = story.structure().valueAt(i).restriction;
    const bool isShown = (story.visibility().valueAt(i) & text::kInResults) != 0;
    if (isLetter && isShown && restriction == document::kNone) all.push_back(i);
  }
  if (all.size() < 3) return all;
  return {all.front(), all[all.size() / 2], all.back()};
}

/// How many of the old bytes are no more, where one stretch of them was changed; nothing went where new ones
/// came in anywhere.
inline std::size_t goneOf(std::string_view before, std::string_view after) {
  std::size_t found = 0;
  for (std::size_t at = 0; at < after.size() && found < before.size(); ++at)
    found += after[at] == before[found] ? 1U : 0U;
  if (found == before.size()) return 0;
  const auto front = std::ranges::mismatch(before, after).in1 - before.begin();
  const auto back =
      std::mismatch(before.rbegin(), before.rend() - front, after.rbegin(), after.rend() - front);
  return static_cast<std::size_t>(before.rend() - front - back.first);
}

struct EditKind {
  const char* name;
  void (*edit)(document::Story&, text::Position);
};
inline const std::array<EditKind, 6> kEditKinds = {
    {{"before", [](document::Story& story, text::Position at) { story.insertBefore(at, u"N\u0416"); }},
     {"after", [](document::Story& story, text::Position at) { story.insertBehind(at + 1, u"N\u0416"); }},
     {"split", [](document::Story& story, text::Position at) { story.insertBefore(at, u"\r"); }},
     {"highlight",
      [](document::Story& story, text::Position at) {
        story.highlight({at, at + 1}, 7);
      }},
     {"replace",
      [](document::Story& story, text::Position at) {
        story.replace({at, at + 1}, u"N", text::View::results);
      }},
     {"delete", [](document::Story& story, text::Position at) {
        story.replace({at, at + 1}, u"", text::View::results);
      }}}};

/// How many old bytes may go at the most, and by how many the file may grow.
struct ByteBounds {
  std::size_t goes;
  std::size_t comes;
};

/// An edit of each kind at the places of lettersIn: alone, and all of one kind together, which is left for
/// libreoffice.py.
template <class Open, class Save>
void expectOtherBytesKept(const std::filesystem::path& path, Open open, Save save,
                          const std::array<ByteBounds, kEditKinds.size()>& bounds) {
  const base::Bytes bytes = store::bytesOf(path);
  const std::string before(bytes.view.begin(), bytes.view.end());
  for (std::size_t kind = 0; kind < kEditKinds.size(); ++kind) {
    SCOPED_TRACE(testing::Message() << path << " " << kEditKinds[kind].name);
    auto all = open(before);
    for (std::size_t i = 0; i < all.document.count(); ++i) {
      const std::vector<text::Position> places = lettersIn(all.document.story(i));
      for (auto place = places.rbegin(); place != places.rend(); ++place) {
        kEditKinds[kind].edit(all.document.story(i), *place);
        constexpr std::size_t kEnough = 8;
        // The same box for older programs is edited in step.
        if (i > kEnough || all.document.story(i).kind() == word::wdTextFrameStory) continue;
        auto one = open(before);
        kEditKinds[kind].edit(one.document.story(i), *place);
        const std::string after = one.written();
        EXPECT_LE(goneOf(before, after), bounds[kind].goes) << i << " at " << *place;
        EXPECT_LE(after.size(), before.size() + bounds[kind].comes) << i << " at " << *place;
      }
    }
    const std::string written = save(all);
    leave(std::string(kEditKinds[kind].name) + "-" + path.filename().string(),
          base::Bytes::of({written.begin(), written.end()}), all.document);
  }
}

}  // namespace pluvo::formats
