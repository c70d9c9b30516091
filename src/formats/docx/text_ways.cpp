#include "text_ways.h"

#include "text_decoding.h"

#include <bit>
#include <cstring>
#include <utility>

namespace pluvo::docx {

using xml::Token;

namespace {

constexpr std::size_t kMost = 16;
constexpr std::size_t kLongest = 512;
constexpr std::size_t kTail = sizeof(std::uint64_t);

std::uint64_t wordAt(const char* place) {
  std::uint64_t word = 0;
  std::memcpy(&word, place, kTail);
  return word;
}
/// The word that ends there.
std::uint64_t wordBefore(const char* end) { return wordAt(end - kTail); }

}  // namespace

TextWays::TextWays(Walk& walk, const PropertiesReader& properties)
    : walk_(walk), scanner_(walk.scanner), properties_(properties) {
  ways_.reserve(kMost);
}

/// A tag that is neither a start nor an end fits every way.
void TextWays::step(Token token) {
  if (token != Token::end && !opens(token)) return;
  const Name name = nameOf(scanner_);
  const auto goOn = [&](bool isOnTheWay, Followed next) { followed_ = isOnTheWay ? next : Followed::none; };
  const bool startsRun = token == Token::start && name == Name::r;
  switch (followed_) {
    case Followed::text:
      told_ = {};
      return goOn(token == Token::end, Followed::runClosed);
    case Followed::runClosed:
      told_.closesParagraph = token == Token::end && name == Name::p;
      return told_.closesParagraph ? goOn(true, Followed::paragraphClosed)
                                   : goOn(startsRun, Followed::runOpen);
    case Followed::paragraphClosed:
      return goOn(token == Token::start && name == Name::p, Followed::paragraphOpen);
    case Followed::paragraphOpen:
      if (opens(token) && name == Name::pPr) return goOn(true, Followed::paragraphProperties);
      return goOn(startsRun, Followed::runOpen);
    case Followed::paragraphProperties:
      told_.paragraph = properties_.last();
      return goOn(startsRun, Followed::runOpen);
    case Followed::runOpen:
      if (opens(token) && name == Name::rPr) return goOn(true, Followed::properties);
      [[fallthrough]];
    default:
      if (token != Token::start || (name != Name::t && name != Name::delText)) followed_ = Followed::none;
  }
}

void TextWays::remember() {
  const std::vector<Walk::Open>& stack = walk_.stack;
  const bool isWhole = followed_ == Followed::runOpen || followed_ == Followed::properties;
  if (!isWhole || scanner_.scope() != scope_) return;
  const std::string_view bytes = scanner_.bytes(begin_, scanner_.end());
  const std::size_t around = told_.closesParagraph ? 3 : 2;
  if (bytes.size() < kTail || bytes.size() > kLongest || stack.size() < around) return;
  Way way;
  way.bytes = bytes;
  way.last = wordBefore(bytes.data() + bytes.size());
  way.scope = scope_;
  way.closing.append("</").append(scanner_.qualifiedName()).append(">");
  if (way.closing.size() <= kTail) {
    static_assert(std::endian::native == std::endian::little);
    way.closingMask = ~std::uint64_t{0} >> (kTail - way.closing.size()) * 8;
    std::memcpy(&way.closingWord, way.closing.data(), way.closing.size());
  }
  way.textTag = scanner_.end() - scanner_.begin();
  way.preservesAround = stack[stack.size() - around].preserves;
  way.preservesInParagraph = stack[stack.size() - 2].preserves;
  way.preservesInRun = stack.back().preserves;
  way.preserves = walk_.preserves();
  way.told = told_;
  if (followed_ == Followed::properties) way.told.run = properties_.last();
  if (ways_.size() < kMost) {
    ways_.push_back(std::move(way));
  } else {
    ways_[next_] = std::move(way);
    next_ = (next_ + 1) % kMost;
  }
}

const TextWays::Way* TextWays::recall(std::string_view ahead) const {
  for (const Way& way : ways_) {
    const std::size_t size = way.bytes.size();
    if (size <= ahead.size() && way.last == wordBefore(ahead.data() + size) && way.scope == scope_ &&
        std::memcmp(way.bytes.data(), ahead.data(), size - kTail) == 0)
      return &way;
  }
  return nullptr;
}

bool TextWays::closes(const Way& way, std::string_view ahead) {
  if (way.closingMask == 0 || ahead.size() < kTail) return ahead.starts_with(way.closing);
  return (wordAt(ahead.data()) & way.closingMask) == way.closingWord;
}

/// Whether it begins in such a place as the one that it was met in.
bool TextWays::fits(const Way& way) const {
  const std::vector<Walk::Open>& stack = walk_.stack;
  if (stack.size() < 3 || stack.back().tag.name != Name::r) return false;
  if (!way.told.closesParagraph) return stack[stack.size() - 2].preserves == way.preservesAround;
  return stack[stack.size() - 2].tag.name == Name::p &&
         stack[stack.size() - 3].preserves == way.preservesAround;
}

void TextWays::goThrough(TextReader& reader) {
  followed_ = Followed::text;
  while (true) {
    begin_ = scanner_.end();
    scope_ = scanner_.scope();
    std::string_view ahead = scanner_.ahead();
    const Way* const way = recall(ahead);
    if (way == nullptr || !fits(*way)) return;
    enter(*way);
    ahead.remove_prefix(way->bytes.size());
    const Offset textBegin = begin_ + static_cast<Offset>(way->bytes.size());
    const std::size_t length = plainLength(ahead);
    if (length != std::string_view::npos && closes(*way, ahead.substr(length))) {
      std::string_view text = ahead.substr(0, length);
      if (!way->preserves) text = withoutOuterBlanks(text);
      scanner_.resumeAt(textBegin + static_cast<Offset>(length + way->closing.size()));
      walk_.events->nextText(way->told, text);
      walk_.advance(text.size());
      continue;
    }
    walk_.events->nextText(way->told, {});
    scanner_.resumeAt(textBegin - static_cast<Offset>(way->textTag));
    const TextElement& element = reader.read(scanner_.next());
    if (element.length() == 0) continue;
    walk_.events->text(element);
    walk_.advance(element.length());
  }
}

void TextWays::enter(const Way& way) {
  Walk::Open& run = walk_.stack.back();
  if (way.told.closesParagraph) {
    Walk::Open& paragraph = walk_.stack[walk_.stack.size() - 2];
    walk_.advance(1);
    paragraph.preserves = way.preservesInParagraph;
    paragraph.from = walk_.position;
  }
  run.preserves = way.preservesInRun;
  run.from = walk_.position;
}

}  // namespace pluvo::docx
