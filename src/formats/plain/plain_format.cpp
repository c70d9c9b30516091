#include "plain/plain_format.h"

#include "byte_codings.h"
#include "decoder.h"
#include "formats/signature.h"
#include "plain_source.h"

#include <algorithm>
#include <array>
#include <memory>

namespace pluvo::plain {

using base::ByteSpan;

namespace {

constexpr std::array<std::string_view, 8> kExtensions = {"", "txt", "text", "asc", "log", "md", "csv", "tsv"};

/// Under a name of Word's a text is one only without the bytes that documents of other programs have.
bool isNothingButText(ByteSpan bytes) {
  const std::string_view front(reinterpret_cast<const char*>(bytes.data()),
                               std::min<std::size_t>(bytes.size(), 2));
  const bool isUtf16 = front == "\xFF\xFE" || front == "\xFE\xFF";
  return !bytes.empty() && (isUtf16 || std::ranges::none_of(bytes, [](std::uint8_t byte) {
                              return byte < 0x20 && (byte < '\t' || byte > '\r') && byte != 0x1A;
                            }));
}

/// Of a text in UTF-8.
LineEnd commonLineEndOf(const Storage& storage) {
  return commonLineEnd({storage.utf8.lineFeeds, storage.utf8.pairs, storage.utf8.carriageReturns}, storage);
}

/// Of a text in another encoding than UTF-8 whose units have bytes of their own. Half of a unit at the end is
/// left out.
text::CodedText::Survey codedOf(ByteSpan content, const base::Bytes& bytes, const Storage& storage) {
  if (storage.coded.valid) return storage.coded;
  const text::ByteCoding* const coding = byteCodingOf(storage.coding);
  if (coding == nullptr) return {};
  const std::size_t size = content.size() - content.size() % coding->leastBytes();
  return text::CodedText::survey(content.first(size), bytes.owner, *coding);
}

}  // namespace

bool PlainFormat::recognises(ByteSpan bytes, std::string_view extension) const {
  if (formats::signatureOf(bytes)) return false;
  const bool isOfWord = extension == "doc" || extension == "dot";
  return isOfWord ? isNothingButText(bytes) : std::ranges::find(kExtensions, extension) != kExtensions.end();
}

std::span<const std::string_view> PlainFormat::extensions() const { return kExtensions; }

formats::Opened PlainFormat::read(base::Bytes bytes, const formats::Hint& hint) const {
  const Storage storage = detect(bytes, hint);
  const ByteSpan content = bytes.view.subspan(storage.markLength);
  const auto opened = [&](text::OriginalText text, LineEnd lineEnd, ByteMap map) {
    formats::Opened result;
    result.stories.push_back(document::plainContent(std::move(text)));
    result.source = std::make_unique<PlainSource>(std::move(bytes), storage, lineEnd, std::move(map));
    result.encoding = storage.name;
    result.isEncodingGuessed = storage.guessed;
    result.again = storage.guessed ? formats::Hint{storage.name} : hint;
    return result;
  };
  static_assert(base::Bytes::kBehind == text::kParagraphMark);
  if (storage.utf8.text != nullptr && storage.coding.encoding == Encoding::utf8) {
    return opened(text::OriginalText(storage.utf8.text), commonLineEndOf(storage),
                  ByteMap(storage.utf8.text));
  }
  if (!liesAsText(storage)) {
    const auto coded = codedOf(content, bytes, storage);
    if (coded.valid)
      return opened(text::OriginalText(coded.text),
                    commonLineEnd({coded.lineFeeds, coded.pairs, coded.carriageReturns}, storage),
                    ByteMap(coded.text));
  }
  if (liesAsText(storage)) {
    text::OriginalText text(ByteSpan(content.data(), content.size() + 1), true, bytes.owner);
    const LineEnd lineEnd = commonLineEndOf(storage);
    return opened(std::move(text), lineEnd, ByteMap());
  }
  Decoded decoded = decode(content, storage, bytes);
  return opened(std::move(decoded.text), decoded.commonLineEnd, std::move(decoded.map));
}

}  // namespace pluvo::plain
