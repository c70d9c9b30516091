#pragma once

#include "base/bytes.h"
#include "cfb/compound_file.h"
#include "encrypted_streams.h"
#include "fib.h"
#include "formatted_pages.h"
#include "piece_table.h"
#include "styles.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace pluvo::doc {

/// The streams of a document, in plain.
struct Streams {
  cfb::CompoundFile file;
  base::Bytes document;
  base::Bytes tables;
  base::Bytes data;  ///< empty where there is none
  StreamIds ids;
  std::shared_ptr<const EncryptedStreams> encrypted = {};  ///< null where nothing is

  /// Throws DocumentError: password where the file is encrypted and the key is not known. Where it is no
  /// document that can be read, the error says what it is.
  static Streams open(base::Bytes bytes, const formats::Hint& hint);

  /// Writes the file with new contents for streams, encrypted where they were.
  void rewrite(std::span<const cfb::Change> changes, base::Output& out) const;
};

/// All that a walk over a text of a document asks: main text and its companions, or those of the glossary.
struct Text {
  /// Throws DocumentError: damaged. The streams outlive it.
  Text(const Streams& streams, std::size_t fibAt)
      : Text(streams.document.view, streams.tables.view, streams.data.view, fibAt) {}
  Text(base::ByteSpan document, base::ByteSpan tables, base::ByteSpan data, std::size_t fibAt);

  Fib fib;
  base::ByteSpan document;
  base::ByteSpan tables;
  base::ByteSpan data;
  PieceTable pieces;
  FormattedPages characters;
  FormattedPages paragraphs;
  Styles styles;

  base::ByteSpan in(Table table) const { return fib.in(tables, table); }
};

/// The text of a template's glossary, a document of its own in the same streams; nothing where there is none.
std::optional<Text> glossaryOf(const Streams& streams, const Text& text);

}  // namespace pluvo::doc
