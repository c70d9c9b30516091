#include "guess.h"

#include "byte_codings.h"
#include "reading_sense.h"
#include "sample.h"
#include "token.h"

#include <uchardet/uchardet.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <vector>

namespace pluvo::plain {

using base::ByteSpan;

namespace {

/// Enough to tell by, and little enough to cost nothing.
constexpr std::size_t kSample = std::size_t{64} * 1024;

/// The detector's answer. It knows frequencies of letters, but always gives some answer.
std::string detectorsAnswer(ByteSpan sample) {
  const std::unique_ptr<uchardet, decltype(&uchardet_delete)> detector(uchardet_new(), &uchardet_delete);
  const bool taken =
      uchardet_handle_data(detector.get(), reinterpret_cast<const char*>(sample.data()), sample.size()) == 0;
  if (!taken) return {};
  uchardet_data_end(detector.get());
  return uchardet_get_charset(detector.get());
}

/// How much has to speak for an answer.
struct Trust {
  std::string_view answer;                  ///< the detector's
  std::size_t least;                        ///< letters and signs that fit
  std::array<std::string_view, 2> as = {};  ///< encodings read in its place, the first that has every byte
};

constexpr std::size_t kFewLatin = 4;
constexpr std::size_t kFewOther = 8;
constexpr std::size_t kFewWide = 3;
/// Of encodings that are hardly met. The detector names them for want of anything better.
constexpr std::size_t kRare = 60;

constexpr std::array kTrusted = {
    Trust{"WINDOWS-1252", 1, {"Windows-1252"}},
    Trust{"ISO-8859-1", 1, {"Windows-1252"}},
    Trust{"ISO-8859-15", kFewLatin, {"ISO-8859-15"}},
    Trust{"WINDOWS-1250", kFewLatin, {"Windows-1250"}},
    Trust{"ISO-8859-2", kFewLatin, {"ISO-8859-2"}},
    Trust{"WINDOWS-1254", kFewLatin, {"Windows-1254"}},
    Trust{"ISO-8859-9", kFewLatin, {"Windows-1254"}},
    Trust{"WINDOWS-1257", 2 * kFewLatin, {"Windows-1257"}},
    Trust{"WINDOWS-1251", kFewOther, {"Windows-1251"}},
    Trust{"KOI8-R", kFewOther, {"KOI8-R"}},
    Trust{"ISO-8859-5", kFewOther, {"ISO-8859-5"}},
    Trust{"IBM866", kFewOther, {"IBM866"}},
    Trust{"WINDOWS-1253", kFewOther, {"Windows-1253"}},
    Trust{"ISO-8859-7", kFewOther, {"ISO-8859-7"}},
    Trust{"WINDOWS-1255", kFewOther, {"Windows-1255"}},
    Trust{"ISO-8859-8", kFewOther, {"ISO-8859-8", "Windows-1255"}},
    Trust{"WINDOWS-1256", kFewOther, {"Windows-1256"}},
    Trust{"TIS-620", kFewOther, {"Windows-874"}},
    Trust{"ISO-8859-11", kFewOther, {"Windows-874"}},
    Trust{"SHIFT_JIS", kFewWide, {"Shift_JIS"}},
    Trust{"EUC-JP", kFewWide, {"EUC-JP"}},
    Trust{"GB18030", kFewWide, {"GBK", "GB18030"}},
    Trust{"BIG5", kFewWide, {"Big5", "Big5-HKSCS"}},
    Trust{"EUC-KR", kFewWide, {"EUC-KR"}},
    Trust{"UHC", kFewWide, {"EUC-KR"}},
};

/// As long as all of it decodes.
std::optional<Guess> decoded(const base::Bytes& file, const Named& named) {
  if (const text::ByteCoding* const coding = byteCodingOf(named.coding)) {
    auto coded = text::CodedText::survey(file.view, file.owner, *coding);
    if (coded.valid) return Guess{named, std::move(coded)};
  }
  bool sound = true;
  for (ByteSpan rest = file.view; sound && !rest.empty();) {
    const Character character = named.coding.page->first(rest);
    sound = character.valid;
    rest = rest.subspan(character.bytes);
  }
  return sound ? std::optional(Guess{named}) : std::nullopt;
}

/// Whether it makes sense to read the sample so.
bool makesSense(ByteSpan sample, const Named& named, std::size_t least) {
  const bool western = named.coding.encoding == Encoding::windows1252;
  const Sense sense = senseOf(sample, named.coding, western ? Letters::western : Letters::all);
  return sense.fits >= least && sense.jars * 4 <= sense.fits;
}

/// Whether Windows-1252 makes the same of the sample, so that nothing hangs on which it is.
bool readsAsWestern(ByteSpan sample, const CodePage& page) {
  ByteSpan western = sample;
  while (!sample.empty() && !western.empty()) {
    const Token token = firstToken<Encoding::codePage>(sample, &page);
    const Token asWell = firstToken<Encoding::windows1252>(western, nullptr);
    if (token.codePoint != asWell.codePoint) return false;
    sample = sample.subspan(token.bytes);
    western = western.subspan(asWell.bytes);
  }
  return sample.empty() && western.empty();
}

/// Where every byte is assigned.
std::optional<Guess> asWestern(const base::Bytes& file) {
  const Named western = windows1252Named();
  auto coded = text::CodedText::survey(file.view, file.owner, *byteCodingOf(western.coding));
  return coded.unassigned ? std::nullopt : std::optional(Guess{western, std::move(coded)});
}

/// The encoding read in the place of another, where it has all the bytes.
std::optional<Guess> readAs(const Trust& trust, const base::Bytes& file) {
  for (const std::string_view name : trust.as) {
    if (name.empty()) continue;
    const auto named = knownEncoding(name);
    if (!named) continue;
    const bool western = named->coding.encoding == Encoding::windows1252;
    if (auto guess = western ? asWestern(file) : decoded(file, *named)) return guess;
  }
  return std::nullopt;
}

}  // namespace

std::optional<Guess> guessed(const base::Bytes& file) {
  const std::vector<std::uint8_t> sample = telling(file.view, kSample);
  const std::string answer = detectorsAnswer(sample);
  const auto* const known = std::ranges::find(kTrusted, answer, &Trust::answer);
  const Named western = windows1252Named();
  if (known == kTrusted.end()) {
    auto named = answer.empty() ? std::nullopt : knownEncoding(answer);
    const bool byBytes = named && named->coding.encoding == Encoding::codePage;
    if (byBytes && makesSense(sample, *named, kRare))
      if (auto guess = decoded(file, *named)) return guess;
    return makesSense(sample, western, 1) ? asWestern(file) : std::nullopt;
  }
  auto guess = readAs(*known, file);
  if (!guess) return std::nullopt;
  const Named& named = guess->named;
  if (named.coding.page != nullptr && readsAsWestern(sample, *named.coding.page) &&
      makesSense(sample, western, 1))
    if (auto asWell = asWestern(file)) return asWell;
  if (makesSense(sample, named, known->least)) return guess;
  return std::nullopt;
}

}  // namespace pluvo::plain
