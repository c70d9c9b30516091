#pragma once

#include "xml/scanner.h"

#include <string_view>

namespace pluvo::xml {

/// Reads a start or empty tag that the scanner has come to and does not remember: its attributes, namespace
/// declarations and names.
class TagReader {
 public:
  explicit TagReader(Scanner& scanner) : scanner_(scanner) {}
  void read();

 private:
  void scanAttributes(const char* at);
  const char* scanAttribute(const char* at);
  const char* scanValue(const char* at, Attribute& attribute);
  void declareNamespaces();
  void declare(const Attribute& attribute, std::string_view prefix);
  void resolveNames();
  void refuseTwins();
  void refuseTwinsAmongMany();
  std::string_view localName(const Attribute& attribute) const;

  Scanner& scanner_;
};

}  // namespace pluvo::xml
