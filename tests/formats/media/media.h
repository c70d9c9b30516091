#pragma once

#include "formats/format.h"
#include "support/notation.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::formats {

/// What documents of a notation are kept in: a kind of file, or nothing but memory. A format joins the tests
/// of edits by one of these.
struct Medium {
  std::string name;
  std::shared_ptr<const Format> format;  ///< none: memory
  /// A file of a notation, which also says where its ranges lie; nothing where no such file can hold it.
  std::optional<base::Bytes> (*file)(std::string_view notation, notation::Ranges& ranges) = nullptr;
  /// The faults of a new version of a file that the old one did not have.
  std::string (*damage)(const base::Bytes& before, const base::Bytes& after) = nullptr;
  bool holdsHalves = false;  ///< of characters of two units
  /// Where in the file the document of the notation stands.
  document::Place place = document::Place::main;
};

/// In main text, in a footnote beside others, and in a text box that two alternatives hold.
Medium docxMedium();
Medium docxNoteMedium();
Medium docxBoxMedium();
Medium rtfMedium();
Medium docMedium();
Medium htmlMedium();
/// In a footnote beside another.
Medium htmlNoteMedium();
/// Plain text in UTF-8 with LF, and in UTF-16 with CR LF.
Medium utf8Medium();
Medium utf16Medium();

/// Memory, and every format.
const std::vector<Medium>& media();

/// A document of a notation.
struct Kept {
  notation::Sample sample;
  /// Saves the document where it is kept in a file, and reads that again. The test fails unless it is the
  /// same document in a sound file.
  std::function<void(const document::Document&)> save = [](const document::Document&) {};
  bool holdsHighlight = true;

  void expectToSurviveASave() { save(sample.document->stories()); }
};

/// A file of a notation, to be opened again and again.
struct Original {
  const Medium& medium;
  std::string notation;
  base::Bytes file;
  notation::Ranges ranges;

  Kept open() const;
};

/// Nothing where the medium cannot hold such a document.
std::optional<Original> originalIn(const Medium& medium, std::string_view notation);
std::optional<Kept> keptIn(const Medium& medium, std::string_view notation);

}  // namespace pluvo::formats
