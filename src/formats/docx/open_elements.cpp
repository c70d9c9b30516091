#include "open_elements.h"

#include "control_properties.h"
#include "run_content.h"

namespace pluvo::docx {

OpenElements::OpenElements(EditedPart& part, const xml::Scanner& scanner,
                           std::function<std::string()> placeholderStyle)
    : part_(part), scanner_(scanner), placeholderStyle_(std::move(placeholderStyle)) {}

void OpenElements::copyTo(Offset to) {
  const Offset from = part_.output.copied();
  const std::size_t size = part_.output.text().size();
  for (auto open = opens_.rbegin(); open != opens_.rend(); ++open) {
    const auto note = [&](std::size_t& out, Offset offset) {
      if (out == OpenElement::kNowhere && from <= offset && offset <= to) out = size + (offset - from);
    };
    note(open->outInner, open->inner);
    note(open->outBegin, open->tag.extent.begin);
    if (open->tag.extent.begin < from) break;
  }
  part_.output.copyTo(to);
}

void OpenElements::close(Extent endTag) {
  OpenElement& closing = opens_.back();
  std::string& out = part_.output.text();
  if (!closing.kept && (closing.lost || closing.reopened) && !closing.toComplex) {
    copyTo(endTag.begin);
    out.resize(closing.outBegin);
    out += closing.markers;
    part_.output.leaveOutTo(endTag.end);
    closing.lost = true;
    closing.touched = true;
  } else if (closing.toComplex || (closing.bare && closing.tag.name == Name::fldSimple)) {
    copyTo(endTag.begin);
    part_.output.leaveOutTo(endTag.end);
  } else if (closing.expanded) {
    writeEndTag(closing);
  } else if (closing.touched) {
    copyTo(endTag.begin);
    if (closing.textChanged) removePassed(closing);
    unbind(closing);
  }
  const OpenElement closed = pop();
  if (!opens_.empty()) passOn(closed);
}

OpenElement OpenElements::pop() {
  OpenElement innermost = std::move(opens_.back());
  opens_.pop_back();
  return innermost;
}

void OpenElements::passOn(const OpenElement& closed) {
  OpenElement& around = opens_.back();
  around.kept = around.kept || closed.kept;
  around.lost = around.lost || closed.lost;
  around.touched = around.touched || closed.touched;
  around.textChanged = around.textChanged || closed.textChanged;
  if (!closed.kept) around.markers += closed.markers;
}

void OpenElements::loseText() {
  OpenElement& open = opens_.back();
  open.lost = open.touched = open.textChanged = true;
}

void OpenElements::expand(OpenElement& open) {
  if (!open.tag.empty || open.expanded) return;
  copyTo(open.tag.extent.begin);
  std::string& out = part_.output.text();
  open.outBegin = out.size();
  out += openedTag(part_.output.source(open.tag.extent));
  open.outInner = out.size();
  open.expanded = true;
  part_.output.leaveOutTo(open.tag.extent.end);
}

void OpenElements::writeEndTag(const OpenElement& open) {
  part_.output.text() += "</" + std::string(qualifiedName(open.tag)) + ">";
}

void OpenElements::removePassed(OpenElement& open) {
  for (auto passed = open.passed.rbegin(); passed != open.passed.rend(); ++passed) {
    part_.output.text().erase(passed->first, passed->second - passed->first);
  }
  open.passed.clear();
}

/// A control of which the text changed no longer says what that denies.
void OpenElements::unbind(OpenElement& open) {
  if (open.tag.name != Name::sdt || !open.textChanged || open.content == 0 || open.reopened) return;
  const std::string_view properties = part_.output.source(open.inner, open.content);
  const std::string changed = forChangedText(properties, markup(), open.breaksLines);
  std::string& out = part_.output.text();
  if (showsPlaceholder(properties)) {
    if (!knownPlaceholderStyle_) knownPlaceholderStyle_ = placeholderStyle_();
    const std::size_t content = open.outInner + properties.size();
    const std::string plain =
        withoutPlaceholderLook(std::string_view(out).substr(content), *knownPlaceholderStyle_);
    out.replace(content, out.size() - content, plain);
  }
  out.replace(open.outInner, properties.size(), changed);
}

void OpenElements::pushParagraph(const Tag& tag) {
  opens_.emplace_back(tag);
  paragraph_ = opens_.size() - 1;
}

OpenElement OpenElements::popParagraph() {
  paragraph_ = 0;
  return pop();
}

void OpenElements::closeFrom(std::size_t from) {
  std::string& out = part_.output.text();
  for (std::size_t i = opens_.size(); i-- > from;) {
    OpenElement& open = opens_[i];
    OpenElement& around = opens_[i - 1];
    if (open.bare || open.toComplex) {
      // Without tags of its own, its contents stand in the element around it.
      around.kept = around.kept || open.kept;
      if (open.toComplex || open.tag.name != Name::fldSimple) open.kept = false;
      continue;
    }
    around.textChanged = around.textChanged || open.textChanged;
    removePassed(open);
    if (open.tag.name == Name::fldSimple) {
      out.replace(open.outBegin, open.outInner - open.outBegin, fieldBeginning(open.instruction, markup()));
      open.toComplex = around.kept = true;
      open.kept = false;
    } else if (open.kept) {
      unbind(open);
      writeEndTag(open);
      around.kept = true;
    } else {
      out.resize(open.outBegin);
      out += open.markers;
      around.markers += open.markers;
    }
  }
}

void OpenElements::openAgainFrom(std::size_t from) {
  std::string& out = part_.output.text();
  for (std::size_t i = from; i < opens_.size(); ++i) {
    OpenElement& open = opens_[i];
    if (open.bare || open.toComplex) continue;
    open.outBegin = out.size();
    out += tagToOpenAgain(i);
    open.outInner = out.size();
    open.kept = open.lost = false;
    open.reopened = true;
    open.markers.clear();
  }
}

std::string OpenElements::tagToOpenAgain(std::size_t index) {
  const OpenElement& open = opens_[index];
  if (open.tag.name == Name::r || open.tag.name == Name::ruby)
    return part_.identifiers.withFreshIds(
        part_.output.source(open.tag.extent.begin, opens_[index + 1].tag.extent.begin));
  std::string tag(part_.output.source(open.tag.extent));
  // A content control is known by its id; the copy must not share it.
  if (open.tag.name == Name::sdt && index + 1 < opens_.size())
    tag += withoutIdentity(
        forChangedText(part_.output.source(open.inner, open.content), markup(), open.breaksLines));
  return part_.identifiers.withFreshIds(tag);
}

void OpenElements::holdLineBreaks(std::u16string_view units) {
  if (part_.story.controls().empty() || units.find(text::kLineBreak) == units.npos) return;
  allowLineBreaks();
}

void OpenElements::allowLineBreaks() {
  for (OpenElement& open : opens_) open.breaksLines = true;
}

/// A document in the default namespace declares a prefix for its attributes.
const Markup& OpenElements::markup() const {
  const Tag& tag = run_ ? *run_ : opens_[paragraph_].tag;
  if (tag.extent.begin == markupTag_ && markupTag_ != 0) return markup_;
  markupTag_ = tag.extent.begin;
  const std::string_view name = qualifiedName(tag);
  const std::string_view prefix = name.substr(0, name.find(':') + 1);
  if (prefix == markupPrefix_) return markup_;
  markupPrefix_ = prefix;
  markup_ = {};
  markup_.element = prefix;
  if (!prefix.empty()) {
    markup_.attribute = prefix;
  } else if (scanner_.namespaceOf("w") != kWord) {
    markup_.declaration = " xmlns:w=\"" + std::string(scanner_.uriOf("")) + "\"";
  }
  return markup_;
}

std::string_view OpenElements::qualifiedName(const Tag& tag) const {
  const std::string_view bytes = part_.output.source(tag.extent);
  const auto ends = [](char c) {
    return c == '>' || c == ' ' || c == '/' || c == '\t' || c == '\r' || c == '\n';
  };
  std::size_t end = 1;
  while (end < bytes.size() && !ends(bytes[end])) ++end;
  return bytes.substr(1, end - 1);
}

}  // namespace pluvo::docx
