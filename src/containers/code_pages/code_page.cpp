#include "code_pages/code_page.h"

#include "base/utf.h"
#include "own_tables.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <utility>

namespace pluvo::code_pages {

using base::ByteSpan;

/// iconv from the encoding and back, one character at a time.
class CodePage::Converter {
 public:
  explicit Converter(const std::string& name)
      : decoder_(iconv_open("UTF-32LE", name.c_str())), encoder_(iconv_open(name.c_str(), "UTF-32LE")) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (decoder_ != none()) iconv_close(decoder_);
    if (encoder_ != none()) iconv_close(encoder_);
  }

  bool exists() const { return decoder_ != none() && encoder_ != none(); }

  enum class What : std::uint8_t { character, beginning, nothing, silent };
  struct Decoded {
    What what = What::nothing;
    char32_t point = 0;
  };

  /// The meaning of exactly these bytes. Silent: they say something, but are no character.
  Decoded decode(ByteSpan bytes) {
    std::array<char, 8> in = {};
    std::array<std::uint8_t, 32> out = {};
    std::ranges::copy(bytes, in.begin());
    std::size_t inLeft = bytes.size();
    std::size_t outLeft = out.size();
    const int error =
        convert(decoder_, decoderIsInitial_, in.data(), inLeft, reinterpret_cast<char*>(out.data()), outLeft);
    if (error != 0 || inLeft != 0) return {error == EINVAL ? What::beginning : What::nothing};
    const std::size_t count = (out.size() - outLeft) / 4;
    if (count == 0) return {What::silent};
    const char32_t point =
        out[0] | static_cast<char32_t>(out[1]) << 8U | static_cast<char32_t>(out[2]) << 16U;
    if (count > 1 || base::isSurrogate(point) || point >= kFirstMark) return {};
    return {What::character, point};
  }

  std::optional<Encoded> encode(char32_t point) {
    std::array<char, 4> in = {static_cast<char>(point & 0xFF), static_cast<char>(point >> 8 & 0xFF),
                              static_cast<char>(point >> 16 & 0xFF), 0};
    std::array<std::uint8_t, 32> out = {};
    std::size_t inLeft = in.size();
    std::size_t outLeft = out.size();
    const int error =
        convert(encoder_, encoderIsInitial_, in.data(), inLeft, reinterpret_cast<char*>(out.data()), outLeft);
    Encoded encoded;
    const std::size_t count = out.size() - outLeft;
    if (error != 0 || count == 0 || count > encoded.bytes.size()) return std::nullopt;
    std::copy_n(out.begin(), count, encoded.bytes.begin());
    encoded.count = static_cast<std::uint8_t>(count);
    return encoded;
  }

 private:
  static iconv_t none() { return reinterpret_cast<iconv_t>(-1); }  // NOLINT(performance-no-int-to-ptr)

  /// Converts from the initial state, and flushes characters held back, which leads to that state again.
  /// Returns an error or 0.
  static int convert(iconv_t converter, bool& isInitial, char* in, std::size_t& inLeft, char* out,
                     std::size_t& outLeft) {
    constexpr auto kFailed = static_cast<std::size_t>(-1);
    if (!isInitial) iconv(converter, nullptr, nullptr, nullptr, nullptr);
    isInitial = false;
    if (iconv(converter, &in, &inLeft, &out, &outLeft) == kFailed) return errno;
    if (iconv(converter, nullptr, nullptr, &out, &outLeft) == kFailed) return errno;
    isInitial = true;
    return 0;
  }

  iconv_t decoder_;
  iconv_t encoder_;
  bool decoderIsInitial_ = true;
  bool encoderIsInitial_ = true;
};

CodePage::CodePage(std::unique_ptr<Converter> converter) : converter_(std::move(converter)) {}
CodePage::~CodePage() = default;

CodePage::Conversion CodePage::named(const std::string& iconvName) {
  struct Made {
    Kind kind = Kind::unknown;
    std::unique_ptr<const CodePage> page;
  };
  static std::mutex mutex;
  static std::map<std::string, Made> all;  // as many as iconv has, since no other name leaves anything
  const std::lock_guard lock(mutex);
  if (const auto found = all.find(iconvName); found != all.end())
    return {found->second.kind, found->second.page.get()};
  auto converter = std::make_unique<Converter>(iconvName);
  const auto* const own = std::ranges::find(kOwnTables, iconvName, &OwnTable::name);
  if (!converter->exists() && own == kOwnTables.end()) return {};
  const bool isOurs = !converter->exists();
  std::unique_ptr<CodePage> page(new CodePage(isOurs ? nullptr : std::move(converter)));
  Made& made = all[iconvName];
  made.kind = isOurs ? page->takeOver(own->upper) : page->makeOut();
  if (made.kind == Kind::usable) made.page = std::move(page);
  return {made.kind, made.page.get()};
}

CodePage::Kind CodePage::makeOut() {
  using What = Converter::What;
  constexpr std::uint8_t kEscape = 0x1B;
  reverse_.resize(0x10000);
  for (unsigned first = 0; first < 256; ++first) {
    std::array<std::uint8_t, 2> bytes = {static_cast<std::uint8_t>(first), 0};
    const auto single = converter_->decode(ByteSpan(bytes).first(1));
    std::uint32_t& place = singles_[first];
    place = kNone;
    if (single.what == What::silent) return Kind::stateful;
    if (single.what == What::character && single.point <= 0xFFFF) {
      place = single.point;
      noteReverse(place, first);
    }
    keepsAscii_ = keepsAscii_ && (place < 0x80 ? place == first : first >= 0x80);
    if (single.what != What::beginning) continue;
    if (first == kEscape) return Kind::stateful;
    if (first == 0) return Kind::notByBytes;
    place = kLead + static_cast<std::uint32_t>(pairs_.size());
    auto& row = pairs_.emplace_back();
    for (unsigned second = 0; second < 256; ++second) {
      bytes[1] = static_cast<std::uint8_t>(second);
      const auto pair = converter_->decode(bytes);
      if (pair.what == What::silent) return Kind::stateful;
      row[second] = pair.what == What::character   ? static_cast<std::uint32_t>(pair.point)
                    : pair.what == What::beginning ? kLonger
                                                   : kNone;
      if (pair.what == What::character) noteReverse(row[second], first << 8U | second);
    }
  }
  return singles_[0] == 0 ? Kind::usable : Kind::notByBytes;
}

CodePage::Kind CodePage::takeOver(std::u16string_view upper) {
  reverse_.resize(0x10000);
  for (unsigned byte = 0; byte < 256; ++byte) {
    singles_[byte] = byte < 0x80 ? byte : upper[byte - 0x80U];
    noteReverse(singles_[byte], byte);
  }
  return Kind::usable;
}

/// Of several ways to write a character the encoding's own is taken.
void CodePage::noteReverse(std::uint32_t point, unsigned bytes) {
  if (point > 0xFFFF) return;
  std::uint16_t& place = reverse_[point];
  const bool first = place == 0;
  if (first) place = static_cast<std::uint16_t>(bytes);
  if (first || converter_ == nullptr) return;
  const auto own = converter_->encode(point);
  if (!own || own->count > 2) return;
  const unsigned value =
      own->count == 1 ? own->bytes[0] : static_cast<unsigned>(own->bytes[0] << 8U | own->bytes[1]);
  if (value == bytes) place = static_cast<std::uint16_t>(bytes);
}

Character CodePage::firstOfMany(ByteSpan bytes) const {
  const std::lock_guard lock(mutex_);
  for (std::size_t count = 3; count <= std::min<std::size_t>(bytes.size(), 4); ++count) {
    const auto decoded = converter_->decode(bytes.first(count));
    if (decoded.what == Converter::What::character) return {decoded.point, static_cast<std::uint8_t>(count)};
    if (decoded.what != Converter::What::beginning) break;
  }
  return strayByte(bytes[0]);
}

std::optional<CodePage::Encoded> CodePage::encoded(char32_t point) const {
  if (point > 0xFFFF || (point != 0 && reverse_[point] == 0)) return encodedByConverter(point);
  const unsigned bytes = reverse_[point];
  const auto low = static_cast<std::uint8_t>(bytes & 0xFFU);
  if (bytes < 0x100) return Encoded{{low}, 1};
  return Encoded{{static_cast<std::uint8_t>(bytes >> 8U), low}, 2};
}

std::optional<CodePage::Encoded> CodePage::encodedByConverter(char32_t point) const {
  if (converter_ == nullptr) return std::nullopt;
  std::optional<Encoded> encoded;
  {
    const std::lock_guard lock(mutex_);
    encoded = converter_->encode(point);
  }
  if (!encoded) return std::nullopt;
  const Character again = first(ByteSpan(encoded->bytes).first(encoded->count));
  const bool same = again.valid && again.codePoint == point && again.bytes == encoded->count;
  return same ? encoded : std::nullopt;
}

}  // namespace pluvo::code_pages
