#pragma once

#include "body_walker.h"

#include <string>
#include <unordered_map>

namespace pluvo::docx {

struct Package;

/// Which text a style sheet hides. A run is hidden when it says so itself. Otherwise its paragraph's style
/// and its own each turn hiding on, and both together off, as Word reads such properties.
class Styles {
 public:
  Styles() = default;
  /// A w:styles part as UTF-8.
  Styles(base::ByteSpan part, const std::string& partName);

  bool hides(const RunLook& look, const std::string& paragraphStyle) const {
    if (look.hidden != RunLook::Hidden::inherited) return look.hidden == RunLook::Hidden::yes;
    return any_ && hidesByStyle(look, paragraphStyle);
  }

 private:
  bool hidesByStyle(const RunLook& look, const std::string& paragraphStyle) const;
  struct Style {
    std::string basedOn;
    RunLook::Hidden hidden = RunLook::Hidden::inherited;
  };
  bool isHidden(const std::string& style) const;

  std::unordered_map<std::string, Style> styles_;
  std::string defaultParagraphStyle_;
  bool any_ = false;
};

/// Those of a package; none where it has no part of styles.
Styles readStyles(const Package& package);

/// The id of the style that a document knows by this name; empty where it has none.
std::string styleNamed(base::ByteSpan part, const std::string& partName, std::string_view name);

}  // namespace pluvo::docx
