#pragma once

#include "document/document.h"
#include "stories.h"
#include "word_file.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pluvo::doc {

/// A story as it was read.
struct OldStory {
  StoryPlace place;
  text::RunMap<std::uint8_t> highlight;
};

/// Whether a story is another than it was read.
bool isEdited(const document::Story& story, const OldStory& old);

/// The streams of a new version.
struct NewStreams {
  std::vector<std::uint8_t> document;
  std::vector<std::uint8_t> tables;
  std::vector<std::uint8_t> data;       ///< empty where it stays as it is
  std::vector<std::u16string> deleted;  ///< texts that went
};

/// Throws errors::DocumentError where no edit of the document could be saved, whatever it is.
void requireChangeable(const Text& text, const Text* glossary);

/// Carries the edits of a document over to its streams, as a fast save of a word processor does. New text and
/// new pages of formatting come after the old bytes, and the table of pieces leads to them. Bytes that stay
/// in use stay where they are; those of deleted text become zeros. In the Data stream those of pictures and
/// of what fields keep become zeros, too.
///
/// A template's glossary lies in the same streams, and has its formatting in the same pages; null where there
/// is none. Throws errors::DocumentError.
NewStreams edited(const Text& text, const Text* glossary, const std::vector<OldStory>& stories,
                  const document::Document& document);

}  // namespace pluvo::doc
