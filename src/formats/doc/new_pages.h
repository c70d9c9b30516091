#pragma once

#include "formatted_pages.h"
#include "new_text.h"
#include "styles.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace pluvo::doc {

/// Bytes of old text that get a highlight in the pages of characters.
struct Recoloured {
  std::uint32_t from = 0;
  std::uint32_t to = 0;
  std::uint8_t colour = 0;
};

/// The pages of formatting that a new version has besides those there are.
class NewPages {
 public:
  /// Recoloured stretches come in the order of their bytes. All must outlive this.
  NewPages(const FormattedPages& old, std::span<const Recoloured> recoloured, const Styles& styles,
           const NewText& newText)
      : old_(old), recoloured_(recoloured), styles_(styles), newText_(newText) {}

  /// Puts them after the stream, and returns the table that leads to all pages.
  std::string write(std::vector<std::uint8_t>& stream) const;

 private:
  void recolour(PageWriter& writer, std::vector<bool>& replaced) const;

  const FormattedPages& old_;
  std::span<const Recoloured> recoloured_;
  const Styles& styles_;
  const NewText& newText_;
};

}  // namespace pluvo::doc
