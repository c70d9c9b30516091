#pragma once

#include "outcome.h"
#include "request.h"
#include "terminal.h"

#include <memory>
#include <string>

namespace pluvo::cli {

/// Where the results of a run go as they come. Blocks of a document come before its outcome.
class Printer {
 public:
  virtual ~Printer() = default;
  /// Whether blocks are wanted at all; reading their text costs.
  virtual bool wantsBlocks() const = 0;
  virtual void block(const std::string& path, const BlockReport& block) = 0;
  virtual void document(const Outcome& outcome) = 0;
  virtual void end(const Totals& totals) = 0;
};

/// The printer the request asks for: text or JSON on standard output, or nothing.
std::unique_ptr<Printer> printerFor(const Request& request);

/// Text as grep prints it: path, number, block; with --dry-run each block before and after.
std::unique_ptr<Printer> textPrinter(const Request& request, const Style& style);
std::unique_ptr<Printer> jsonPrinter();

/// Writes to standard output. A stream that takes no more (a full disk) is a std::system_error; a closed pipe
/// ends the program by its signal, as it does every filter.
void writeOut(std::string_view text);

/// "pluvo: " and the sentence, on standard error, behind whatever was printed before.
void sayError(std::string_view sentence);
void sayNote(std::string_view sentence);

/// A path as a message may show it: control characters, which a terminal would act on, as ?.
std::string shownPath(std::string_view path);

}  // namespace pluvo::cli
