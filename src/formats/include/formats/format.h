#pragma once

#include "base/bytes.h"
#include "document/content.h"
#include "document/document.h"
#include "document/medium.h"
#include "errors/document_error.h"
#include "formats/appearance.h"
#include "formats/key.h"
#include "formats/other_texts.h"
#include "word/enums.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::formats {

/// The file that a document was read from. It knows which bytes stand for each original character,
/// and so writes an edited document in place: untouched text keeps its bytes.
class Source : public document::Medium {
 public:
  /// Writes the whole document as its stories stand. Throws errors::DocumentError.
  virtual void write(const document::Document& document, base::Output& out) const = 0;
  /// How each original character of each story looks, by the stories' numbers, made anew at every call. A map
  /// is empty, or missing at the end, where nothing is known of a story.
  virtual std::vector<text::RunMap<Appearance>> appearance() const { return {}; }
  /// Tells the document's texts that are not main text, as the file has them. Text that went with deleted
  /// main text is left out. A part that cannot be read is told, too.
  virtual void tellOtherTexts(const document::Story& /*mainText*/, OtherTexts& /*texts*/) const {}
};

/// A protection against editing that the document says of itself. The file keeps it as it is.
struct Protection {
  word::WdProtectionType type = word::wdAllowOnlyReading;
  /// Whether this is the password that lifts it; empty where anybody may.
  std::function<bool(const std::u16string&)> isLiftedBy = {};
  /// How many hashes each password costs.
  std::uint64_t hashes = 0;
  /// Why no password can lift it: a sentence for the user. Empty where one can.
  std::string obstacle = {};
};

/// A document that asks before it is saved under its own name. Everybody may read it, and save it under
/// another. The saved file asks again.
struct Reservation {
  /// Whether this is the password for changing it; empty where it only recommends to be read.
  std::function<bool(const std::u16string&)> isLiftedBy = {};
  /// As those of a protection.
  std::uint64_t hashes = 0;
  std::string obstacle = {};
};

/// Facts about a file besides its bytes.
struct Hint {
  /// Of a plain text, where bytes do not tell it for certain; empty where it is unknown.
  std::string encoding = {};
  /// The encoding holds whatever the bytes seem to be, but for a byte order mark.
  bool certain = false;
  /// Of an encrypted document, where it is known.
  SharedKey key = {};
  /// Else this is asked for it. Without a key the document is refused, as with a wrong one
  /// (Problem::password).
  KeyFinder findKey = {};
  /// Headers, footers, notes, comments and text boxes are wanted, too; otherwise main text alone.
  bool allStories = false;
};

struct Opened {
  /// Main text first, then headers, footers, footnotes, endnotes, comments and text boxes, each in the
  /// document's order.
  std::vector<document::Content> stories;
  std::shared_ptr<const Source> source = {};
  std::optional<Protection> protection = std::nullopt;
  std::optional<Reservation> reservation = std::nullopt;
  /// New documents are made from it, as the file says of itself whatever its name.
  bool isTemplate = false;
  /// By which a plain text was read; empty where the format leaves no choice.
  std::string encoding = {};
  bool isEncodingGuessed = false;
  /// The hint for reading the new version, its key included.
  Hint again = {};
};

/// One way of storing documents in files. Readers treat every byte as hostile: they check bounds, sizes,
/// depths and ratios. A file that cannot be read is an errors::DocumentError.
class Format {
 public:
  virtual ~Format() = default;
  /// Short and for users: "docx", "txt".
  virtual std::string_view name() const = 0;
  /// Whether the bytes look like this format; the extension (lower case, no dot) may decide where bytes
  /// cannot.
  virtual bool recognises(base::ByteSpan bytes, std::string_view extension) const = 0;
  /// The extensions that it goes by where bytes cannot tell; "" for names without one.
  virtual std::span<const std::string_view> extensions() const { return {}; }
  virtual Opened read(base::Bytes bytes, const Hint& hint) const = 0;
  Opened read(base::Bytes bytes) const { return read(std::move(bytes), {}); }
};

}  // namespace pluvo::formats
