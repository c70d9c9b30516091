#include "html/html_format.h"

#include "document_reader.h"
#include "errors/document_error.h"
#include "html_source.h"
#include "likeness.h"

#include <algorithm>
#include <array>
#include <memory>

namespace pluvo::formats::html {

namespace {

using namespace std::string_view_literals;

constexpr std::array kExtensions = {"htm"sv, "html"sv, "xhtml"sv};
constexpr std::array kArchives = {"mht"sv, "mhtml"sv};

bool isAmong(std::span<const std::string_view> names, std::string_view extension) {
  return std::ranges::find(names, extension) != names.end();
}

}  // namespace

bool HtmlFormat::recognises(base::ByteSpan bytes, std::string_view extension) const {
  switch (likenessOf(bytes, isAmong(kExtensions, extension))) {
    case Likeness::certain:
      return true;
    case Likeness::byName:
      return isAmong(kExtensions, extension);
    case Likeness::webArchive:
      return isAmong(kExtensions, extension) || isAmong(kArchives, extension);
    default:
      return false;
  }
}

std::span<const std::string_view> HtmlFormat::extensions() const { return kExtensions; }

formats::Opened HtmlFormat::read(base::Bytes bytes, const formats::Hint& hint) const {
  if (likenessOf(bytes.view, false) == Likeness::webArchive)
    throw errors::DocumentError(
        errors::Problem::unsupported,
        "The file is a web archive (.mht), which holds a page and its pictures in one; "
        "open it in a word processor and save it as .docx or .htm.");
  auto page = std::make_unique<const Page>(std::move(bytes));
  ReadDocument read = readDocument(*page, hint.allStories);
  formats::Opened opened;
  opened.stories = std::move(read.stories);
  opened.source = std::make_shared<const HtmlSource>(std::move(page), std::move(read.old));
  opened.again.allStories = hint.allStories;
  return opened;
}

}  // namespace pluvo::formats::html
