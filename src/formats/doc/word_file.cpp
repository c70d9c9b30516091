#include "word_file.h"

#include "base/little_endian.h"
#include "damage.h"
#include "encryption/package_encryption.h"
#include "old_kinds.h"

namespace pluvo::doc {

using errors::DocumentError;
using errors::Problem;

namespace {

constexpr std::uint16_t kWord97 = 0xA5EC;
constexpr std::uint16_t kFirstVersion = 0xC1;

}  // namespace

Streams Streams::open(base::Bytes bytes, const formats::Hint& hint) {
  Streams streams{cfb::CompoundFile::open(std::move(bytes)), {}, {}, {}, {}};
  const auto stream = streams.file.stream("WordDocument");
  if (!stream) throw notWord(streams.file);
  if (streams.file.find("\x06"
                        "DataSpaces") ||
      streams.file.find("\x09"
                        "DRMContent"))
    throw encryption::rightsManaged();
  streams.document = streams.file.read(*stream);
  if (streams.document.view.size() < 0x20) throw damaged("information block is cut off");
  const base::ByteSpan document = streams.document.view;
  if (base::get16(document, 0) != kWord97 || base::get16(document, 2) < kFirstVersion)
    throw beforeWord97(document);
  const std::uint16_t flags = base::get16(document, 0x0A);
  const auto tables = streams.file.stream((flags & Fib::kTableOne) != 0 ? "1Table" : "0Table");
  if (!tables) throw damaged("stream of tables is missing");
  streams.ids = {*stream, *tables, streams.file.stream("Data")};
  if (EncryptedStreams::areOf(document))
    streams.encrypted = std::make_shared<const EncryptedStreams>(streams.file, streams.ids, hint);
  const auto plain = [&](cfb::Id id) {
    return streams.encrypted ? streams.encrypted->plain(id) : streams.file.read(id);
  };
  streams.document = plain(*stream);
  streams.tables = plain(*tables);
  if (streams.ids.data) streams.data = plain(*streams.ids.data);
  return streams;
}

void Streams::rewrite(std::span<const cfb::Change> changes, base::Output& out) const {
  if (encrypted)
    encrypted->rewrite(file, changes, out);
  else
    cfb::rewrite(file, changes, out);
}

Text::Text(base::ByteSpan documentStream, base::ByteSpan tableStream, base::ByteSpan dataStream,
           std::size_t fibAt)
    : fib(Fib::read(documentStream, fibAt)),
      document(documentStream),
      tables(tableStream),
      data(dataStream),
      pieces(PieceTable::read(in(Table::pieces), document)),
      characters(FormattedPages::Of::characters, document, in(Table::characterPages)),
      paragraphs(FormattedPages::Of::paragraphs, document, in(Table::paragraphPages)),
      styles(Styles::read(in(Table::styles), data)) {
  if (pieces.length() != fib.lengthOfAll()) throw damaged("texts are not as long as it says");
  if (characters.entries().size() < 2) throw damaged("table of formatting is missing");
  // Pieces may share their bytes, where text was copied, but not many of them.
  constexpr std::size_t kMostShared = 16;
  if (static_cast<std::size_t>(pieces.length()) / kMostShared > document.size())
    throw damaged("pieces stand for the same text too often");
  if (pieces.length() > text::kMaxLength / 2)
    throw DocumentError(Problem::tooLarge, "The document has more than 1,073,741,823 characters; divide it.");
}

std::optional<Text> glossaryOf(const Streams& streams, const Text& text) {
  if (!text.fib.has(Fib::kTemplate) || text.fib.glossary() == 0) return std::nullopt;
  return std::optional<Text>(std::in_place, streams, text.fib.glossary() * FormattedPages::kPage);
}

}  // namespace pluvo::doc
