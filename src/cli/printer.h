#pragma once

#include "plan.h"
#include "runs/observer.h"
#include "terminal.h"

#include <memory>
#include <string>
#include <vector>

namespace pluvo::cli {

/// The printer the plan asks for: text or JSON on standard output, or nothing.
std::unique_ptr<runs::Observer> printerFor(const Plan& plan);

/// Text as grep prints it: path, number, block; with --dry-run each block before and after.
std::unique_ptr<runs::Observer> textPrinter(const Plan& plan, const Style& style);
std::unique_ptr<runs::Observer> jsonPrinter(const Plan& plan);

/// Writes to standard output. A stream that takes no more (a full disk) is a std::system_error. A closed pipe
/// ends the program by its signal, as it does every filter. Output to a closed terminal is lost.
void writeOut(std::string_view text);
/// Has it all arrive; throws as writeOut does.
void flushOut();

/// "pluvo: " and the sentence, as it may be shown, on standard error, after whatever was printed before.
void sayError(std::string_view sentence);
void sayNote(std::string_view sentence);

}  // namespace pluvo::cli
