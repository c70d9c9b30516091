#pragma once

#include "base/bytes.h"
#include "errors/document_error.h"
#include "xml/attribute.h"
#include "xml/name_resolver.h"
#include "xml/tag_memory.h"
#include "xml/vocabulary.h"

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::xml {

enum class Token : std::uint8_t {
  start,      ///< <a …>
  empty,      ///< <a …/>; no end follows
  end,        ///< </a>
  text,       ///< bytes between markup; ends before each reference, so that bytes and characters run alike
  reference,  ///< &amp; or &#10;: one character, see codePoint()
  cdata,      ///< <![CDATA[…]]>; the contents are innerBegin() to innerEnd()
  comment,
  instruction,  ///< <?…?>, the XML declaration too
  finish,       ///< the end of the bytes; comes again at every further call
};

struct Limits {
  std::size_t depth = 2048;             ///< elements within elements
  std::size_t attributes = 1024;        ///< of one element
  std::size_t namespacesInScope = 256;  ///< declarations that hold at one place
};

/// Whether a scanner has looked through the characters of these bytes before.
enum class Swept : bool { no, yes };

/// Pulls tokens out of UTF-8 XML and knows the bytes of each. Checks that it is well-formed with namespaces.
/// It has one root, and tags are balanced and named alike. Attributes are quoted and not repeated, with sound
/// references and no '<'. Prefixes are declared. Comments hold no "--", text no "]]>", and all only
/// characters that XML 1.0 allows. A DOCTYPE is refused, and with it every entity but the five predefined
/// ones. The declaration's encoding is not looked at (see encoding.h).
///
/// Line ends are left as they are: XML asks that CR LF and a lone CR in the bytes be read as LF.
///
/// Nothing is allocated per token. A fault is an errors::DocumentError: damaged, or tooLarge beyond the
/// limits and from 4 GiB. The message names the part and the byte.
class Scanner {
 public:
  /// The bytes and the vocabulary must outlive the scanner. Characters are checked here, in one sweep.
  Scanner(base::ByteSpan utf8, const Vocabulary& vocabulary, std::string partName, const Limits& limits = {},
          Swept swept = Swept::no);

  Token next();

  /// The bytes of the last token, markup included.
  Offset begin() const { return begin_; }
  Offset end() const { return end_; }
  /// The content of a CDATA section, a comment or an instruction, between its delimiters.
  Offset innerBegin() const { return innerBegin_; }
  Offset innerEnd() const { return innerEnd_; }
  std::string_view bytes(Offset from, Offset to) const { return {text_ + from, std::size_t{to} - from}; }

  /// Of a start, empty or end token.
  NameId name() const { return name_; }
  NamespaceId space() const { return space_; }
  std::string_view qualifiedName() const { return bytes(nameBegin_, nameEnd_); }
  /// Of a start or empty token: every attribute in order, namespace declarations too (as kOtherName). Valid
  /// until the next call of next().
  std::span<const Attribute> attributes() const { return attributes_; }
  /// Null when the tag has none of this name.
  const Attribute* attribute(NameId id) const;
  /// The value as XML reads it: references resolved, tabs and line ends as blanks.
  std::string value(const Attribute& attribute) const;
  std::string_view rawValue(const Attribute& attribute) const {
    return bytes(attribute.valueBegin, attribute.valueEnd);
  }

  /// Of a reference token.
  char32_t codePoint() const { return codePoint_; }

  /// Elements open after the last token; a start token counts itself, an end token no longer.
  std::size_t depth() const { return open_.size(); }
  /// The meaning of a prefix at the last token. Within a start or empty tag its own declarations count.
  /// kOtherNamespace where it is not declared, kNoNamespace for an empty prefix without default.
  NamespaceId namespaceOf(std::string_view prefix) const { return names_.namespaceOf(prefix); }
  /// The namespace itself, as it is declared; empty where it is not.
  std::string_view uriOf(std::string_view prefix) const { return names_.uriOf(prefix); }
  /// See NameResolver::forEachDeclaration.
  template <class Visit>
  void forEachDeclaration(Visit visit) const {
    names_.forEachDeclaration(visit);
  }
  /// The declarations in scope as a number: under the same number the same bytes are the same tokens.
  Scope scope() const { return names_.scope(); }
  /// The bytes after the last token.
  std::string_view ahead() const { return rest(text_ + end_); }
  /// Goes on at another place of these bytes, where a token begins and the same elements are open as after
  /// the last token.
  void resumeAt(Offset place) {
    end_ = place;
    nextMarkup_ = 0;
  }
  /// After a start token: moves to its end token. After any other: does nothing.
  void skipElement();

  /// Throws an error about the last token, worded like the scanner's own.
  [[noreturn]] void damaged(std::string_view what) const;

 private:
  friend class TagReader;

  struct OpenElement {
    Offset nameBegin, nameEnd;
    NameId name;
    NamespaceId space;
    std::uint32_t declared;  ///< declarations in scope outside it
  };

  Token scanText();
  Token scanReference();
  Token scanTag();
  Token scanEndTag();
  Token scanExclamation();
  Token scanInstruction();
  Token finish();

  bool recallTag();
  std::string_view uriOf(const Attribute& attribute) const { return names_.uri(attribute.binding); }

  const char* here() const { return text_ + begin_; }
  const char* limit() const { return text_ + size_; }
  Offset offset(const char* at) const { return static_cast<Offset>(at - text_); }
  std::string_view rest(const char* at) const { return {at, static_cast<std::size_t>(limit() - at)}; }
  [[noreturn]] void fail(const char* at, std::string_view what) const;
  [[noreturn]] void failUnclosed(const OpenElement& element) const;
  [[noreturn]] void refuseSize(std::string_view before, std::size_t limit, std::string_view after) const;

  const char* text_;
  Offset size_;
  std::string partName_;
  Limits limits_;
  NameResolver names_;
  TagMemory tags_;

  Offset begin_ = 0, end_ = 0;
  Offset innerBegin_ = 0, innerEnd_ = 0;
  Offset nameBegin_ = 0, nameEnd_ = 0;
  NameId name_ = kOtherName;
  NamespaceId space_ = kNoNamespace;
  char32_t codePoint_ = 0;
  Offset nextMarkup_ = 0;  ///< the first '<' after the last text, or the end

  std::vector<Attribute> attributes_;
  std::vector<OpenElement> open_;
  /// Declarations of the last token's element, when it has ended, hold until the next token.
  std::uint32_t declaredOutside_ = 0;
  bool leaving_ = false;
  bool declares_ = false;  ///< the last tag declares a namespace
  bool rootSeen_ = false;
  std::deque<std::string> decodedUris_;
};

}  // namespace pluvo::xml
