#include "base/utf.h"
#include "formats/html/html_document.h"
#include "formats/media/media.h"
#include "support/notation_parser.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace pluvo::formats {

namespace {

using document::Look;

/// Makes a notation a page as Word writes one: has the calls of document::ContentBuilder.
class PageBuilder {
 public:
  void append(char16_t unit, Look look = {}) {
    if (unit == text::kParagraphMark) return mark(look, "</p>");
    static const std::map<char16_t, std::string> kElements = {
        {u'\t', "<span style='mso-tab-count:1'>&nbsp; </span>"},
        {u'\v', "<br>"},
        {u'\f', "<br style='mso-special-character:line-break;page-break-before:always'>"},
        {14, "<br style='mso-column-break-before:always'>"},
        {u'<', "&lt;"},
        {u'&', "&amp;"}};
    if (base::isHighSurrogate(unit)) {
      ++length_;
      firstHalf_ = unit;
      return;
    }
    const auto element = kElements.find(unit);
    if (unit == u' ' && !folds_ && !blank_) {
      blank_ = look;
      return;
    }
    if (unit == u' ' && (folds_ || blank_)) {
      put("<span style='mso-spacerun:yes'>&nbsp;</span>", look);
    } else {
      put(element != kElements.end() ? element->second : base::utf8(firstHalf_ + unit), look);
    }
    folds_ = unit == u' ' || unit == u'\v' || unit == u'\f' || unit == 14;
    firstHalf_.clear();
  }
  bool beginField(Look look) { return inCode_.push_back(true), field("begin", look); }
  bool separateField(Look look) {
    field("separator", look);
    return inCode_.back() = false, true;
  }
  bool endField(Look look) {
    inCode_.back() = true;
    field("end", look);
    return inCode_.pop_back(), true;
  }
  void beginTable() {
    close();
    ++tables_;
    body_ += "<table><tr>";
    cells_.push_back(false);
  }
  void cellMark(Look look) {
    openCell();
    mark(look, "</p></td>");
    cells_.back() = false;
  }
  void rowMark(Look) {
    ++length_;
    body_ += "</tr><tr>";
  }
  void endTable() {
    body_ += "</tr></table>";
    --tables_;
    cells_.pop_back();
  }
  void sectionMark(Look look) {
    put("<br style='page-break-before:always;mso-break-type:section-break'>", look);
    close();
    folds_ = true;
  }

  text::Position length() const { return length_ + (blank_ ? 1 : 0); }
  std::size_t openFields() const { return inCode_.size(); }
  std::size_t openTables() const { return tables_; }
  const std::string& body() const { return body_; }

 private:
  static std::string tagFor(Look look) {
    static const char* const kColours[] = {"", "black", "blue", "aqua", "lime", "fuchsia", "red", "yellow"};
    std::string style = look.hidden ? "display:none;" : "";
    const std::string colour = kColours[look.highlight];
    if (look.highlight != 0) style += "background:" + colour + ";mso-highlight:" + colour;
    return style.empty() ? "" : "<span style=\"" + style + "\">";
  }

  void openCell() {
    if (!cells_.empty() && !cells_.back()) {
      body_ += "<td>";
      cells_.back() = true;
    }
    if (!isOpen_) body_ += "<p>";
    if (!isOpen_) folds_ = true;
    isOpen_ = true;
  }
  /// A blank folds at the end of its paragraph, so how it is written shows when something follows.
  void putBlank(bool isLast) {
    if (!blank_) return;
    const Look look = *std::exchange(blank_, std::nullopt);
    put(isLast ? "<span style='mso-spacerun:yes'>&nbsp;</span>" : " ", look);
    folds_ = true;
  }
  void put(const std::string& content, Look look) {
    putBlank(content.starts_with("<br"));
    openCell();
    ++length_;
    const bool inCode = std::ranges::count(inCode_, true) > 0;
    std::string begin = inCode ? "<!--[if supportFields]>" : "";
    std::string end = inCode ? "<![endif]-->" : "";
    const std::string tag = tagFor(look);
    begin += tag;
    if (!tag.empty()) end = "</span>" + end;
    // Joins what stands in the same elements.
    if (begin == lastBegin_ && !end.empty() && body_.ends_with(end)) {
      body_.insert(body_.size() - end.size(), content);
    } else {
      body_ += begin + content + end;
    }
    lastBegin_ = begin;
  }
  bool field(const std::string& kind, Look look) {
    put("<span style='mso-element:field-" + kind + "'></span>", look);
    folds_ = false;
    return true;
  }
  void mark(Look look, const std::string& end) {
    putBlank(true);
    openCell();
    ++length_;
    const std::string tag = tagFor({look.hidden, look.highlight});
    if (!tag.empty()) body_ += tag + "<o:p></o:p></span>";
    body_ += end;
    isOpen_ = false;
    folds_ = true;
  }
  void close() {
    putBlank(true);
    if (isOpen_) body_ += "</p>";
    isOpen_ = false;
    if (!cells_.empty() && !cells_.back()) {
      body_ += "<td>";
      cells_.back() = true;
    }
  }

  std::string body_;
  std::string lastBegin_;
  std::optional<Look> blank_;
  std::u16string firstHalf_;
  std::vector<bool> inCode_;
  std::vector<bool> cells_;  ///< of each table: whether one is open
  text::Position length_ = 0;
  std::size_t tables_ = 0;
  bool isOpen_ = false;
  bool folds_ = true;
};

std::string pageOf(const std::string& body) {
  return "<html><meta charset=utf-8><body>" + body + "</body></html>";
}

/// The second note is another's.
std::string pageWithNotes(const std::string& first) {
  std::string references;
  std::string notes;
  for (const std::string id : {"1", "2"}) {
    references += html::noteReference("ftn" + id, "ref" + id);
    const std::string& body = id == "1" ? first : "<p>three</p>";
    notes += "<div style='mso-element:footnote' id=ftn" + id + "><!-- mark -->" + body + "</div>";
  }
  return pageOf("<p>" + references + "</p><div style='mso-element:footnote-list'><hr>" + notes + "</div>");
}

/// Nothing where the paragraph before a table would have to be in it, and the like.
std::optional<base::Bytes> asPage(std::string_view notation, notation::Ranges& ranges, bool isNote) {
  PageBuilder builder;
  ranges = notation::Parser(notation, builder).parse();
  const base::Bytes file = bytesOf(isNote ? pageWithNotes(builder.body()) : pageOf(builder.body()));
  Hint all;
  all.allStories = true;
  const document::Story read(html::HtmlFormat().read(file, all).stories[isNote ? 1 : 0]);
  const document::Story meant(notation::parse(notation).content);
  if (notation::print(read) != notation::print(meant)) return std::nullopt;
  return file;
}

std::optional<base::Bytes> asHtml(std::string_view notation, notation::Ranges& ranges) {
  return asPage(notation, ranges, false);
}
std::optional<base::Bytes> asHtmlNote(std::string_view notation, notation::Ranges& ranges) {
  return asPage(notation, ranges, true);
}

}  // namespace

Medium htmlMedium() { return {"html", std::make_shared<html::HtmlFormat>(), asHtml}; }
Medium htmlNoteMedium() {
  Medium medium = {"html note", std::make_shared<html::HtmlFormat>(), asHtmlNote};
  medium.place = document::Place::footnotes;
  return medium;
}

}  // namespace pluvo::formats
