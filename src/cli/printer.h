#pragma once

#include "listing/listing.h"
#include "outcome.h"
#include "plan.h"
#include "terminal.h"

#include <memory>
#include <string>
#include <vector>

namespace pluvo::cli {

/// Where the results of a run go as they come. Blocks of a document come before its outcome.
class Printer {
 public:
  virtual ~Printer() = default;
  /// Whether blocks are wanted at all; reading their text costs.
  virtual bool wantsBlocks() const = 0;
  virtual void block(const std::string& path, const BlockReport& block) = 0;
  virtual void document(const Outcome& outcome) = 0;
  virtual void leftOut(const LeftOut& /*leftOut*/) {}
  virtual void end(const Totals& totals) = 0;
};

/// The printer the plan asks for: text or JSON on standard output, or nothing.
std::unique_ptr<Printer> printerFor(const Plan& plan);

/// Text as grep prints it: path, number, block; with --dry-run each block before and after.
std::unique_ptr<Printer> textPrinter(const Plan& plan, const Style& style);
std::unique_ptr<Printer> jsonPrinter();

/// Several printers as one; each gets the blocks only if it wants them.
std::unique_ptr<Printer> allOf(std::vector<std::unique_ptr<Printer>> printers);

/// Writes to standard output. A stream that takes no more (a full disk) is a std::system_error; a closed pipe
/// ends the program by its signal, as it does every filter; what a closed terminal does not take is lost.
void writeOut(std::string_view text);
/// Has it all arrive; throws as writeOut does.
void flushOut();

/// "pluvo: " and the sentence, as it may be shown, on standard error, behind whatever was printed before.
void sayError(std::string_view sentence);
void sayNote(std::string_view sentence);

/// "1 block", "2 blocks"
std::string counted(std::int64_t count, std::string_view noun);

}  // namespace pluvo::cli
