#pragma once

#include "doc/doc_format.h"
#include "document/same_document.h"
#include "errors/fault.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace pluvo::doc {

/// A document with all its stories.
struct Opened {
  explicit Opened(const base::Bytes& file, bool allStories = true)
      : Opened(DocFormat().read(file, {.allStories = allStories})) {}
  explicit Opened(formats::Opened opened)
      : source(std::move(opened.source)), document(std::move(opened.stories), source) {}

  /// Writes it, and reads it again: the same document, that is written as it was read.
  base::Bytes saved() const {
    base::MemoryOutput out;
    source->write(document, out);
    base::Bytes file = base::Bytes::of(std::move(out.bytes()));
    formats::Opened again = DocFormat().read(file, {.allStories = true});
    EXPECT_EQ(document::differenceOf(document.snapshot(), again.stories, [] {}), "");
    return file;
  }

  std::shared_ptr<const formats::Source> source;
  document::Document document;
};

inline std::u16string textOf(const document::Story& story) {
  return story.text().substring(0, story.length());
}

/// Whether the edit is possible there.
inline bool tryTo(const std::function<void()>& edit) {
  try {
    edit();
    return true;
  } catch (const errors::Fault&) {
    return false;
  }
}

/// What there is of each story.
inline std::string storiesOf(const Opened& opened) {
  std::string all;
  for (std::size_t i = 0; i < opened.document.count(); ++i)
    if (!opened.document.isGone(i)) all += notation::print(opened.document.story(i)) + " ";
  return all;
}

/// Deletes a text of a story, or puts another in its place.
inline void replace(Opened& opened, std::size_t story, std::u16string_view old,
                    std::u16string_view text = u"") {
  document::Story& model = opened.document.story(story);
  const auto at = static_cast<text::Position>(textOf(model).find(old));
  ASSERT_GE(at, 0);
  model.replace({at, at + static_cast<text::Position>(old.size())}, text, text::View::results);
}

}  // namespace pluvo::doc
