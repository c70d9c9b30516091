#include "docx/docx_format.h"

#include "docx_source.h"
#include "encrypted_package.h"
#include "protection.h"
#include "styles.h"

#include <algorithm>
#include <array>
#include <memory>

namespace pluvo::docx {

namespace {

using namespace std::string_view_literals;

constexpr std::array kExtensions = {"docx"sv, "docm"sv, "dotx"sv, "dotm"sv};

/// Where an archive's directory is looked for.
constexpr std::size_t kTail = std::size_t{1} << 20U;

bool isPackage(std::string_view bytes) {
  if (!bytes.starts_with("PK\x03\x04"sv)) return false;
  const std::string_view tail = bytes.substr(bytes.size() - std::min(bytes.size(), kTail));
  return tail.find("[Content_Types].xml"sv) != std::string_view::npos &&
         tail.find("word/"sv) != std::string_view::npos;
}

}  // namespace

bool DocxFormat::recognises(base::ByteSpan bytes, std::string_view extension) const {
  if (std::find(kExtensions.begin(), kExtensions.end(), extension) != kExtensions.end()) return true;
  const std::string_view view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  return isPackage(view) || EncryptedPackage::isOne(bytes);
}

std::span<const std::string_view> DocxFormat::extensions() const { return kExtensions; }

formats::Opened DocxFormat::read(base::Bytes bytes, const formats::Hint& hint) const {
  std::unique_ptr<const EncryptedPackage> around;
  if (EncryptedPackage::isOne(bytes.view)) {
    around = std::make_unique<EncryptedPackage>(std::move(bytes), hint);
    bytes = around->decrypted();
  }
  const formats::SharedKey key = around ? around->key() : nullptr;
  Package package = openPackage(std::move(bytes));
  formats::Opened opened;
  opened.protection = protectionOf(package);
  opened.reservation = reservationOf(package);
  opened.isTemplate = package.isTemplate;
  Styles styles = readStyles(package);
  const zip::Member* const member = package.archive.find(package.mainPart);
  xml::Utf8Part part = xml::toUtf8(package.archive.read(*member), package.mainPart);
  ReadBody mainText = readBody(part.utf8.view, package.mainPart, styles);
  Stories stories = hint.allStories
                        ? withAllStories(package, std::move(part), std::move(mainText), styles)
                        : withMainTextAlone(package.mainPart, std::move(part), std::move(mainText));
  opened.stories = std::move(stories.contents);
  opened.source = std::make_unique<DocxSource>(std::move(package), std::move(stories), std::move(styles),
                                               std::move(around));
  opened.again.allStories = hint.allStories;
  opened.again.key = key;
  return opened;
}

}  // namespace pluvo::docx
