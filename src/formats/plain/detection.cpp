#include "detection.h"

#include "base/utf.h"
#include "byte_codings.h"
#include "errors/document_error.h"
#include "guess.h"
#include "names.h"
#include "sample.h"
#include "shifts.h"
#include "survey.h"
#include "text/positions.h"
#include "text/zero_bytes.h"
#include "token.h"

#include <algorithm>
#include <initializer_list>

namespace pluvo::plain {

namespace {

using base::ByteSpan;
using errors::DocumentError;
using errors::Problem;

bool startsWith(ByteSpan bytes, std::initializer_list<std::uint8_t> mark) {
  return bytes.size() >= mark.size() && std::ranges::equal(bytes.first(mark.size()), mark);
}

/// Whether these are characters of a text, most of them Latin, in 16-bit units.
template <Encoding kEncoding>
bool readsAsUtf16(ByteSpan bytes) {
  constexpr std::size_t kFewestUnits = 4;
  const std::size_t count = bytes.size() / 2;
  if (bytes.size() % 2 != 0 || count < kFewestUnits) return false;
  std::size_t latin = 0;
  bool pairOpen = false;
  for (std::size_t i = 0; i < count; ++i) {
    const char16_t unit = utf16UnitAt<kEncoding>(bytes, 2 * i);
    const bool control = unit < 0x20 && (unit < u'\t' || unit > u'\r');
    const bool second = base::isLowSurrogate(unit);
    if (control || unit >= 0xFFFE || second != pairOpen) return false;
    pairOpen = base::isHighSurrogate(unit);
    if (unit < 0x100) ++latin;
  }
  return !pairOpen && latin >= count / 2;
}

/// How much of a text is UTF-8, up to the point where it is certainly not.
struct Utf8Share {
  std::size_t characters = 0;  ///< of several bytes
  std::size_t strays = 0;
};

Utf8Share utf8ShareOf(ByteSpan bytes) {
  constexpr std::size_t kMany = 1000;
  Utf8Share share;
  while (!bytes.empty()) {
    if (share.strays >= kMany && share.characters / 10 < share.strays) break;
    const std::size_t run = bytes[0] < 0x80 ? std::max<std::size_t>(plainRun(bytes), 1) : 0;
    bytes = bytes.subspan(run);
    while (!bytes.empty() && bytes[0] >= 0x80) {
      const Character character = firstOfUtf8(bytes);
      ++(character.valid ? share.characters : share.strays);
      bytes = bytes.subspan(character.bytes);
    }
  }
  return share;
}

/// In other encodings hardly one character in ten looks like UTF-8, so ten to one the other way are certain.
bool isUtf8ButForAFew(const Utf8Share& share) { return share.characters / 10 >= share.strays; }

/// No text is this in another encoding, and the detector would not know.
bool isMixedWithUtf8(const Utf8Share& share) {
  return share.characters >= 2 && share.characters >= share.strays;
}

DocumentError untold(bool mixed) {
  if (mixed)
    return {Problem::encoding, "The text is partly UTF-8 and partly not, so its encoding cannot be told.",
            "Mend it, or say how to read it with --encoding NAME (as UTF-8, bytes that are none stay as they "
            "are)."};
  return {Problem::encoding, "The encoding of this text cannot be told for certain from the text alone.",
          "Say which one it is with --encoding NAME, for instance --encoding Windows-1252."};
}

bool isByBytes(Encoding encoding) {
  return encoding == Encoding::codePage || encoding == Encoding::windows1252;
}

/// With a survey where the units of the encoding have bytes of their own.
Guess readAs(const Named& named, const base::Bytes& file) {
  Guess read{named};
  if (const text::ByteCoding* const coding = byteCodingOf(named.coding))
    read.coded = text::CodedText::survey(file.view, file.owner, *coding);
  return read;
}

/// Throws where a byte means nothing in the encoding.
void requireDecodes(const base::Bytes& file, const Named& named, Storage& storage) {
  const ByteSpan bytes = file.view;
  if (named.coding.encoding != Encoding::codePage) return;
  if (!storage.coded.valid) storage.coded = readAs(named, file).coded;
  if (storage.coded.valid) return;
  std::size_t line = 1;
  forEachToken(bytes, named.coding, [&](const Token& token) {
    if (isStray(token.codePoint))
      throw DocumentError(Problem::encoding,
                          "The text is not " + named.name + ": line " + std::to_string(line) +
                              " holds a byte that means nothing in it.",
                          "Give another --encoding NAME, or leave the option out where the text tells its "
                          "encoding.");
    if (token.lineEnd) ++line;
  });
}

/// Without a mark.
Storage storageOf(const base::Bytes& file, const formats::Hint& hint) {
  constexpr std::size_t kFirst = 4096;  // where most files that hold zeros have one
  const ByteSpan bytes = file.view;
  Storage storage;
  std::optional<Named> named;
  if (!hint.encoding.empty()) named = encodingOf(hint.encoding);
  const bool isSaid = named && hint.certain && named->coding.encoding != Encoding::utf8;
  if (!isSaid) storage.utf8 = text::Utf8Text::survey(bytes, file.owner);
  const auto as = [&](const Named& which) {
    storage.coding = which.coding;
    storage.name = which.name;
    return storage;
  };
  const auto said = [&](const Named& which) {
    storage.strayBytes = which.coding.encoding == Encoding::utf8 && !storage.utf8.valid;
    requireDecodes(file, which, storage);
    return as(which);
  };
  if (named && hint.certain) return said(*named);
  const bool mayBeOther = !storage.utf8.valid && (!named || isByBytes(named->coding.encoding)) &&
                          !text::holdsZero(bytes.first(std::min(bytes.size(), kFirst)));
  Utf8Share share;
  if (mayBeOther) share = utf8ShareOf(bytes);
  const bool isRead = mayBeOther && !isUtf8ButForAFew(share) && !isMixedWithUtf8(share);
  std::optional<Guess> guess;
  if (isRead) guess = named ? readAs(*named, file) : guessed(file);
  // As every Latin letter in UTF-16 has them. A guess may have looked at all bytes.
  const bool zeros = storage.utf8.valid            ? storage.utf8.zeros
                     : guess && guess->coded.valid ? guess->coded.zeros
                                                   : text::holdsZero(bytes);
  const bool isAscii = storage.utf8.valid && storage.utf8.ascii;
  if (named && zeros && isUtf16(named->coding.encoding)) return said(*named);
  if (zeros && readsAsUtf16<Encoding::utf16Little>(bytes)) return as({{Encoding::utf16Little}, "UTF-16LE"});
  if (zeros && readsAsUtf16<Encoding::utf16Big>(bytes)) return as({{Encoding::utf16Big}, "UTF-16BE"});
  if (isAscii && named) return said(*named);
  if (isAscii) {
    requireNoShifts(bytes);
    return as(utf8Named());
  }
  if (storage.utf8.valid) return as(utf8Named());
  if (!mayBeOther) share = utf8ShareOf(bytes);
  if (isUtf8ButForAFew(share)) {
    storage.strayBytes = storage.guessed = true;
    return as(utf8Named());
  }
  if (named && guess) storage.coded = guess->coded;
  if (named) return said(*named);
  if (zeros || isMixedWithUtf8(share)) throw untold(!zeros);
  if (!isRead) guess = guessed(file);
  if (!guess) throw untold(false);
  storage.guessed = true;
  storage.coded = guess->coded;
  return as(guess->named);
}

/// Before anything looks at all of the bytes.
void requireReachable(ByteSpan bytes, std::size_t bytesPerUnit) {
  if (bytes.size() / bytesPerUnit >= static_cast<std::size_t>(text::kMaxLength))
    throw DocumentError(Problem::tooLarge,
                        "The text has more than two thousand million characters; split the file.");
}

}  // namespace

Storage detect(const base::Bytes& file, const formats::Hint& hint) {
  const ByteSpan bytes = file.view;
  const bool wholeUtf32 = bytes.size() % 4 == 0;
  if (wholeUtf32 && (startsWith(bytes, {0xFF, 0xFE, 0, 0}) || startsWith(bytes, {0, 0, 0xFE, 0xFF})))
    throw DocumentError(Problem::unsupported,
                        "The text is stored as UTF-32, which is not read here; save it as UTF-8 first.");
  const bool little = startsWith(bytes, {0xFF, 0xFE});
  const bool big = startsWith(bytes, {0xFE, 0xFF});
  requireReachable(bytes, little || big ? 2 : 1);
  if (little || big) {
    Storage storage;
    storage.coding.encoding = little ? Encoding::utf16Little : Encoding::utf16Big;
    storage.markLength = 2;
    storage.name = little ? "UTF-16LE" : "UTF-16BE";
    return storage;
  }
  if (startsWith(bytes, {0xEF, 0xBB, 0xBF})) {
    Storage storage;
    storage.markLength = 3;
    storage.name = "UTF-8";
    storage.utf8 = text::Utf8Text::survey(bytes.subspan(storage.markLength), file.owner);
    storage.strayBytes = !storage.utf8.valid;
    return storage;
  }
  return storageOf(file, hint);
}

}  // namespace pluvo::plain
