#include "formats/signature.h"

#include <algorithm>
#include <array>
#include <utility>

namespace pluvo::formats {

namespace {

struct Known {
  std::string_view bytes;
  Signature signature;
};

using namespace std::string_view_literals;

constexpr std::array kKnown = {
    Known{"PK\x03\x04"sv, Signature::zip},
    Known{"PK\x05\x06"sv, Signature::zip},
    Known{"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, Signature::compoundFile},
    Known{"{\\rtf"sv, Signature::rtf},
    Known{"%PDF-"sv, Signature::pdf},
    Known{"\x89PNG\r\n\x1A\n"sv, Signature::picture},
    Known{"\xFF\xD8\xFF"sv, Signature::picture},
    Known{"GIF87a"sv, Signature::picture},
    Known{"GIF89a"sv, Signature::picture},
    Known{"II*\0"sv, Signature::picture},
    Known{"MM\0*"sv, Signature::picture},
    Known{"\x1F\x8B\x08"sv, Signature::archive},
    Known{"7z\xBC\xAF\x27\x1C"sv, Signature::archive},
    Known{"Rar!\x1A\x07"sv, Signature::archive},
    Known{"\x7F"
          "ELF"sv,
          Signature::program},
};

}  // namespace

std::optional<Signature> signatureOf(base::ByteSpan bytes) {
  const std::string_view front(reinterpret_cast<const char*>(bytes.data()),
                               std::min<std::size_t>(bytes.size(), 16));
  for (const Known& known : kKnown)
    if (front.starts_with(known.bytes)) return known.signature;
  return std::nullopt;
}

std::string_view describe(Signature signature) {
  switch (signature) {
    case Signature::zip:
      return "a zip archive, as .docx and .odt files are";
    case Signature::compoundFile:
      return "a Word document of the binary kind (.doc), or an encrypted one";
    case Signature::rtf:
      return "an RTF document";
    case Signature::pdf:
      return "a PDF";
    case Signature::picture:
      return "a picture";
    case Signature::archive:
      return "a compressed archive";
    case Signature::program:
      return "a program";
  }
  return "another kind of file";
}

bool goesWith(Signature signature, std::string_view extension) {
  constexpr std::array<std::pair<std::string_view, Signature>, 16> kUsual = {
      {{"zip", Signature::zip},
       {"odt", Signature::zip},
       {"doc", Signature::compoundFile},
       {"rtf", Signature::rtf},
       {"dot", Signature::compoundFile},
       {"pdf", Signature::pdf},
       {"png", Signature::picture},
       {"jpg", Signature::picture},
       {"jpeg", Signature::picture},
       {"gif", Signature::picture},
       {"tif", Signature::picture},
       {"tiff", Signature::picture},
       {"gz", Signature::archive},
       {"7z", Signature::archive},
       {"rar", Signature::archive},
       {"tgz", Signature::archive}}};
  return std::ranges::find(kUsual, std::pair(extension, signature)) != kUsual.end();
}

}  // namespace pluvo::formats
