#pragma once

#include "forms/form.h"

#include <memory>
#include <span>
#include <vector>

/// The main dialog as it is designed, before anything has happened: pages, controls, captions, tool tips,
/// first values and places.
namespace pluvo::host {

enum class Kind {
  label,
  link,
  text,     ///< one line
  lines,    ///< several
  display,  ///< several, read-only
  list,     ///< rows of a text and a code
  numbers,  ///< rows of a text, which is the value
  files,    ///< a list of which several can be selected
  tick,
  button,
  picture,
};

enum class At { first, off, hidden, ticked };

struct DesignedControl {
  const char16_t* name;
  Kind kind;
  const char16_t* text;  ///< the caption, or the designed text
  const char16_t* tip;
  forms::Cell cell;
  At state = At::first;
  int fontSize = 0;  ///< 0: as the others, and so its face
  const char16_t* font = u"";
};

struct DesignedPage {
  const char16_t* name;
  const char16_t* caption;
  const char16_t* tip;
  std::span<const DesignedControl> controls;
  /// Where the Tab key goes, by names, if not by the order of the controls.
  std::span<const char16_t* const> tabOrder = {};
};

std::span<const DesignedPage> designedPages();

std::unique_ptr<forms::Control> make(const DesignedControl& designed);

}  // namespace pluvo::host
