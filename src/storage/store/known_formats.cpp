#include "known_formats.h"

#include "doc/doc_format.h"
#include "docx/docx_format.h"
#include "html/html_format.h"
#include "plain/plain_format.h"
#include "rtf/rtf_format.h"
#include "store/store.h"

#include <memory>

namespace pluvo::store {

formats::Registry knownFormats() {
  formats::Registry registry;
  registry.add(std::make_unique<docx::DocxFormat>());
  registry.add(std::make_unique<rtf::RtfFormat>());
  registry.add(std::make_unique<formats::html::HtmlFormat>());
  registry.add(std::make_unique<doc::DocFormat>());
  registry.add(std::make_unique<plain::PlainFormat>());
  return registry;
}

std::vector<std::string_view> knownExtensions() { return knownFormats().extensions(); }

}  // namespace pluvo::store
