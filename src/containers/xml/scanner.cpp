#include "xml/scanner.h"

#include "base/utf.h"
#include "characters.h"
#include "declaration.h"
#include "tag_reader.h"
#include "words.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace pluvo::xml {

namespace {

constexpr std::string_view kCdata = "<![CDATA[";

std::string_view upTo(char stop, std::string_view bytes) { return bytes.substr(0, bytes.find(stop)); }

/// An element for a message, however long its name.
std::string shown(std::string_view name) {
  constexpr std::size_t kLongest = 100;
  if (name.size() <= kLongest) return "<" + std::string(name) + ">";
  std::size_t cut = kLongest;
  while (base::isUtf8Follower(name[cut])) --cut;  // not within a character
  return "<" + std::string(name.substr(0, cut)) + "…>";
}

constexpr std::size_t kWordSize = sizeof(std::uint64_t);

/// For names of at most a word, in front of which a word can be read.
bool sameShortName(const char* one, const char* other, Offset length) {
  static_assert(std::endian::native == std::endian::little);
  // The words end where the names do, so that characters in front of the names can be shifted out.
  const std::uint64_t difference =
      load<std::uint64_t>(one + length - kWordSize) ^ load<std::uint64_t>(other + length - kWordSize);
  return difference >> (kWordSize - length) * 8 == 0;
}

/// Most names are too short for a call to pay.
bool sameName(const char* begin, const char* one, const char* other, Offset length) {
  const bool isShort = length > 0 && length <= kWordSize &&
                       static_cast<std::size_t>(other - begin) >= kWordSize &&
                       static_cast<std::size_t>(one - begin) >= kWordSize;
  return isShort ? sameShortName(one, other, length) : std::memcmp(one, other, length) == 0;
}

}  // namespace

Scanner::Scanner(base::ByteSpan utf8, const Vocabulary& vocabulary, std::string partName,
                 const Limits& limits, Swept swept)
    : text_(reinterpret_cast<const char*>(utf8.data())),
      size_(static_cast<Offset>(utf8.size())),
      partName_(std::move(partName)),
      limits_(limits),
      names_(vocabulary, utf8.size()),
      tags_(utf8.size()) {
  if (utf8.size() > 0xffffffffU) refuseSize("is larger than ", 4, " GiB");
  if (swept == Swept::yes) return;
  if (const auto bad = findBadCharacter(rest(text_))) {
    fail(text_ + *bad, "there is a byte that is not UTF-8, or a character that XML does not allow");
  }
}

Token Scanner::next() {
  if (leaving_) {
    names_.forget(declaredOutside_);
    leaving_ = false;
  }
  begin_ = end_;
  if (begin_ == size_) return finish();
  if (text_[begin_] == '&') return scanReference();
  if (text_[begin_] != '<') return scanText();
  const char second = begin_ + 1 < size_ ? text_[begin_ + 1] : '\0';
  if (second == '/') return scanEndTag();
  if (second == '!') return scanExclamation();
  if (second == '?') return scanInstruction();
  return scanTag();
}

Token Scanner::finish() {
  if (!open_.empty()) {
    const OpenElement& last = open_.back();
    fail(here(), "it ends within the element " + shown(bytes(last.nameBegin, last.nameEnd)));
  }
  if (!rootSeen_) fail(here(), "it has no element");
  return Token::finish;
}

Token Scanner::scanText() {
  // The next '<' is kept, since many references may come before it.
  if (nextMarkup_ <= begin_) nextMarkup_ = begin_ + static_cast<Offset>(upTo('<', rest(here())).size());
  const std::string_view found = upTo('&', bytes(begin_, nextMarkup_));
  if (const std::size_t bad = found.find("]]>"); bad != std::string_view::npos) {
    fail(here() + bad, "there is a \"]]>\" in text");
  }
  end_ = begin_ + static_cast<Offset>(found.size());
  if (open_.empty() && !std::all_of(found.begin(), found.end(), [](char c) { return is(c, kBlank); })) {
    fail(here(), "there is text outside the outermost element");
  }
  return Token::text;
}

Token Scanner::scanReference() {
  const std::size_t length = readReference(rest(here()), codePoint_);
  if (length == 0) fail(here(), "there is an '&' that begins no character reference");
  if (open_.empty()) fail(here(), "there is text outside the outermost element");
  end_ = begin_ + static_cast<Offset>(length);
  return Token::reference;
}

Token Scanner::scanTag() {
  const auto declared = static_cast<std::uint32_t>(names_.declared());
  declares_ = false;
  if (!recallTag()) TagReader(*this).read();

  if (open_.empty()) {
    if (rootSeen_) fail(here(), "there is a second outermost element");
    rootSeen_ = true;
  }
  if (text_[end_ - 2] == '/') {
    declaredOutside_ = declared;
    leaving_ = declares_;
    return Token::empty;
  }
  if (open_.size() >= limits_.depth) refuseSize("has elements nested ", limits_.depth, " deep");
  open_.push_back({nameBegin_, nameEnd_, name_, space_, declared});
  return Token::start;
}

bool Scanner::recallTag() {
  const KnownTag* const known = tags_.recall(rest(here()), names_.scope());
  if (known == nullptr) return false;
  nameBegin_ = begin_ + 1;
  nameEnd_ = begin_ + known->name.end;
  end_ = begin_ + static_cast<Offset>(known->bytes.size());
  name_ = known->name.id;
  space_ = known->name.space;
  attributes_.clear();
  for (std::size_t i = 0; i < known->attributeCount; ++i)
    attributes_.emplace_back(known->attributes[i]).moveBy(begin_);
  return true;
}

Token Scanner::scanEndTag() {
  if (open_.empty()) fail(here(), "an end tag closes nothing");
  const OpenElement& element = open_.back();
  const Offset length = element.nameEnd - element.nameBegin;
  const char* at = here() + 2;
  if (rest(at).size() <= length || !sameName(text_, at, text_ + element.nameBegin, length) ||
      is(at[length], kNamePart)) {
    failUnclosed(element);
  }
  nameBegin_ = offset(at);
  nameEnd_ = nameBegin_ + length;
  at += length;
  if (*at != '>') {
    while (at != limit() && is(*at, kBlank)) ++at;
    if (at == limit() || *at != '>') fail(at, "an end tag is not closed");
  }
  end_ = offset(at) + 1;
  name_ = element.name;
  space_ = element.space;
  declaredOutside_ = element.declared;
  leaving_ = element.declared != names_.declared();
  attributes_.clear();
  open_.pop_back();
  return Token::end;
}

void Scanner::failUnclosed(const OpenElement& element) const {
  fail(here(), "the element " + shown(bytes(element.nameBegin, element.nameEnd)) +
                   " is not closed by its own end tag");
}

Token Scanner::scanExclamation() {
  const std::string_view text = rest(here());
  innerBegin_ = begin_;
  if (text.starts_with("<!--")) {
    const std::size_t dashes = text.find("--", 4);
    if (dashes == std::string_view::npos) fail(here(), "a comment is not closed");
    if (dashes + 2 >= text.size() || text[dashes + 2] != '>') fail(here(), "there is a \"--\" in a comment");
    innerBegin_ = begin_ + 4;
    innerEnd_ = begin_ + static_cast<Offset>(dashes);
    end_ = innerEnd_ + 3;
    return Token::comment;
  }
  if (text.starts_with(kCdata)) {
    if (open_.empty()) fail(here(), "there is text outside the outermost element");
    const std::size_t close = text.find("]]>", kCdata.size());
    if (close == std::string_view::npos) fail(here(), "a CDATA section is not closed");
    innerBegin_ = begin_ + static_cast<Offset>(kCdata.size());
    innerEnd_ = begin_ + static_cast<Offset>(close);
    end_ = innerEnd_ + 3;
    return Token::cdata;
  }
  if (text.starts_with("<!DOCTYPE")) {
    fail(here(),
         "it has a document type declaration, which documents must not have and which may hide an attack");
  }
  fail(here(), "there is markup that XML does not know");
}

Token Scanner::scanInstruction() {
  const std::string_view text = rest(here());
  const std::size_t close = text.find("?>", 2);
  if (close == std::string_view::npos) fail(here(), "a processing instruction is not closed");
  std::size_t targetEnd = 2;
  while (is(text[targetEnd], kNamePart)) ++targetEnd;
  const std::string_view target = text.substr(2, targetEnd - 2);
  if (!isNcName(target) || (targetEnd != close && !is(text[targetEnd], kBlank))) {
    fail(here(), "a processing instruction has no name");
  }
  innerBegin_ = begin_ + 2;
  innerEnd_ = begin_ + static_cast<Offset>(close);
  end_ = innerEnd_ + 2;
  const bool reserved = target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' &&
                        (target[2] | 0x20) == 'l';
  if (reserved) {
    if (begin_ != 0 || target != "xml")
      fail(here(), "there is an XML declaration that is not at the beginning");
    if (!isDeclaration(bytes(innerBegin_ + 3, innerEnd_))) fail(here(), "its XML declaration is not one");
  }
  return Token::instruction;
}

const Attribute* Scanner::attribute(NameId id) const {
  const auto at = std::find_if(attributes_.begin(), attributes_.end(),
                               [id](const Attribute& attribute) { return attribute.id == id; });
  return at == attributes_.end() ? nullptr : &*at;
}

std::string Scanner::value(const Attribute& attribute) const {
  std::string_view raw = rawValue(attribute);
  if (attribute.plain) return std::string(raw);
  std::string value;
  while (!raw.empty()) {
    std::size_t length = 1;
    if (raw.front() == '&') {
      char32_t c = 0;
      // Somebody may have written into a mapped file since the reference was seen: a step still advances.
      length = std::max<std::size_t>(readReference(raw, c), 1);
      base::appendUtf8(value, c);
    } else if (is(raw.front(), kBlank)) {
      if (raw.starts_with("\r\n")) length = 2;
      value.push_back(' ');
    } else {
      value.push_back(raw.front());
    }
    raw.remove_prefix(length);
  }
  return value;
}

void Scanner::skipElement() {
  const bool afterStart = nameBegin_ == begin_ + 1 && !open_.empty() && open_.back().nameBegin == nameBegin_;
  if (!afterStart) return;
  const std::size_t outside = open_.size() - 1;
  while (open_.size() > outside) next();
}

void Scanner::damaged(std::string_view what) const { fail(here(), what); }

void Scanner::fail(const char* at, std::string_view what) const {
  throw errors::DocumentError(errors::Problem::damaged,
                              "The document's part \"" + partName_ + "\" is damaged at byte " +
                                  std::to_string(offset(at)) + ": " + std::string(what) +
                                  "; let a word processor repair and save it, or get an intact copy.");
}

void Scanner::refuseSize(std::string_view before, std::size_t limit, std::string_view after) const {
  throw errors::DocumentError(errors::Problem::tooLarge,
                              "The document's part \"" + partName_ + "\" " + std::string(before) +
                                  std::to_string(limit) + std::string(after) +
                                  ", more than any sound document; if it is one, divide it.");
}

}  // namespace pluvo::xml
